// The working record of one evaluation, owned by the search or made locally, and the two numbers
// that steer the evaluation from outside: the draw value and the personality.
#pragma once

#include <cstdint>
#include <memory>

#include "chess/basic.h"
#include "evaluation/pawn_majority.h"
#include "evaluation/score_pair.h"

struct EvaluationSettings {
  std::int16_t draw_value = 0;   // contempt, from White's view
  std::int16_t personality = 0;  // positive plays more recklessly
};

// What the pawn evaluation knows about the pawns of one colour.
struct PawnBlock {
  Bitboard passed;
  std::uint16_t passed_count;
  std::uint16_t pawn_count;  // entries in `squares`; 0 also when a hash hit left the list unfilled
  std::uint16_t squares[16];  // lowest square first
  Bitboard pawn_attacks;
  Bitboard attacked_once;
  Bitboard attacked_twice;
  Bitboard controlled;
  Bitboard defended;
  Bitboard stopped;
  Bitboard restrained;
  Bitboard duo;
  Bitboard doubled;
  std::uint16_t file_count[8];
  Bitboard safe_advance;
  Bitboard potential_attacks;
  Bitboard isolated;
  Bitboard backward;
  Bitboard backward_low;
  Bitboard frontmost_passed;
  std::uint16_t passed_rank[8];  // board rank of the frontmost passed pawn by file, 0 for none
  Bitboard obstructed;
  Bitboard unreachable_centre;
};

// Attack and defence units of one colour on one wing (0 queenside, 1 kingside, 2 centre).
struct ZoneUnits {
  std::int16_t attack;
  std::int16_t defence;
};

// The scores and units that the pawn hash keeps for a pawn structure.
struct PawnScores {
  std::int16_t positional;
  std::int16_t reckless;
  std::int16_t ending;
  ZoneUnits units[2][3];
};

// Everything an evaluation clears before it starts.
struct EvaluationRecord {
  PawnBlock pawns[2];
  Bitboard blocked_pawns;
  std::int32_t openness;  // 1..15, high means open
  PawnMajority majority[2];  // queenside, kingside
  std::uint16_t files_without_pawn[2];
  std::uint16_t files_without_pawn_count[2];
  std::int32_t only_open_file;  // -1 for none or more than one
  bool has_bishop_pair[2];
  std::int32_t king_zone[2];
  Bitboard attacked[2];
  Bitboard attacked_without_queens[2];
  double endgame_factor;  // 0 on a full board, 1 near the ending
  std::int16_t endgame_trend;
  std::int16_t king_attack[2];  // king_attack[WHITE]: units against the white king
  std::int16_t king_defence[2];
  ZoneUnits zone_units[2][3];
  bool pawn_entry_from_hash;
  PawnScores pawn_scores;
  // What the shelter of each king found: the squares in front of it without an own pawn, one and
  // two ranks ahead, and the two curves of its units.
  std::int16_t missing_front[2];
  std::int16_t missing_second[2];
  double defence_curve[2];
  double attack_curve[2];
};

struct EvaluationState : EvaluationRecord {
  EvaluationState() : EvaluationRecord{}, settings(std::make_unique<EvaluationSettings>()) {}

  // Clears the record; the settings stay.
  void Reset() { static_cast<EvaluationRecord&>(*this) = EvaluationRecord{}; }

  std::unique_ptr<EvaluationSettings> settings;
};
