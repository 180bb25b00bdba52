#include "search/move_ordering.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "chess/move_generator.h"
#include "search/history_table.h"
#include "search/quiescence_filter.h"
#include "search/search_types.h"
#include "search/static_exchange.h"
#include "support/board_from_fen.h"

namespace {
// The legal move from `from` to `to` (the first, for promotions: the queen comes first).
Move Find(const Board& board, int from, int to, int promotion = 0) {
  std::vector<Move> moves;
  GenerateMoves(moves, board);
  for (Move move : moves) {
    if (From(move) == from && To(move) == to &&
        (promotion == 0 || PromotionType(move) == promotion)) {
      return move;
    }
  }
  ADD_FAILURE() << "no move " << from << "-" << to;
  return INVALID;
}
}  // namespace

// What a capture wins, what a move threatens, and whether quiescence searches a capture at a
// distance and a beta given against the material.
TEST(MoveValues, ExchangesThreatsAndTheQuiescenceFilter) {
  enum Kind { EXCHANGE, THREAT, QUIESCENCE };
  const struct {
    const char* fen;
    int from, to, promotion;
    Kind kind;
    std::int32_t distance, beta, value;
  } cases[] = {
      // Doubled rooks behind each other win a pawn defended once: the x-ray joins in.
      {"3rk3/8/8/3p4/8/8/3R4/3RK3 w - - 0 1", D2, D5, 0, EXCHANGE, 0, 0, 100},
      // A king may not recapture on a defended square.
      {"8/8/8/2k5/3p4/8/3R4/3RK3 w - - 0 1", D2, D4, 0, EXCHANGE, 0, 0, 100},
      // A knight fork of two rooks: either is won for the knight, each rook guards the other.
      {"r3r1k1/8/8/1N6/8/8/8/7K w - - 0 1", B5, C7, 0, THREAT, 0, 0, 195},
      // A rook sliding along a file threatens nothing new on that file.
      {"3r2k1/8/8/8/8/8/8/3RK3 w - - 0 1", D1, D4, 0, THREAT, 0, 0, 0},
      // An underpromotion is refused even with check; a queen promotion always passes.
      {"1k6/4P3/8/8/8/8/8/4K3 w - - 0 1", E7, E8, ROOK, QUIESCENCE, -100, -100, false},
      {"1k6/4P3/8/8/8/8/8/4K3 w - - 0 1", E7, E8, QUEEN, QUIESCENCE, -100, -100, true},
      // A capture that cannot reach beta is refused at once.
      {"4k3/8/8/3p4/8/8/8/3RK3 w - - 0 1", D1, D5, 0, QUIESCENCE, 0, 900, false},
      // A direct check near the horizon is searched, whatever it wins.
      {"6k1/8/8/8/8/8/8/3RK3 w - - 0 1", D1, D8, 0, QUIESCENCE, -30, 300, true},
      {"6k1/8/8/8/8/8/8/3RK3 w - - 0 1", D1, D8, 0, QUIESCENCE, -60, 300, false},
  };
  for (const auto& c : cases) {
    const Board board = BoardFromFen(c.fen);
    const Move move = Find(board, c.from, c.to, c.promotion);
    const std::int32_t value =
        c.kind == EXCHANGE ? StaticExchange(move, board)
        : c.kind == THREAT ? ThreatAfterMove(move, board)
                           : PassesQuiescenceFilter(move, c.distance, board.Material() + c.beta, 1,
                                                    board);
    EXPECT_EQ(value, c.value) << c.fen << " " << c.from << "-" << c.to;
  }
}

