// The walk over the pawn structure that both forms of the pawn entry share. It decides which
// pawns, files and pairs a term applies to; the sink decides what each is worth. A sink gets
// everything from the side of the pawn's colour and keeps the sign itself.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "evaluation/passed_pawns.h"
#include "evaluation/pawn_geometry.h"
#include "evaluation/pawn_majorities.h"
#include "evaluation/pawn_sets.h"

namespace PawnEntryFrame {

// The obstruction of every pawn, by square, for the file step after the pawn step.
struct Obstructions {
  std::int8_t distance[64];
};

template <typename Sink>
void PawnStep(EvaluationState& evaluation, const Board& board, int colour, Obstructions& found,
              Sink& sink) {
  PawnBlock& block = evaluation.pawns[colour];
  for (int i = 0; i < block.pawn_count; ++i) {
    const int square = block.squares[i];
    const Bitboard bit = SquareBit(square);
    sink.Square(colour, square);
    const int d = Obstruction(evaluation, board, colour, square);
    found.distance[square] = std::int8_t(d);
    if (d != 0) block.obstructed |= bit;
    if (block.backward & bit)
      sink.Backward(colour, square, d, (block.backward_low & bit) != 0, (block.duo & bit) != 0);
    if ((block.isolated & bit) && !(block.doubled & bit)) {
      sink.Isolated(colour, square, d);
      continue;
    }
    if (block.frontmost_passed & bit) continue;
    if (block.duo & bit) sink.Duo(colour, square);
    if (block.defended & bit) sink.Defended(colour, square);
  }
}

template <typename Sink>
void FileStep(const EvaluationState& evaluation, const Board& board, int colour, int file,
              const Obstructions& found, Sink& sink) {
  const PawnBlock& block = evaluation.pawns[colour];
  const Bitboard on_file = board.Pieces(colour).pawns & FileMask(file);
  if (block.file_count[file] >= 2) {
    const bool iso = (on_file & block.isolated) != 0;
    const int d = found.distance[FrontmostOf(colour, on_file)];
    if (block.file_count[file] == 2) {
      sink.Doubled(colour, file, iso, d);
    } else {
      sink.Tripled(colour, file, iso, d);
    }
  }
  const Bitboard passer = block.frontmost_passed & FileMask(file);
  if (passer == 0) return;
  const int square = FindHighestBit(passer);
  const Bitboard defenders = BoardTables.PawnAttacks[colour ^ 1][square] &
                             board.Pieces(colour).pawns & ~block.passed;
  if (defenders != 0) sink.DefendedPasser(colour, square);
}

template <typename Sink>
void AdjacentPassersStep(const EvaluationState& evaluation, int colour, Sink& sink) {
  const PawnBlock& block = evaluation.pawns[colour];
  ForEachAdjacentPassers(block, [&](int left, int right) {
    const int r1 = PassedRankFromOwnSide(block, colour, left);
    const int r2 = PassedRankFromOwnSide(block, colour, right);
    const int top = r1 > r2 ? r1 : r2;
    sink.AdjacentPassers(colour, right, top, top - (r1 > r2 ? r2 : r1));
  });
}

// Each defended pawn and each pawn that defends it: the base of the chain is sound on the edge,
// when defended itself, or with a neighbour beside it.
template <typename Sink>
void PawnChainStep(const EvaluationState& evaluation, const Board& board, int colour, Sink& sink) {
  const PawnBlock& block = evaluation.pawns[colour];
  const Bitboard own = board.Pieces(colour).pawns;
  for (int i = 0; i < block.pawn_count; ++i) {
    const int square = block.squares[i];
    if (!(block.defended & SquareBit(square))) continue;
    for (Bitboard bases = BoardTables.PawnAttacks[colour ^ 1][square] & own; bases != 0;) {
      const int base = FindLowestBit(bases);
      bases &= bases - 1;
      const Bitboard bit = SquareBit(base);
      const bool sound = (bit & (FILE_A | FILE_H)) || (block.defended & bit) || (block.duo & bit);
      sink.ChainBase(colour, base, sound);
    }
  }
}

// Pawns of the majority side on its half of the board that are not passed and have left their
// start rank without reaching the seventh: the candidates that make the majority count.
template <typename Sink>
void MajorityStep(const EvaluationState& evaluation, const Board& board, Sink& sink) {
  for (int wing = 0; wing <= 1; ++wing) {
    const PawnMajority& majority = evaluation.majority[wing];
    if (majority.kind == NO_MAJORITY) continue;
    const int colour = MajorityColour(majority);
    const PawnBlock& block = evaluation.pawns[colour];
    sink.Majority(colour, wing);
    Bitboard candidates = board.Pieces(colour).pawns & HalfOfBoard(wing) & ~block.passed &
                          ~(RankMask(1) | RankMask(6));
    while (candidates != 0) {
      const int square = FindHighestBit(candidates);
      candidates ^= SquareBit(square);
      const bool weak = (evaluation.blocked_pawns | block.backward) & SquareBit(square);
      sink.Candidate(colour, wing, RelativeRank(colour, square), weak);
    }
  }
}

template <typename Sink>
void Walk(EvaluationState& evaluation, const Board& board, Sink& sink) {
  Obstructions found{};
  PawnStep(evaluation, board, WHITE, found, sink);
  PawnStep(evaluation, board, BLACK, found, sink);
  for (int file = 0; file < 8; ++file) {
    FileStep(evaluation, board, WHITE, file, found, sink);
    FileStep(evaluation, board, BLACK, file, found, sink);
  }
  AdjacentPassersStep(evaluation, WHITE, sink);
  AdjacentPassersStep(evaluation, BLACK, sink);
  PawnChainStep(evaluation, board, WHITE, sink);
  PawnChainStep(evaluation, board, BLACK, sink);
  MajorityStep(evaluation, board, sink);
}

}  // namespace PawnEntryFrame
