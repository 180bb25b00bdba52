#include "evaluation/passed_pawns.h"

#include "evaluation/pawn_geometry.h"
#include "evaluation/pawn_structure.h"
#include "evaluation/pawn_tables.h"
#include "evaluation/wings.h"

namespace {

ScorePair Scaled(ScorePair value, int numerator) {
  return {value.positional * numerator / 8, value.reckless * numerator / 8};
}

// Only the most advanced passed pawn of a file counts; the walk from the colour's far side finds
// it first and then drops the rest of its file.
ScorePair FrontmostPassers(PawnBlock& block, int colour) {
  ScorePair s;
  for (Bitboard rest = block.passed; rest != 0;) {
    const int square = FrontmostOf(colour, rest);
    const int file = File(square);
    rest &= ~FileMask(file);
    block.frontmost_passed |= SquareBit(square);
    block.passed_rank[file] = std::uint16_t(Rank(square));
    s += Scaled(PassedPawnValue[RelativeRank(colour, square)], PassedPawnFile[file]);
  }
  return s;
}

ScorePair PassedPawnPieces(EvaluationState& evaluation, const Board& board, int colour,
                           int square) {
  const PieceSet& own = board.Pieces(colour);
  const PieceSet& enemy = board.Pieces(colour ^ 1);
  const Bitboard file = FileMask(File(square));
  const Bitboard behind = AheadOnFile(colour ^ 1, square);
  const int wing = PawnWing[File(square)];
  ScorePair s;
  if (own.rooks & behind) s += ScorePair{5, 5};
  if (enemy.rooks & behind) {
    s += ScorePair{-4, -2};
  } else if (enemy.rooks & file) {
    s += ScorePair{-2, 0};
  }
  const int front = colour == WHITE ? square + 8 : square - 8;
  const int rank = RelativeRank(colour, square);
  if (enemy.all & SquareBit(front)) {
    const int blocker = board.squares[front] < 0 ? -board.squares[front] : board.squares[front];
    s -= Scaled(BlockerRank[rank], BlockerValue[blocker]);
    evaluation.zone_units[colour ^ 1][wing].defence += 2;
  } else if ((board.occupied & SquareBit(front)) == 0 && rank >= 4) {
    s += ScorePair{6, 8};
    evaluation.zone_units[colour][wing].attack += 1;
  }
  return s;
}

}  // namespace

ScorePair PassedPawnTerm(EvaluationState& evaluation) {
  return FrontmostPassers(evaluation.pawns[WHITE], WHITE) -
         FrontmostPassers(evaluation.pawns[BLACK], BLACK);
}

ScorePair PassedPawnPiecesTerm(EvaluationState& evaluation, const Board& board) {
  ScorePair s;
  for (int file = 0; file < 8; ++file) {
    for (int colour = WHITE; colour <= BLACK; ++colour) {
      const Bitboard pawn = evaluation.pawns[colour].frontmost_passed & FileMask(file);
      if (pawn == 0) continue;
      const ScorePair term = PassedPawnPieces(evaluation, board, colour, FindHighestBit(pawn));
      s += colour == WHITE ? term : -term;
    }
  }
  return s;
}
