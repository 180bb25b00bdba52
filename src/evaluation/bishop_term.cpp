// Bishops: square tables, the fianchetto and its long diagonal, mobility, bishops hemmed in by
// their own pawns, the trapped bishop, and the pair.
#include <algorithm>

#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "chess/square_colours.h"
#include "evaluation/colour_view.h"
#include "evaluation/piece_square_tables.h"
#include "evaluation/piece_terms.h"
#include "evaluation/wings.h"

namespace {

// All sets and squares below are seen from White's side.

constexpr Bitboard A1H8_DIAGONAL = 0x8040201008040201ULL;
constexpr Bitboard H1A8_DIAGONAL = 0x0102040810204080ULL;
// The two long diagonals from the third rank on: a piece there does not stop a fianchettoed
// bishop from counting the squares beyond it.
constexpr Bitboard CENTRE_DIAGONALS = 0x8142241818240000ULL;

constexpr Bitboard OUTER_RING = RANK_1 | RankMask(7) | FILE_A | FileMask(7);
constexpr Bitboard CENTRE_SQUARES = SquareSet({D4, E4, D5, E5});
constexpr Bitboard CENTRE_RING =
    SquareSet({C3, D3, E3, F3, C4, F4, C5, F5, C6, D6, E6, F6});
constexpr Bitboard DEEP_SQUARES = SquareSet({B6, C6, D6, E6, F6, G6}) | RankMask(6) | RankMask(7);

// The pawns that block a bishop most where they can't move on, by the colour of its squares.
constexpr Bitboard LIGHT_BLOCKERS = SquareSet({E2, D3, F3, C4, E4, D5});
constexpr Bitboard DARK_BLOCKERS = SquareSet({D2, C3, E3, D4, F4, E5});
constexpr Bitboard CENTRE_BLOCKERS = SquareSet({D4, E4});

struct Fianchetto {
  int wing;
  int other_wing;
  int hole;  // the square in front of home, which the pawn pushed from home would have left
  int home;
  Bitboard diagonal;
  Bitboard square_colour;
};

constexpr Fianchetto QUEENSIDE_FIANCHETTO{QUEENSIDE, KINGSIDE, B3, B2, A1H8_DIAGONAL, DARK_SQUARES};
constexpr Fianchetto KINGSIDE_FIANCHETTO{KINGSIDE, QUEENSIDE, G3, G2, H1A8_DIAGONAL, LIGHT_SQUARES};

// By the pawns on the long diagonal, less one.
constexpr ScorePair LongCount[6] = {{8, 8}, {6, 6}, {3, 4}, {0, 1}, {-2, -4}, {-6, -7}};
// By the reach `e` of the diagonal up to its first pawn, from -1.
constexpr ScorePair LongReach[8] = {{-5, -10}, {-2, -3}, {3, 4},  {8, 8},
                                    {11, 11},  {14, 14}, {8, 10}, {6, 4}};
constexpr int LongReachDefence[4] = {-5, 1, 2, 3};  // e = -1, 0, 1, 2 and more
constexpr int LongReachAttack[6] = {1, 1, 1, 1, 2, 4};  // e below 2, 2, 3, 4; above 4: 1

// Mobility by the number of squares, up to 4; from 5 on a straight line.
constexpr ScorePair FewSquares[5] = {{-24, -38}, {-16, -32}, {-10, -30}, {-8, -20}, {-5, -12}};

constexpr ScorePair BadBishop[3] = {{-30, -37}, {-18, -24}, {-8, -10}};  // by mobility 0, 1, more

// By openness / 4: the pair counts for more where lines are open.
constexpr ScorePair BishopPairOpenness[4] = {{2, 5}, {-5, 2}, {-7, -2}, {-10, -5}};

// Without the pair, bad bishops weigh more the fewer knights can take over their work.
struct BadBishopByKnights {
  ScorePair pair;
  int attack;
  int defence;
};
constexpr BadBishopByKnights BadWithKnights[3] = {
    {{-15, -17}, -4, -4}, {{-10, -12}, -3, -2}, {{-5, -7}, -2, -1}};

struct BishopWalk {
  EvaluationState& evaluation;
  const Board& board;
  const ColourView& v;
  Bitboard all_pawns;
};

int ReachOfFirstPawn(const BishopWalk& w, Bitboard pawns_on_diagonal) {
  // From the low end of the diagonal, as White sees it.
  const int first = FindLowestBit(w.v.Set(pawns_on_diagonal));
  const bool own = w.v.Holds(w.v.own.pawns, first);
  return Rank(first) - (own ? 2 : 3);
}

// A bishop on the long diagonal with its home square empty: the more of the diagonal it sees,
// the better. Returns true when the diagonal is open enough to skip the bad bishop test.
bool LongDiagonal(const BishopWalk& w, const Fianchetto& f, ScorePair& s) {
  const ColourView& v = w.v;
  if (!(v.other.bishops & v.Set(f.square_colour))) s += {8, 10};
  const Bitboard on_diagonal = v.Set(f.diagonal) & w.all_pawns;
  if (on_diagonal == 0) {
    s += {24, 24};
    v.units[f.wing].defence += 5;
    v.units[f.other_wing].attack += 6;
    return true;
  }
  const int count = std::min(PopCount(on_diagonal) - 1, 5);
  const int e = std::clamp(ReachOfFirstPawn(w, on_diagonal), -1, 6);
  s += LongCount[count];
  s += LongReach[e + 1];
  v.units[f.wing].defence += LongReachDefence[std::min(e, 2) + 1];
  v.units[f.other_wing].attack += e > 4 ? 1 : LongReachAttack[e + 1];
  return e > 1;
}

// Returns whether the bad bishop test is skipped; may widen the attacks `a` for mobility.
bool FianchettoTerm(const BishopWalk& w, int square, Bitboard& a, ScorePair& s) {
  const ColourView& v = w.v;
  const int white_square = v.Square(square);
  const Fianchetto* f = white_square == A1 || white_square == B2   ? &QUEENSIDE_FIANCHETTO
                        : white_square == H1 || white_square == G2 ? &KINGSIDE_FIANCHETTO
                                                                   : nullptr;
  if (f == nullptr) return false;
  bool no_bad_test = false;
  if (!v.Holds(v.own.pawns, f->hole)) {
    s += {-6, -4};
    v.units[f->wing].defence -= 2;
  }
  if (!v.Holds(w.all_pawns, f->home)) no_bad_test = LongDiagonal(w, *f, s);
  const Bitboard centre_diagonals = v.Set(CENTRE_DIAGONALS);
  const Bitboard hosts = a & centre_diagonals & (v.own.all & ~v.own.pawns);
  if (hosts) a |= w.board.BishopAttacksFrom(FindHighestBit(hosts)) & centre_diagonals;
  return no_bad_test;
}

ScorePair MobilityTerm(const BishopWalk& w, int square, Bitboard a, int& mobility) {
  const Bitboard m = (a | SquareBit(square)) & ~w.all_pawns & ~OUTER_RING;
  const int n = PopCount(m);
  const int centre = PopCount(m & CENTRE_SQUARES);
  const int ring = PopCount(m & CENTRE_RING);
  const int deep = PopCount(a & w.v.Set(DEEP_SQUARES));
  mobility = n;
  ScorePair s = n < 5 ? FewSquares[n] : ScorePair(n - 8, 2 * n - 18);
  s += {centre + ring / 2 + deep / 4, 4 * centre + 2 * ring + deep};
  return s;
}

// Own pawns fixed on the bishop's colour in the centre. Returns whether the bishop is bad.
bool BadBishopTerm(const BishopWalk& w, int square, int mobility, ScorePair& s) {
  const ColourView& v = w.v;
  const bool light = (SquareBit(v.Square(square)) & LIGHT_SQUARES) != 0;
  const Bitboard blockers = w.evaluation.pawns[v.colour].restrained &
                            v.own.pawns & v.Set(light ? LIGHT_BLOCKERS : DARK_BLOCKERS);
  if (!(blockers & v.Set(CENTRE_BLOCKERS)) && PopCount(blockers) < 2) return false;
  s += BadBishop[std::min(mobility, 2)];
  v.units[CENTRE].attack -= 8;
  v.units[CENTRE].defence -= 6;
  return true;
}

// A bishop at home behind a pawn or piece that stops its development.
void BlockedAtHome(const ColourView& v, int square, ScorePair& s) {
  const int white_square = v.Square(square);
  auto penalty = [&](ScorePair pair, int attack) {
    s += pair;
    v.units[CENTRE].attack -= attack;
  };
  switch (white_square) {
    case C1:
    case D2:
      if (v.Holds(v.own.pawns, E3)) {
        penalty({-6, -20}, 5);
      } else if (white_square == C1 && v.Holds(v.own.all, D2)) {
        penalty({-8, -18}, 3);
      }
      break;
    case F1:
    case E2:
      if (v.Holds(v.own.pawns, D3)) {
        penalty({-6, -20}, 5);
      } else if (white_square == F1 && v.Holds(v.own.all, E2)) {
        penalty({-8, -18}, 3);
      }
      break;
    case E3:
      if (v.Holds(v.own.pawns, D4)) penalty({-3, -6}, 2);
      break;
    case D3:
      if (v.Holds(v.own.pawns, E4)) penalty({0, -5}, 1);
      break;
    default:
      break;
  }
}

// A bishop that took the pawn on a7 (h7) and is shut in by the pawn on b6 (g6).
void TrappedTerm(const BishopWalk& w, int square, ScorePair& s) {
  const ColourView& v = w.v;
  const int white_square = v.Square(square);
  const int jailer = white_square == A7 ? B6 : white_square == H7 ? G6 : -1;
  if (jailer < 0 || !v.Holds(v.other.pawns, jailer)) return;
  const bool defended = v.Holds(w.evaluation.pawns[v.enemy].defended, jailer);
  s += defended ? ScorePair(-180, -180) : ScorePair(-110, -110);
}

ScorePair OneBishop(const BishopWalk& w, int square, bool& bad) {
  const ColourView& v = w.v;
  const int table_square = v.Square(square);
  ScorePair s{BishopPositional[table_square], BishopReckless[table_square]};
  Bitboard a = w.board.BishopAttacksFrom(square);
  w.evaluation.attacked[v.colour] |= a;
  const bool no_bad_test = FianchettoTerm(w, square, a, s);
  int mobility = 0;
  s += MobilityTerm(w, square, a, mobility);
  if (!no_bad_test && BadBishopTerm(w, square, mobility, s)) bad = true;
  BlockedAtHome(v, square, s);
  TrappedTerm(w, square, s);
  return s;
}

ScorePair PairOrBadBishops(const BishopWalk& w, bool bad) {
  const ColourView& v = w.v;
  EvaluationState& evaluation = w.evaluation;
  ScorePair s;
  if (!evaluation.has_bishop_pair[v.colour]) {
    if (!bad) return s;
    const BadBishopByKnights& row = BadWithKnights[std::min(PopCount(v.own.knights), 2)];
    s += row.pair;
    v.units[CENTRE].attack += row.attack;
    v.units[CENTRE].defence += row.defence;
    evaluation.endgame_trend = std::int16_t(evaluation.endgame_trend + v.Signed(-5));
    return s;
  }
  evaluation.endgame_trend = std::int16_t(evaluation.endgame_trend + v.Signed(10));
  const int i = std::clamp(evaluation.openness >> 2, 0, 3);
  s += BishopPairOpenness[i];
  v.units[CENTRE].attack += i;
  v.units[CENTRE].defence += evaluation.openness >> 3;
  return s;
}

// Enemy pawns that defend each other on the bishop's colour are targets it can't win.
void DefendedEnemyPawns(const BishopWalk& w, ScorePair& s) {
  const ColourView& v = w.v;
  Bitboard targets = w.evaluation.pawns[v.enemy].defended & v.other.pawns;
  if (!w.evaluation.has_bishop_pair[v.colour])
    targets &= (v.own.bishops & LIGHT_SQUARES) ? LIGHT_SQUARES : DARK_SQUARES;
  const int t = PopCount(targets);
  s.reckless = std::int16_t(s.reckless - 2 * t);
  v.units[CENTRE].attack -= t >> 1;
}

}  // namespace

ScorePair BishopTerm(EvaluationState& evaluation, const Board& board, int colour) {
  const ColourView v(evaluation, board, colour);
  const BishopWalk w{evaluation, board, v, board.white.pawns | board.black.pawns};
  ScorePair s;
  bool bad = false;
  for (Bitboard rest = v.own.bishops; rest != 0;) s += OneBishop(w, PopHighest(rest), bad);
  s += PairOrBadBishops(w, bad);
  DefendedEnemyPawns(w, s);
  return s;
}
