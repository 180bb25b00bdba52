#include "search/move_ordering.h"

#include <gtest/gtest.h>

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

TEST(StaticExchange, CountsTheWholeExchangeOnTheSquare) {
  // Pawn takes a knight defended by a pawn: the knight is won, the pawn lost.
  Board board = BoardFromFen("4k3/8/2p5/3n4/4P3/8/8/4K3 w - - 0 1");
  EXPECT_EQ(StaticExchange(Find(board, E4, D5), board), 305 - 100);
  // A rook takes a pawn defended by a pawn: the rook is lost.
  board = BoardFromFen("4k3/8/2p5/3p4/8/8/8/3RK3 w - - 0 1");
  EXPECT_EQ(StaticExchange(Find(board, D1, D5), board), 100 - 500);
  // Doubled rooks behind each other win a pawn defended once: the x-ray joins in.
  board = BoardFromFen("3rk3/8/8/3p4/8/8/3R4/3RK3 w - - 0 1");
  EXPECT_EQ(StaticExchange(Find(board, D2, D5), board), 100);
  // An undefended piece is simply won.
  board = BoardFromFen("4k3/8/8/3q4/8/8/8/3RK3 w - - 0 1");
  EXPECT_EQ(StaticExchange(Find(board, D1, D5), board), 1020);
  // A king may not recapture on a defended square.
  board = BoardFromFen("8/8/8/2k5/3p4/8/3R4/3RK3 w - - 0 1");
  EXPECT_EQ(StaticExchange(Find(board, D2, D4), board), 100);
}

TEST(ThreatAfterMove, LooksOnlyAtNewTargets) {
  // A knight fork of two rooks: either is won for the knight.
  Board board = BoardFromFen("r3r1k1/8/8/1N6/8/8/8/7K w - - 0 1");
  EXPECT_EQ(ThreatAfterMove(Find(board, B5, C7), board), 195);  // each rook guards the other
  // A rook sliding along a file threatens nothing new on that file.
  board = BoardFromFen("3r2k1/8/8/8/8/8/8/3RK3 w - - 0 1");
  EXPECT_EQ(ThreatAfterMove(Find(board, D1, D4), board), 0);
}

TEST(QuiescenceFilter, SortsCapturesByWhatTheyWin) {
  // A queen taking a defended pawn at a beta near the material is refused by the exchange.
  Board board = BoardFromFen("4k3/8/2p5/3p4/8/8/8/3QK3 w - - 0 1");
  const Move queen_takes = Find(board, D1, D5);
  EXPECT_FALSE(PassesQuiescenceFilter(queen_takes, -100, board.Material(), 1, board));
  // A rook taking a rook passes by points, even when it is defended.
  board = BoardFromFen("4k3/8/2p5/3r4/8/8/8/3RK3 w - - 0 1");
  EXPECT_TRUE(PassesQuiescenceFilter(Find(board, D1, D5), -100, board.Material(), 1, board));
  // An underpromotion is refused even with check; a queen promotion always passes.
  board = BoardFromFen("1k6/4P3/8/8/8/8/8/4K3 w - - 0 1");
  EXPECT_FALSE(PassesQuiescenceFilter(Find(board, E7, E8, ROOK), -100, 0, 1, board));
  EXPECT_TRUE(PassesQuiescenceFilter(Find(board, E7, E8, QUEEN), -100, 0, 1, board));
  // A capture that cannot reach beta is refused at once.
  board = BoardFromFen("4k3/8/8/3p4/8/8/8/3RK3 w - - 0 1");
  EXPECT_FALSE(PassesQuiescenceFilter(Find(board, D1, D5), 0, board.Material() + 900, 1, board));
}

