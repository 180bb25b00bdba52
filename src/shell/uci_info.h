// The texts of the UCI protocol's reports: scores, moves in coordinates, and the info lines.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "chess/basic.h"

class Board;
class SerialSearch;
class UserBoard;

// "cp 23", or "mate 3" / "mate -2" in moves for mate scores.
std::string UciScoreText(std::int32_t score);

// A legal move of board in lower-case coordinates: "e2e4", "e1g1", "a7a8q".
std::string UciMoveText(const Board& board, Move move);

// The moves from the game's position on, as long as each is legal where it stands.
std::vector<std::string> UciLineText(const UserBoard& game, const std::vector<Move>& moves);

// "info depth .. seldepth .. score .. [bound] nodes .. nps .. time .. pv ..." for a line of the
// search. The selective depth is the length of the line, at least the iteration.
std::string UciPvInfo(const SerialSearch& search, std::int32_t score, std::string_view bound,
                      const std::vector<Move>& line);

// "info depth .. currmove .. currmovenumber [score .. lowerbound|upperbound] nodes .. nps .. time
// .. hashfull ..", the bound while the best move has failed high or low.
std::string UciProgressInfo(const SerialSearch& search, std::uint32_t hashfull_permille);
