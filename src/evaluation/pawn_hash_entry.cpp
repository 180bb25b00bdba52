#include "evaluation/pawn_hash_entry.h"

#include "chess/bitboard.h"
#include "search/position_type.h"

namespace {

bool HasPairScores(int position_type) { return position_type <= MIDDLEGAME; }

// The twelve units in the order colour, wing, attack before defence, three to a word.
void PackUnits(const ZoneUnits units[2][3], std::uint32_t words[4]) {
  int values[12];
  for (int colour = 0; colour < 2; ++colour)
    for (int wing = 0; wing < 3; ++wing) {
      values[colour * 6 + wing * 2] = units[colour][wing].attack;
      values[colour * 6 + wing * 2 + 1] = units[colour][wing].defence;
    }
  for (int word = 0; word < 4; ++word)
    words[word] = PackScoreWord(values[3 * word], values[3 * word + 1], values[3 * word + 2]);
}

void UnpackUnits(const std::uint32_t words[4], ZoneUnits units[2][3]) {
  int values[12];
  for (int word = 0; word < 4; ++word)
    UnpackScoreWord(words[word], values[3 * word], values[3 * word + 1], values[3 * word + 2]);
  for (int colour = 0; colour < 2; ++colour)
    for (int wing = 0; wing < 3; ++wing)
      units[colour][wing] = {std::int16_t(values[colour * 6 + wing * 2]),
                             std::int16_t(values[colour * 6 + wing * 2 + 1])};
}

}  // namespace

PawnHashEntry BuildPawnEntry(const EvaluationState& evaluation, std::uint64_t pawn_key,
                             int position_type) {
  const PawnBlock& white = evaluation.pawns[WHITE];
  const PawnBlock& black = evaluation.pawns[BLACK];
  PawnHashEntry entry{};
  entry.key = pawn_key;
  entry.position_type = std::uint32_t(position_type);
  entry.packed_counts = PackCounts(evaluation.majority, evaluation.openness);
  entry.passed = white.passed | black.passed;
  entry.isolated = white.isolated | black.isolated;
  entry.backward = white.backward | black.backward;
  entry.backward_low = white.backward_low | black.backward_low;
  entry.obstructed = white.obstructed | black.obstructed;
  entry.safe_advance[WHITE] = white.safe_advance;
  entry.safe_advance[BLACK] = black.safe_advance;
  entry.unreachable_centre[WHITE] = white.unreachable_centre;
  entry.unreachable_centre[BLACK] = black.unreachable_centre;
  if (HasPairScores(position_type)) {
    entry.pawn_positional = evaluation.pawn_scores.positional;
    entry.pawn_reckless = evaluation.pawn_scores.reckless;
    PackUnits(evaluation.pawn_scores.units, entry.units);
  } else {
    entry.pawn_ending = evaluation.pawn_scores.ending;
  }
  return entry;
}

void ReadPawnEntry(const PawnHashEntry& entry, const Board& board, EvaluationState& evaluation) {
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    const Bitboard own = board.Pieces(colour).pawns;
    PawnBlock& block = evaluation.pawns[colour];
    block.passed = entry.passed & own;
    block.passed_count = std::uint16_t(PopCount(block.passed));
    block.isolated = entry.isolated & own;
    block.backward = entry.backward & own;
    block.backward_low = entry.backward_low & own;
    block.obstructed = entry.obstructed & own;
    block.safe_advance = entry.safe_advance[colour];
    block.unreachable_centre = entry.unreachable_centre[colour];
  }
  int openness = 0;
  UnpackCounts(entry.packed_counts, evaluation.majority, openness);
  evaluation.openness = openness;
  if (HasPairScores(int(entry.position_type))) {
    evaluation.pawn_scores.positional = entry.pawn_positional;
    evaluation.pawn_scores.reckless = entry.pawn_reckless;
    UnpackUnits(entry.units, evaluation.pawn_scores.units);
  } else {
    evaluation.pawn_scores.ending = entry.pawn_ending;
  }
  evaluation.pawn_entry_from_hash = true;
}