TEST(QuiescenceFilter, ChecksNearTheHorizonAreAlwaysSearched) {
  // Rook checks from d8: a direct check.
  const Board board = BoardFromFen("6k1/8/8/8/8/8/8/3RK3 w - - 0 1");
  const Move check = Find(board, D1, D8);
  ASSERT_TRUE(GivesDirectCheck(check));
  EXPECT_TRUE(PassesQuiescenceFilter(check, -30, board.Material() + 300, 1, board));
  EXPECT_FALSE(PassesQuiescenceFilter(check, -60, board.Material() + 300, 1, board));
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
struct Batches {
  std::vector<std::vector<Move>> moves;
  std::vector<int> codes;
};

// Every batch of a node's ordering, the way the node asks for them.
Batches CollectBatches(const Board& board, int node_type, Move hash_move, Move killer1,
                       Move killer2, std::vector<Move>& list) {
  static HistoryTable history;
  history.NewSearch();
  GenerateMoves(list, board);
  Move* end = list.data() + list.size();
  SortState state;
  const SortContext context{board, history, 0, hash_move, node_type, killer1, killer2, 1};
  Batches batches;
  for (;;) {
    Move* begin = nullptr;
    Move* batch_end = nullptr;
    const int code = NextMoves(state, context, list.data(), end, begin, batch_end);
    std::vector<Move> batch;
    for (Move* m = begin; m != batch_end; ++m) batch.push_back(*m & MOVE_MASK);
    batches.moves.push_back(batch);
    batches.codes.push_back(code);
    if (code & BATCH_LAST) break;
  }
  return batches;
}

const char* const MIDDLE_GAME = "r1bqkb1r/pppp1ppp/2n2n2/4p3/2B1P3/5N2/PPPP1PPP/RNBQK2R w KQkq - 4 4";
}  // namespace

TEST(NextMoves, ALazyNodeGetsItsListInStages) {
  const Board board = BoardFromFen(MIDDLE_GAME);
  std::vector<Move> list;
  const Batches batches = CollectBatches(board, CUT, INVALID, INVALID, INVALID, list);
  ASSERT_GE(batches.moves.size(), 2u);
  EXPECT_EQ(batches.codes.back() & BATCH_LAST, BATCH_LAST);
  std::size_t total = 0;
  for (const auto& batch : batches.moves) total += batch.size();
  EXPECT_EQ(total, list.size());
  // The best capture, Bxf7+, is promising and comes first.
  EXPECT_EQ(batches.moves.front().front(), Find(board, C4, F7));
}

TEST(NextMoves, AWholeListIsOneSortedBatchWithoutTheHashMove) {
  const Board board = BoardFromFen(MIDDLE_GAME);
  const Move hash_move = Find(board, E1, G1);
  std::vector<Move> list;
  const Batches batches = CollectBatches(board, CUT, hash_move, INVALID, INVALID, list);
  ASSERT_EQ(batches.moves.size(), 1u);
  EXPECT_EQ(batches.codes[0], BATCH_SORTED | BATCH_LAST);
  EXPECT_EQ(batches.moves[0].size(), list.size() - 1);
  for (Move move : batches.moves[0]) EXPECT_NE(move, hash_move);
}

TEST(NextMoves, KillersLeadWhenNoCaptureIsPromising) {
  const Board board = BoardFromFen(MIDDLE_GAME);
  const Move killer1 = Find(board, D2, D3);
  const Move killer2 = Find(board, B1, C3);
  const Move illegal = MakeMoveWord(A1, A5, ROOK);
  std::vector<Move> list;
  Batches batches = CollectBatches(board, ALL, INVALID, killer1, killer2, list);
  const std::vector<Move>& order = batches.moves[0];
  // Bxf7+ loses the bishop for a pawn: not promising, so it waits behind the killers.
  ASSERT_GE(order.size(), 3u);
  EXPECT_EQ(order[0], killer1);
  EXPECT_EQ(order[1], killer2);
  EXPECT_EQ(order[2], Find(board, C4, F7));
  // A killer that is illegal here plays no part; the other still does.
  batches = CollectBatches(board, ALL, INVALID, illegal, killer2, list);
  EXPECT_EQ(batches.moves[0][0], killer2);
  // A killer equal to the hash move takes no part.
  batches = CollectBatches(board, ALL, killer1, killer1, killer2, list);
  EXPECT_EQ(batches.moves[0][0], killer2);
}

TEST(NextMoves, AtMostTwoPromisingCapturesBeforeTheFirstKiller) {
  // Three black pieces hang to the white queen and knight: four promising captures.
  const Board board = BoardFromFen("4k3/8/8/n1b1r3/8/3N4/8/Q6K w - - 0 1");
  const Move killer1 = Find(board, H1, H2);
  std::vector<Move> list;
  const Batches batches = CollectBatches(board, ALL, INVALID, killer1, INVALID, list);
  const std::vector<Move>& order = batches.moves[0];
  ASSERT_GE(order.size(), 4u);
  EXPECT_TRUE(IsTactical(order[0]) && IsTactical(order[1]));
  EXPECT_EQ(order[2], killer1);
  EXPECT_TRUE(IsTactical(order[3]));
}
