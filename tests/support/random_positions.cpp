#include "support/random_positions.h"

#include <random>

#include "chess/move_generator.h"
#include "support/board_from_fen.h"

namespace {

constexpr const char* STARTS[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
    "rnbqkb1r/pp3ppp/4pn2/2pp4/3P4/2P1PN2/PP3PPP/RNBQKB1R w KQkq - 0 5",
    "r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N2N2/PP2BPPP/R2QKB1R w KQ - 0 8",
    "2r2rk1/pp3ppp/4pn2/3p4/3P4/2N1P3/PP3PPP/2R2RK1 b - - 0 20",
    "8/5pk1/6p1/3P4/1p6/1P3PP1/6K1/8 w - - 0 40",
};

}  // namespace

std::vector<Board> RandomPositions(int count, std::uint32_t seed) {
  std::mt19937 random(seed);
  std::vector<Board> positions;
  positions.reserve(std::size_t(count));
  std::vector<Move> moves;
  for (int game = 0; int(positions.size()) < count; ++game) {
    Board board = BoardFromFen(STARTS[game % std::size(STARTS)]);
    const int length = 20 + int(random() % 100);
    for (int ply = 0; ply < length && int(positions.size()) < count; ++ply) {
      moves.clear();
      GenerateMoves(moves, board);
      if (moves.empty() || board.IsDrawByRule()) break;
      // The stacks of the board hold one game line at a time; start them over before they end.
      if (board.ply + 2 >= Board::MAX_PLY) board.RebaseStacks();
      board.MakeMove(moves[random() % moves.size()]);
      positions.push_back(board);
    }
  }
  return positions;
}

Board ColourFlipped(const Board& board) {
  std::int8_t squares[64];
  for (int square = 0; square < 64; ++square)
    squares[MirrorRanks(square)] = std::int8_t(-board.squares[square]);
  const int rights = board.Castling();
  const int flipped_rights = (rights & 3) << 2 | (rights >> 2 & 3);
  const int en_passant = board.EnPassant() == 0 ? 0 : MirrorRanks(board.EnPassant());
  Board flipped;
  flipped.Setup(squares, int(board.side_on_move) ^ 1, en_passant, flipped_rights);
  return flipped;
}
