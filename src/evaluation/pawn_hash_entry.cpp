#include "evaluation/pawn_hash_entry.h"

#include "chess/bitboard.h"
#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "search/position_type.h"

namespace {

// A majority's files are contiguous from the edge of its wing, so its outermost file says it all.
struct WingMasks {
  Bitboard queenside[8];  // files a up to the index
  Bitboard kingside[8];   // files from the index up to h
};

constexpr WingMasks MakeWingMasks() {
  WingMasks masks{};
  for (int last = 0; last < 8; ++last)
    for (int file = 0; file < 8; ++file) {
      if (file <= last) masks.queenside[last] |= FileMask(file);
      if (file >= last) masks.kingside[last] |= FileMask(file);
    }
  return masks;
}

constexpr WingMasks MajorityMasks = MakeWingMasks();

std::uint32_t PackWing(const PawnMajority& majority, bool kingside) {
  if (majority.kind == 0) return 0;
  const Bitboard first_rank = majority.mask & RANK_1;
  const int edge_file = first_rank == 0 ? 0 : kingside ? File(FindLowestBit(first_rank))
                                                       : File(FindHighestBit(first_rank));
  return std::uint32_t(majority.kind & 3) | std::uint32_t(majority.files & 7) << 2 |
         std::uint32_t(majority.opposing_pawns & 7) << 5 | std::uint32_t(edge_file) << 8;
}

PawnMajority UnpackWing(std::uint32_t bits, bool kingside) {
  const int kind = int(bits & 3);
  if (kind == 0) return {};
  const int edge_file = int((bits >> 8) & 7);
  return {kind, int((bits >> 2) & 7), int((bits >> 5) & 7),
          kingside ? MajorityMasks.kingside[edge_file] : MajorityMasks.queenside[edge_file]};
}

// Sign in the low bit, magnitude in the nine above it.
std::uint32_t PackSigned(int value) {
  return value < 0 ? 1u | std::uint32_t(-value & 511) << 1 : std::uint32_t(value & 511) << 1;
}
int UnpackSigned(std::uint32_t bits) {
  const int magnitude = int((bits >> 1) & 511);
  return bits & 1 ? -magnitude : magnitude;
}

constexpr int KINGSIDE_SHIFT = 11;
constexpr int OPENNESS_SHIFT = 22;

bool HasPairScores(int position_type) { return position_type <= MIDDLEGAME; }

// The twelve units a word each for White's attack, White's defence, Black's attack and Black's
// defence, the three wings in order within the word.
void PackUnits(const ZoneUnits units[2][3], std::uint32_t words[4]) {
  for (int colour = 0; colour < 2; ++colour) {
    const ZoneUnits* wing = units[colour];
    words[2 * colour] = PackScoreWord(wing[0].attack, wing[1].attack, wing[2].attack);
    words[2 * colour + 1] = PackScoreWord(wing[0].defence, wing[1].defence, wing[2].defence);
  }
}

void UnpackUnits(const std::uint32_t words[4], ZoneUnits units[2][3]) {
  for (int colour = 0; colour < 2; ++colour) {
    int attack[3], defence[3];
    UnpackScoreWord(words[2 * colour], attack[0], attack[1], attack[2]);
    UnpackScoreWord(words[2 * colour + 1], defence[0], defence[1], defence[2]);
    for (int wing = 0; wing < 3; ++wing)
      units[colour][wing] = {std::int16_t(attack[wing]), std::int16_t(defence[wing])};
  }
}

}  // namespace

std::uint32_t PackCounts(const PawnMajority majority[2], int openness) {
  return PackWing(majority[0], false) | PackWing(majority[1], true) << KINGSIDE_SHIFT |
         std::uint32_t(openness & 1023) << OPENNESS_SHIFT;
}

void UnpackCounts(std::uint32_t packed, PawnMajority majority[2], int& openness) {
  majority[0] = UnpackWing(packed & 0x7FF, false);
  majority[1] = UnpackWing((packed >> KINGSIDE_SHIFT) & 0x7FF, true);
  openness = int(packed >> OPENNESS_SHIFT);
}

std::uint32_t PackScoreWord(int a, int b, int c) {
  return PackSigned(a) | PackSigned(b) << 10 | PackSigned(c) << 20;
}

void UnpackScoreWord(std::uint32_t word, int& a, int& b, int& c) {
  a = UnpackSigned(word);
  b = UnpackSigned(word >> 10);
  c = UnpackSigned(word >> 20);
}

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
