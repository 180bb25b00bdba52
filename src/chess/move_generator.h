// Strictly legal move generation with complete move words, check bits included, in the program's
// fixed order; optionally only a selection of moves for the quiescence search.
#pragma once

#include <vector>

#include "chess/board.h"

constexpr int GEN_CAPTURES = 1;
constexpr int GEN_DIRECT_CHECKS = 2;
constexpr int GEN_DISCOVERED_CHECKS = 4;
constexpr int GEN_DOUBLE_CHECKS = 8;
constexpr int GEN_QUEEN_PROMOTIONS = 16;
constexpr int GEN_UNDERPROMOTIONS = 32;
constexpr int GEN_CASTLING = 64;
constexpr int GEN_ALL_MOVES = 128;
constexpr int GEN_ALL_CHECKS = GEN_DIRECT_CHECKS | GEN_DISCOVERED_CHECKS | GEN_DOUBLE_CHECKS;
// Every legal move, whatever the other bits ask for.
constexpr int GEN_EVERY_MOVE = 255;

// Writes the selected moves into buffer (MOVE_BUFFER_SIZE words, the last set to INVALID by the
// caller) and returns the pointer behind the last one. In check the mask is ignored: every
// evasion is generated.
Move* GenerateMoves(Move* buffer, const Board& board, int mask);

// All legal moves, appended to a vector.
void GenerateMoves(std::vector<Move>& moves, const Board& board);
