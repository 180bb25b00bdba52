// The pawn hash entry: what the pawn evaluation found out about one pawn structure and position
// type, packed into 112 bytes. Each of the five classified sets is stored as the union of the
// white and the black set (every pawn has one colour, so an AND with a side's pawns splits it
// again), which is how the entry holds twice the sets it seems to have room for.
#pragma once

#include <cstdint>

#include "chess/basic.h"
#include "evaluation/pawn_majority.h"

class Board;
struct EvaluationState;

struct PawnHashEntry {
  std::uint64_t key;  // pawn key
  std::uint32_t position_type;
  std::uint32_t packed_counts;  // majorities and openness, see PackCounts
  Bitboard passed;
  Bitboard isolated;
  Bitboard backward;
  Bitboard backward_low;
  Bitboard obstructed;
  Bitboard safe_advance[2];
  Bitboard unreachable_centre[2];
  // The first two only for the opening and middlegame types, the third only for the others.
  std::int16_t pawn_positional;
  std::int16_t pawn_reckless;
  std::int16_t pawn_ending;
  // The twelve king-safety units of the pawns, three to a word (see PackScoreWord); only for the
  // opening and middlegame types.
  std::uint32_t units[4];
};
static_assert(sizeof(PawnHashEntry) == 112);

// The sets that must all be made of pawns on the board; anything else betrays a key collision.
inline Bitboard PawnSetsOf(const PawnHashEntry& entry) {
  return entry.passed | entry.isolated | entry.backward | entry.backward_low | entry.obstructed;
}

// Bits 0-1 kind, 2-4 files, 5-7 opposing pawns, 8-10 highest file of the mask, of the queenside;
// 11-12, 13-15, 16-18 and 19-21 (the lowest file of the mask) of the kingside; 22-31 openness.
std::uint32_t PackCounts(const PawnMajority majority[2], int openness);
void UnpackCounts(std::uint32_t packed, PawnMajority majority[2], int& openness);

// Three signed values up to 511 in size, each as a sign bit and nine bits of magnitude.
std::uint32_t PackScoreWord(int a, int b, int c);
void UnpackScoreWord(std::uint32_t word, int& a, int& b, int& c);

// Packs what the pawn evaluation found: the long form with the scores and units for the opening
// and middlegame, the short form with the ending score for the other types.
PawnHashEntry BuildPawnEntry(const EvaluationState& evaluation, std::uint64_t pawn_key,
                             int position_type);

// Splits an entry into the two colours by their pawns on the board and fills the state.
void ReadPawnEntry(const PawnHashEntry& entry, const Board& board, EvaluationState& evaluation);
