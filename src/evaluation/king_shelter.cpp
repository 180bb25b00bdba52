#include "evaluation/king_shelter.h"

#include <algorithm>

#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "evaluation/blend.h"
#include "evaluation/colour_view.h"
#include "evaluation/wings.h"

namespace {

// Squares, ranks and sets are seen from the side of the king's colour.

constexpr Bitboard A1H8_DIAGONAL = 0x8040201008040201ULL;
constexpr Bitboard H1A8_DIAGONAL = 0x0102040810204080ULL;
constexpr Bitboard B1H7_DIAGONAL = SquareSet({B1, C2, D3, E4, F5, G6, H7});
constexpr Bitboard G1A7_DIAGONAL = SquareSet({G1, F2, E3, D4, C5, B6, A7});
// Where an enemy pawn counts as storming: its second to fifth rank on the way down.
constexpr Bitboard STORM_RANKS = RankMask(1) | RankMask(2) | RankMask(3) | RankMask(4);

constexpr int SECOND_RANK = 1;
constexpr int THIRD_RANK = 2;
constexpr int B_FILE = 1;
constexpr int G_FILE = 6;

// By the files in front of the king without an enemy pawn, 0 to 3; subtracted.
constexpr ScorePair OpenFiles[4] = {{-6, -12}, {0, 6}, {6, 12}, {9, 18}};
constexpr int OpenFilesAttack[4] = {-6, 4, 9, 13};

// By the rank of the storming pawn, 1 to 4; subtracted.
constexpr ScorePair StormRank[5] = {{0, 0}, {0, 0}, {6, 12}, {5, 13}, {3, 8}};
constexpr int StormRankAttack[5] = {0, 0, 8, 7, 4};
// By the ranks the pawn still has to go until an own pawn's attack meets it, 0 to 2; subtracted.
constexpr ScorePair StormUnopposed[3] = {{4, 12}, {3, 8}, {1, 5}};
constexpr int StormUnopposedAttack[3] = {12, 10, 8};

// A king with a single pawn missing in front, whose long diagonal lies open.
struct DiagonalWeakness {
  int king;
  Bitboard pawns;
  Bitboard diagonal;
  ScorePair pair;
  int defence;
};
constexpr DiagonalWeakness DiagonalWeaknesses[4] = {
    {A1, SquareSet({B2, C3, D4}), A1H8_DIAGONAL, {-4, -6}, -6},
    {H1, SquareSet({G2, F3, E4}), H1A8_DIAGONAL, {-4, -6}, -6},
    {B1, SquareSet({C2, D3, E4}), B1H7_DIAGONAL, {-2, -3}, -4},
    {G1, SquareSet({F2, E3, D4}), G1A7_DIAGONAL, {-2, -3}, -4},
};

// Working numbers of one shelter.
struct Shelter {
  ScorePair s;
  int king_attack = 0;
  int king_defence = 0;
  int missing_front = 0;
  int missing_second = 0;
  int open = 0;
  bool gap = false;
  bool neighbours = false;
};

// Sets of the board, as the king's side sees them.
struct Frame {
  Bitboard own_pawns;
  Bitboard own_knights;
  Bitboard own_bishops;
  Bitboard enemy_pawns;
  Bitboard enemy;
  Bitboard occupied;
  Bitboard weak_own_pawns;  // doubled and isolated
  Bitboard own_pawn_attacks;

