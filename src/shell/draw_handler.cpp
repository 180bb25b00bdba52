#include "shell/draw_handler.h"

#include <cstdlib>

#include "chess/basic.h"
#include "chess/bitboard.h"
#include "bitbases/tablebases.h"
#include "chess/board.h"

void DrawHandler::Reset() {
  last_score = 1000000;
  mate_closing_in = false;
  mated_in = -1;
  moves_seen = 0;
  moves_since_own_offer = 1000;
  contempt_streak = drawish_streak = hopeless_streak = losing_streak = winning_streak = 0;
  tablebase_verdict = unknown;
  draw_offer_pending = false;
}

void DrawHandler::Update(const Board& board, std::int32_t score) {
  ++moves_seen;
  ++moves_since_own_offer;
  if (score >= -(MATE_THRESHOLD + 1)) {
    mate_closing_in = false;
    mated_in = -1;
  } else {
    mate_closing_in = last_score > score;
    const int plies = score + MATE;
    mated_in = (plies - 1) / 2 + 1;
  }
  losing_streak = score < contempt - 14 ? losing_streak + 1 : 0;
  winning_streak = score > contempt + 14 ? winning_streak + 1 : 0;
  contempt_streak = score == contempt ? contempt_streak + 1 : 0;
  const bool queens = board.white.queens | board.black.queens;
  drawish_streak = std::abs(score) <= (queens ? 17 : 25) ? drawish_streak + 1 : 0;
  hopeless_streak = IsHopeless(board, score) ? hopeless_streak + 1 : 0;
  tablebase_verdict = TablebaseVerdict(board, Verdict(tablebase_verdict));
  last_score = score;
}

// Hopeless is judged harder against a computer, which won't throw a won game away, and in endings
// with few pawns, where a material deficit decides.
bool DrawHandler::IsHopeless(const Board& board, std::int32_t score) const {
  std::int32_t limit = opponent_is_computer ? -440 : -250;
  if (board.white.queens | board.black.queens) limit -= 70;
  const Bitboard pawns = board.white.pawns | board.black.pawns;
  if (PopCount(pawns) <= 2 && PopCount(board.occupied & ~pawns) <= 8)
    limit -= opponent_is_computer ? 600 : 200;
  return score <= limit;
}

bool DrawHandler::AcceptDraw() const {
  if (hopeless_streak != 0 || contempt_streak >= 2 || losing_streak > 5) return true;
  if (drawish_streak <= 14) return false;
  return winning_streak <= 6;
}

bool DrawHandler::ShouldOfferDraw() const {
  if (tablebase_verdict == won || draw_offer_pending || moves_seen <= 1) return false;
  if (!opponent_is_computer && moves_since_own_offer <= 7) return false;
  if (contempt_streak > 1) return true;
  if (drawish_streak <= 14) return false;
  return winning_streak <= 6;
}

bool DrawHandler::ShouldResign() const {
  switch (tablebase_verdict) {
    case won:
    case lost_far:
    case drawn:
      return false;
    case lost_soon:
      return true;
    default:
      break;
  }
  if (mate_closing_in && mated_in <= (opponent_is_computer ? 10 : 4)) return true;
  if (!opponent_is_computer && mated_in > 17) return false;
  return hopeless_streak >= (opponent_is_computer ? 5 : 6);
}

DrawHandler::Verdict TablebaseVerdict(const Board& board, DrawHandler::Verdict previous) {
  int score = 0;
  switch (BraskTablebases::ProbeTablebase(board, &score)) {
    case BraskTablebases::TB_FOUND:
      if (score == 0) return DrawHandler::drawn;
      if (score > 0) return DrawHandler::won;
      return BraskTablebases::TablebaseMateIsFar(board) ? DrawHandler::lost_far
                                                        : DrawHandler::lost_soon;
    case BraskTablebases::TB_QUEUED:
      return previous;
    default:
      return DrawHandler::unknown;
  }
}
