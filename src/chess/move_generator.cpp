#include "chess/move_generator.h"

#include "chess/move_generation.h"
#include "chess/move_generation_pawns.h"
#include "chess/move_generation_pieces.h"
#include "shell/checked_assert.h"

Move* GenerateMoves(Move* buffer, const Board& board, int mask) {
  if (board.side_on_move == WHITE)
    return MoveGeneration::Generator<WHITE>(board, mask, buffer).Run();
  return MoveGeneration::Generator<BLACK>(board, mask, buffer).Run();
}

void GenerateMoves(std::vector<Move>& moves, const Board& board) {
  Move buffer[MOVE_BUFFER_SIZE];
  buffer[MAX_MOVES] = INVALID;
  Move* end = GenerateMoves(buffer, board, GEN_EVERY_MOVE);
  // The name is spelled as the assertion's report shows it.
  const auto NUM_MOVES = end - buffer;
  CHECKED_ASSERT(NUM_MOVES <= MAX_MOVES && buffer[MAX_MOVES] == INVALID,
                 "Increase the constant MAX_MOVES!");
  moves.insert(moves.end(), buffer, end);
}