  Frame(const EvaluationState& evaluation, const Board& board, const ColourView& v)
      : own_pawns(v.Set(v.own.pawns)),
        own_knights(v.Set(v.own.knights)),
        own_bishops(v.Set(v.own.bishops)),
        enemy_pawns(v.Set(v.other.pawns)),
        enemy(v.Set(v.other.all)),
        occupied(v.Set(board.occupied)),
        weak_own_pawns(v.Set(evaluation.pawns[v.colour].doubled &
                             evaluation.pawns[v.colour].isolated & v.own.pawns)),
        own_pawn_attacks(v.Set(evaluation.pawns[v.colour].pawn_attacks)) {}
};

bool Has(Bitboard set, int square) { return (set & SquareBit(square)) != 0; }

// The units at the king from the wing units: a king in the centre is open to every wing, one on a
// wing to that wing and a part of the centre.
void UnitsByWing(const ColourView& v, int king_file, Shelter& sh) {
  const ZoneUnits* ea = v.enemy_units;
  const ZoneUnits* od = v.units;
  switch (PieceWing[king_file]) {
    case CENTRE:
      sh.s += {-55, -80};
      sh.king_attack = ea[0].attack + ea[1].attack + ea[2].attack;
      sh.king_defence = od[CENTRE].defence;
      break;
    default: {
      const int wing = PieceWing[king_file];
      sh.s += wing == QUEENSIDE ? ScorePair(2, 2) : ScorePair(6, 2);
      sh.king_attack = ea[CENTRE].attack / 4 + ea[wing].attack;
      sh.king_defence = od[CENTRE].defence / 2 + od[wing].defence;
      break;
    }
  }
}

// Own minor pieces in front of the king guard it too, unless they stand on the edge.
void MinorGuard(const Frame& f, int square, ScorePair knight, ScorePair bishop, Shelter& sh) {
  if (File(square) == 0 || File(square) == 7) return;
  if (Has(f.own_knights, square)) {
    sh.s += knight;
    sh.king_defence += 2;
  }
  if (Has(f.own_bishops, square)) {
    sh.s += bishop;
    sh.king_defence += 2;
  }
}

// A file with no pawn in front of the king, nor one behind it on the next rank.
void BareFile(const Frame& f, int file, Shelter& sh) {
  if (Has(f.own_pawns, MakeSquare(file, 3))) {
    sh.s += {-10, -12};
    sh.king_defence -= 6;
  } else {
    sh.s += {-12, -14};
    sh.king_defence -= 10;
  }
  if (file != B_FILE && file != G_FILE) return;
  sh.gap = true;
  const int front = MakeSquare(file, 1);
  if (f.weak_own_pawns & (SquareBit(front - 1) | SquareBit(front + 1))) {
    sh.s += {-18, -25};
    sh.king_defence -= 10;
  }
}

// The squares one and two ranks ahead of the king on one file.
void LookAtFile(const Frame& f, int king, int file, Shelter& sh) {
  const int front = MakeSquare(file, 1);
  const int second = MakeSquare(file, 2);
  if (!(f.enemy_pawns & FileMask(file))) ++sh.open;
  bool bare = false;
  if (Has(f.own_pawns, front)) {
    sh.s += {20, 28};
    if (file >= File(king) && file > 0 && Has(f.own_pawns, front - 1)) sh.neighbours = true;
  } else {
    ++sh.missing_front;
    bare = !Has(f.own_pawns, second);
  }
  if (Has(f.own_pawns, second)) {
    sh.s += {13, 22};
  } else {
    ++sh.missing_second;
  }
  if (Has(f.enemy, front)) sh.king_attack += 4;
  if (Has(f.enemy, second)) sh.king_attack += 4;
  MinorGuard(f, front, {3, 6}, {2, 5}, sh);
  MinorGuard(f, second, {2, 4}, {0, 2}, sh);
  if (bare) BareFile(f, file, sh);
}

void ByMissingPawns(const Frame& f, int king, int missing, Shelter& sh) {
  const auto add = [&sh](ScorePair pair, int defence) {
    sh.s += pair;
    sh.king_defence += defence;
  };
  switch (missing) {
    case 0:
      add({15, 26}, 14);
      return;
    case 1:
      if (sh.gap) return add({-20, -30}, -10);
      for (const DiagonalWeakness& d : DiagonalWeaknesses)
        if (king == d.king && !(f.own_pawns & d.pawns) && !(f.own_bishops & d.diagonal))
          return add(d.pair, d.defence);
      if (sh.neighbours) return add({15, 26}, 14);
      return add({3, 10}, 8);
    case 2: {
      const bool kingside = File(king) >= G_FILE && Has(f.own_pawns, G2);
      const bool queenside = File(king) <= B_FILE && Has(f.own_pawns, B2);
      if (kingside || queenside) return add({-5, -8}, -7);
      return add({-7, -12}, -9);
    }
    default:
      add({-20, -25}, -16);
      return;
  }
}

// Enemy pawns coming down the files in front of a king on a wing.
void PawnStorm(const Frame& f, int king, Shelter& sh) {
  const int file_of_king = File(king);
  for (int file = std::max(0, file_of_king - 1); file <= std::min(7, file_of_king + 1); ++file) {
    const Bitboard stormers = f.enemy_pawns & FileMask(file) & STORM_RANKS;
    if (!stormers) continue;
    const int p = FindLowestBit(stormers);  // the one furthest advanced
    const int r = Rank(p);
    sh.s -= StormRank[r];
    sh.king_attack += StormRankAttack[r];
    for (int q = p; q >= 0; q -= 8) {
      if (Has(f.own_pawns, q)) {
        // Met head-on by an own pawn.
        sh.s += {2, 10};
        sh.king_attack -= 4;
        break;
      }
      if (Has(f.own_pawn_attacks, q)) {
        const int t = r - Rank(q);
        if (t <= 2) {
          sh.s -= StormUnopposed[t];
          sh.king_attack += StormUnopposedAttack[t];
        }
        break;
      }
    }
    const bool file_with_partner = file <= B_FILE || file == 5 || file == G_FILE;
    if (file_with_partner && Has(f.enemy_pawns, p + 1)) {
      sh.s += {-5, -16};
      sh.king_attack += 6;
    }
    // Something behind the pawn: it came from there or the way back is blocked.
    if (Has(f.occupied, p + 8)) {
      sh.s += {4, 8};
      sh.king_attack -= 2;
    }
  }
}

void ShelterOnHomeRanks(const Frame& f, int king, Shelter& sh) {
  const bool on_second_rank = Rank(king) == SECOND_RANK;
  if (on_second_rank) {
    sh.s += {-6, -14};
    sh.king_defence -= 8;
    king -= 8;
  }
  for (int file = std::max(0, File(king) - 1); file <= std::min(7, File(king) + 1); ++file)
    LookAtFile(f, king, file, sh);
  int missing = sh.missing_front;
  if (on_second_rank && missing == 3) missing = sh.missing_second;
  sh.s -= OpenFiles[sh.open];
  sh.king_attack += OpenFilesAttack[sh.open];
  ByMissingPawns(f, king, missing, sh);
  const int file = File(king);
  if (file <= B_FILE || file >= G_FILE) PawnStorm(f, king, sh);
}

}  // namespace

