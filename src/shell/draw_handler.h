// The engine's view of how a game is going, kept over the scores of its searches: whether to take
// an offered draw, to offer one, or to resign.
#pragma once

#include <cstdint>

class Board;

class DrawHandler {
 public:
  // What the tablebases say of the position after the engine's search.
  enum Verdict { won = 0, lost_soon = 1, lost_far = 2, drawn = 3, unknown = 4 };

  void Reset();
  void Update(const Board& board, std::int32_t score);
  bool AcceptDraw() const;
  bool ShouldOfferDraw() const;
  bool ShouldResign() const;

  std::int32_t last_score = 1000000;
  bool mate_closing_in = false;
  std::int32_t mated_in = -1;
  std::int32_t moves_seen = 0;
  std::int32_t moves_since_own_offer = 1000;
  std::int32_t contempt_streak = 0;
  std::int32_t drawish_streak = 0;
  std::int32_t hopeless_streak = 0;
  std::int32_t losing_streak = 0;
  std::int32_t winning_streak = 0;
  std::int32_t tablebase_verdict = unknown;
  bool draw_offer_pending = false;
  bool opponent_is_computer = false;
  std::int32_t resign_mode = 3;
  std::int32_t contempt = 0;

 private:
  bool IsHopeless(const Board& board, std::int32_t score) const;
};

// The tablebase verdict for a position; unknown until tablebases are attached.
DrawHandler::Verdict TablebaseVerdict(const Board& board, DrawHandler::Verdict previous);
