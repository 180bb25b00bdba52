#include "evaluation/pawn_entry_construction.h"

#include "evaluation/pawn_entry_frame.h"

namespace {

// By obstruction distance; the far distances take the last value given.
constexpr int BackwardLowByDistance[8] = {-20, 0, -14, -15, -15, -16, -16, -16};
constexpr int DoubledIsolatedByDistance[7] = {-48, -40, -42, -44, -44, -44, -44};

// The values of the endings: one number for each term, no units.
class EndingSink {
 public:
  void Square(int colour, int square) {
    Add(colour, EndingPawnTable[RelativeSquare(colour, square)]);
  }

  void Backward(int colour, int, int d, bool low, bool) {
    if (low) {
      Add(colour, BackwardLowByDistance[d]);
    } else {
      Add(colour, d == 0 ? -10 : -8);
    }
  }

  void Isolated(int colour, int, int d) { Add(colour, d == 0 ? -14 : -10); }

  void Duo(int colour, int square) { Add(colour, EndingDuoTable[RelativeSquare(colour, square)]); }

  void Defended(int colour, int square) {
    Add(colour, EndingDefendedTable[RelativeSquare(colour, square)]);
  }

  void Doubled(int colour, int, bool iso, int d) {
    Add(colour, iso ? DoubledIsolatedByDistance[d] : -18);
  }

  void Tripled(int colour, int, bool iso, int d) {
    Add(colour, (iso ? -85 : -65) - (d == 0 ? 5 : 0));
  }

  void DefendedPasser(int colour, int square) {
    Add(colour, EndingDefendedFile[File(square)] *
                    DefendedPassedRank[RelativeRank(colour, square)] / 8);
  }

  void AdjacentPassers(int colour, int, int top, int gap) {
    Add(colour, AdjacentEndingGap[gap] * AdjacentEndingTop[top] / 8);
  }

  void ChainBase(int colour, int, bool sound) { Add(colour, sound ? 2 : -4); }

  void Majority(int colour, int) { Add(colour, 17); }

  void Candidate(int colour, int, int rank, bool weak) {
    Add(colour, EndingCandidateValue[rank] - (weak ? 8 : 0));
  }

  int score = 0;

 private:
  void Add(int colour, int value) { score += colour == WHITE ? value : -value; }
};

}  // namespace

void ConstructPawnEntryEnding(EvaluationState& evaluation, const Board& board) {
  EndingSink sink;
  PawnEntryFrame::Walk(evaluation, board, sink);
  evaluation.pawn_scores.ending = std::int16_t(sink.score);
}