ShelterFields ShelterFields::Of(const EvaluationState& evaluation, int colour) {
  return {evaluation.king_attack[colour],   evaluation.king_defence[colour],
          evaluation.missing_front[colour], evaluation.missing_second[colour],
          evaluation.defence_curve[colour], evaluation.attack_curve[colour]};
}

void ShelterFields::RestoreTo(EvaluationState& evaluation, int colour) const {
  evaluation.king_attack[colour] = king_attack;
  evaluation.king_defence[colour] = king_defence;
  evaluation.missing_front[colour] = missing_front;
  evaluation.missing_second[colour] = missing_second;
  evaluation.defence_curve[colour] = defence_curve;
  evaluation.attack_curve[colour] = attack_curve;
}

ScorePair KingShelter(EvaluationState& evaluation, const Board& board, int square, int colour) {
  const ColourView v(evaluation, board, colour);
  const int king = v.Square(square);
  Shelter sh;
  if (Rank(king) >= THIRD_RANK) {
    // Out in the field no shelter counts: every wing's attackers can reach it.
    const ZoneUnits* ea = v.enemy_units;
    sh.s = {-120, -200};
    sh.king_attack = ea[0].attack + ea[1].attack + ea[2].attack + 10;
    sh.king_defence = v.units[CENTRE].defence;
  } else {
    UnitsByWing(v, File(king), sh);
    ShelterOnHomeRanks(Frame(evaluation, board, v), king, sh);
  }
  const ShelterFields fields{std::int16_t(sh.king_attack),
                             std::int16_t(sh.king_defence),
                             std::int16_t(sh.missing_front),
                             std::int16_t(sh.missing_second),
                             DefenceCurve(sh.king_defence),
                             AttackCurve(sh.king_attack)};
  fields.RestoreTo(evaluation, colour);
  return sh.s;
}

ScorePair ShelterAt(EvaluationState& evaluation, const Board& board, int square, int colour) {
  const int rank = colour == WHITE ? Rank(square) : 7 - Rank(square);
  if (rank >= THIRD_RANK) return KingShelter(evaluation, board, square, colour);
  // On the c- and f-file the king stands between two shelters and leans to the wing; the
  // square on the wing is looked at last, so its units are the ones kept.
  int wing_square;
  int centre_square;
  switch (File(square)) {
    case 2:
      wing_square = square - 1;
      centre_square = square + 1;
      break;
    case 5:
      wing_square = square + 1;
      centre_square = square - 1;
      break;
    default:
      return KingShelter(evaluation, board, square, colour);
  }
  const ScorePair centre = KingShelter(evaluation, board, centre_square, colour);
  const ScorePair wing = KingShelter(evaluation, board, wing_square, colour);
  return {(centre.positional + 3 * wing.positional) / 4, (centre.reckless + 3 * wing.reckless) / 4};
}

ScorePair CornerTerm(EvaluationState& evaluation, const Board& board, int colour) {
  const ColourView v(evaluation, board, colour);
  const int king = v.Square(v.own.king_square);
  if (king != A1 && king != B1 && king != G1 && king != H1) return {};
  const Bitboard front_free =
      BoardTables.KingAttacks[king] & RankMask(1) & ~v.Set(v.own.pawns);
  if (front_free) {
    const int front = king + 8;
    const bool lone_pawn_in_front = v.Holds(v.other.pawns, front) &&
                                    !v.Holds(evaluation.pawns[v.enemy].defended, front) &&
                                    front_free == SquareBit(front);
    if (!lone_pawn_in_front) return {};
    // The king takes it.
    evaluation.king_attack[colour] = std::int16_t(evaluation.king_attack[colour] - 10);
    evaluation.king_defence[colour] = std::int16_t(evaluation.king_defence[colour] + 2);
    return {200, 240};
  }
  // Shut in by its own pawns: a heavy piece on the back rank would mate.
  constexpr Bitboard BackRank[8] = {SquareSet({C1, D1, E1, F1, G1, H1}),
                                    SquareSet({D1, E1, F1, G1, H1}), 0, 0, 0, 0,
                                    SquareSet({A1, B1, C1, D1, E1}),
                                    SquareSet({A1, B1, C1, D1, E1, F1})};
  Bitboard watched = v.Set(BackRank[File(king)]) & evaluation.attacked[v.enemy];
  const Bitboard heavy = v.other.rooks | v.other.queens;
  while (watched) {
    if (board.AttackersTo(PopHighest(watched)) & heavy) {
      evaluation.king_defence[colour] = std::int16_t(evaluation.king_defence[colour] - 6);
      return {-6, -12};
    }
  }
  return {};
}
