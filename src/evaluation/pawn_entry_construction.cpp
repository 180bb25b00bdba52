#include "evaluation/pawn_entry_construction.h"

#include "evaluation/pawn_centre.h"
#include "evaluation/pawn_entry_frame.h"
#include "evaluation/pawn_score_sheet.h"
#include "evaluation/wings.h"

namespace {

constexpr ScorePair BackwardLowByDistance[8] = {{-15, -12}, {}, {-6, -6}, {-8, -8},
                                                {-9, -9},   {-11, -10}, {-10, -5}, {-3, -3}};
constexpr ScorePair DoubledIsolatedByDistance[7] = {{-50, -30}, {-30, -10}, {-34, -14}, {-36, -15},
                                                    {-39, -17}, {-42, -20}, {-50, -30}};

// The values of the opening and middlegame: a pair for each term, and units of attack and
// defence on the wing of the pawn.
class PairSink {
 public:
  PairSink(EvaluationState& evaluation, const Board& board, const PawnSquareTable& positional,
           const PawnSquareTable& reckless)
      : sheet(evaluation.pawn_scores.units), board(board), positional(positional),
        reckless(reckless) {}

  void Square(int colour, int square) {
    const int relative = RelativeSquare(colour, square);
    sheet.Add(colour, {positional[relative], reckless[relative]});
  }

  void Backward(int colour, int square, int d, bool low, bool duo) {
    const int wing = PawnWing[File(square)];
    if (low) {
      sheet.Add(colour, BackwardLowByDistance[d]);
      sheet.Attack(colour, wing, d == 0 ? -3 : -1);
      sheet.Defence(colour, wing, d == 0 ? -8 : -4);
    } else {
      sheet.Add(colour, d == 0 ? ScorePair{-10, -5} : ScorePair{-3, -3});
      sheet.Attack(colour, wing, duo ? 0 : -1);
      sheet.Defence(colour, wing, d == 0 ? -3 : -1);
    }
  }

  void Isolated(int colour, int square, int d) {
    const int wing = PawnWing[File(square)];
    sheet.Add(colour, d == 0 ? ScorePair{-18, -6} : ScorePair{-14, -4});
    sheet.Defence(colour, wing, d == 0 ? -4 : -2);
    if (RelativeSquare(colour, square) == D4) IsolatedQueenPawn(colour);
  }

  void Duo(int colour, int square) {
    const int relative = RelativeSquare(colour, square);
    sheet.Add(colour, {DuoPositional[relative], DuoReckless[relative]});
  }

  void Defended(int colour, int square) {
    const int relative = RelativeSquare(colour, square);
    sheet.Add(colour, {DefendedPositional[relative], DefendedReckless[relative]});
  }

  void Doubled(int colour, int file, bool iso, int d) {
    const int wing = PawnWing[file];
    if (!iso) {
      sheet.Add(colour, {-16, -6});
      sheet.Attack(colour, wing, -2);
      sheet.Defence(colour, wing, -3);
    } else {
      sheet.Add(colour, DoubledIsolatedByDistance[d]);
      sheet.Attack(colour, wing, d == 0 ? -2 : -1);
      sheet.Defence(colour, wing, d == 0 ? -10 : -7);
    }
  }

  void Tripled(int colour, int file, bool iso, int d) {
    const int wing = PawnWing[file];
    if (iso) {
      sheet.Add(colour, d == 0 ? ScorePair{-90, -90} : ScorePair{-85, -82});
    } else {
      sheet.Add(colour, d == 0 ? ScorePair{-70, -70} : ScorePair{-65, -67});
    }
    sheet.Attack(colour, wing, -2);
    sheet.Defence(colour, wing, -8);
  }

  void DefendedPasser(int, int) {}

  void AdjacentPassers(int colour, int file, int top, int gap) {
    const ScorePair value = AdjacentValue[top];
    sheet.Add(colour,
              {AdjacentGap[gap] * value.positional / 8, AdjacentGap[gap] * value.reckless / 8});
    sheet.Attack(colour, PieceWing[file], 3);
    sheet.Defence(colour ^ 1, PieceWing[file], -5);
  }

  void ChainBase(int colour, int base, bool sound) {
    const int wing = PawnWing[File(base)];
    sheet.Add(colour, sound ? ScorePair{3, 0} : ScorePair{-8, -2});
    sheet.Defence(colour, wing, sound ? 1 : -2);
  }

  void Majority(int colour, int wing) {
    sheet.Add(colour, {18, 10});
    sheet.Attack(colour, wing, 2);
  }

  void Candidate(int colour, int wing, int rank, bool weak) {
    sheet.Add(colour, CandidateValue[rank]);
    if (weak) {
      sheet.Add(colour, {-2, -7});
      sheet.Attack(colour, wing, -4);
      sheet.Defence(colour ^ 1, wing, 3);
    } else {
      sheet.Attack(colour, wing, rank - 1);
    }
  }

  PawnScoreSheet sheet;

 private:
  // An isolated pawn on d4 with no enemy pawn in front of it or beside that square: a weakness
  // that brings open lines. An enemy pawn on c6 or e6 keeps d5 for the defender.
  void IsolatedQueenPawn(int colour) {
    const Bitboard enemy = RelativeSet(colour, board.Pieces(colour ^ 1).pawns);
    constexpr Bitboard in_front =
        SquareBit(C5) | SquareBit(D5) | SquareBit(E5) | SquareBit(D6) | SquareBit(D7);
    if (enemy & in_front) return;
    sheet.Add(colour, {-8, 12});
    sheet.Defence(colour, CENTRE, -10);
    if (enemy & (SquareBit(C6) | SquareBit(E6))) {
      sheet.Add(colour, {-2, -3});
      sheet.Defence(colour ^ 1, CENTRE, 3);
      sheet.Attack(colour, CENTRE, (enemy & SquareBit(E6)) ? 5 : 6);
    } else {
      sheet.Attack(colour, CENTRE, 8);
    }
  }

  const Board& board;
  const PawnSquareTable& positional;
  const PawnSquareTable& reckless;
};

}  // namespace

void ConstructPawnEntry(EvaluationState& evaluation, const Board& board,
                        const PawnSquareTable& positional_table,
                        const PawnSquareTable& reckless_table) {
  PairSink sink(evaluation, board, positional_table, reckless_table);
  PawnEntryFrame::Walk(evaluation, board, sink);
  CentreFormationTerm(board, sink.sheet);
  CentreControlTerm(evaluation, board, sink.sheet);
  evaluation.pawn_scores.positional = sink.sheet.pair.positional;
  evaluation.pawn_scores.reckless = sink.sheet.pair.reckless;
}