TEST(HistoryTable, BonusesBandsAndAgeing) {
  HistoryTable history;
  const Move move = MakeMoveWord(G1, F3, KNIGHT);
  history.Update(move, WHITE, 512, 9);  // (512 / 64)^2 + 1 = 65, into tables 1 and 0
  EXPECT_EQ(history.Value(move, WHITE, 3), 65u);    // table 0 only
  EXPECT_EQ(history.Value(move, WHITE, 12), 130u);  // tables 0 and 1
  EXPECT_EQ(history.Value(move, BLACK, 3), 0u);
  history.Update(move, WHITE, 63, 2);  // a bonus of 1
  EXPECT_EQ(history.Value(move, WHITE, 3), 66u);
  history.Age(8);  // table 1 starts empty
  EXPECT_EQ(history.Value(move, WHITE, 12), 66u);
  history.NewSearch();
  EXPECT_EQ(history.Value(move, WHITE, 3), 0u);
}

namespace {
const char* const MIDDLE_GAME =
    "r1bqkb1r/pppp1ppp/2n2n2/4p3/2B1P3/5N2/PPPP1PPP/RNBQK2R w KQkq - 4 4";

// The moves of every batch of a node's ordering, the way the node asks for them, and the code of
// the last batch; `size` is that of the whole list.
std::vector<Move> Ordered(const char* fen, int node_type, Move hash_move, Move killer1,
                          Move killer2, int* batches = nullptr, int* last_code = nullptr,
                          std::size_t* size = nullptr) {
  const Board board = BoardFromFen(fen);
  static HistoryTable history;
  history.NewSearch();
  std::vector<Move> list;
  GenerateMoves(list, board);
  if (size) *size = list.size();
  Move* end = list.data() + list.size();
  SortState state;
  const SortContext context{board, history, 0, hash_move, node_type, killer1, killer2, 1};
  std::vector<Move> order;
  for (int count = 1;; ++count) {
    Move* begin = nullptr;
    Move* batch_end = nullptr;
    const int code = NextMoves(state, context, list.data(), end, begin, batch_end);
    for (Move* m = begin; m != batch_end; ++m) order.push_back(*m & MOVE_MASK);
    if (!(code & BATCH_LAST)) continue;
    if (batches) *batches = count;
    if (last_code) *last_code = code;
    return order;
  }
}
}  // namespace

TEST(NextMoves, AWholeListIsOneSortedBatchWithoutTheHashMoveALazyOneComesInStages) {
  const Board board = BoardFromFen(MIDDLE_GAME);
  int batches = 0, code = 0;
  std::size_t size = 0;
  const Move hash_move = Find(board, E1, G1);
  std::vector<Move> order = Ordered(MIDDLE_GAME, CUT, hash_move, INVALID, INVALID, &batches, &code,
                                    &size);
  EXPECT_EQ(batches, 1);
  EXPECT_EQ(code, BATCH_SORTED | BATCH_LAST);
  EXPECT_EQ(order.size(), size - 1);
  EXPECT_EQ(std::count(order.begin(), order.end(), hash_move), 0);
  order = Ordered(MIDDLE_GAME, CUT, INVALID, INVALID, INVALID, &batches, &code, &size);
  EXPECT_GE(batches, 2);
  EXPECT_EQ(order.size(), size);
  // The best capture, Bxf7+, is promising and comes first.
  EXPECT_EQ(order.front(), Find(board, C4, F7));
}

TEST(NextMoves, AKillerThatIsIllegalHereOrTheHashMoveTakesNoPart) {
  const Board board = BoardFromFen(MIDDLE_GAME);
  const Move killer1 = Find(board, D2, D3);
  const Move killer2 = Find(board, B1, C3);
  // Bxf7+ loses the bishop for a pawn: not promising, so it waits behind the killers.
  EXPECT_EQ(Ordered(MIDDLE_GAME, ALL, INVALID, killer1, killer2)[0], killer1);
  EXPECT_EQ(Ordered(MIDDLE_GAME, ALL, INVALID, MakeMoveWord(A1, A5, ROOK), killer2)[0], killer2);
  EXPECT_EQ(Ordered(MIDDLE_GAME, ALL, killer1, killer1, killer2)[0], killer2);
}
