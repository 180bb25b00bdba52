// Rooks: the file they stand on and how far they see along it, rooks that work together, rooks
// shut in behind their own pawns, and rooks that bear on the enemy king and queen.
#include <algorithm>
#include <cstdlib>

#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "evaluation/colour_view.h"
#include "evaluation/piece_terms.h"
#include "evaluation/wings.h"

namespace {

// By the squares seen along the file, 1 to 7.
constexpr ScorePair RookFileMobility[7] = {{-4, -10}, {-2, -8}, {0, -2}, {1, 4},
                                           {2, 6},    {3, 8},   {4, 10}};

// Each rook counts for more in the ending: simplifying towards it is worth this much.
constexpr int ROOK_ENDGAME_TREND = 24;

constexpr int SEVENTH_RANK = 6;

// How the rook's file looks from its square.
enum FileState {
  OPEN_FILE = 0,
  HALF_OPEN_FILE = 1,
  CLOSED_BY_OWN_PAWN = 2,
  OWN_PAWNS_BEHIND = 3,
};

// Corners where a king that has given up castling can lock its own rook in.
constexpr Bitboard QUEENSIDE_CORNER = SquareSet({A1, B1, C1, A2, B2, A3});
constexpr Bitboard KINGSIDE_CORNER = SquareSet({F1, G1, H1, G2, H2, H3});

struct OpenFileRow {
  ScorePair pair;
  int attack;
  int defence;
};
// [the only open file][more own rooks than enemy rooks on it]
constexpr OpenFileRow OpenFile[2][2] = {
    {{{16, 25}, 8, 2}, {{7, 15}, 6, 3}},
    {{{25, 30}, 12, 4}, {{35, 36}, 8, 8}},
};

struct RookSquare {
  int square;
  int file;
  int wing;
  Bitboard not_walked;  // own rooks still to come in the walk
  Bitboard plain;       // rank and file attacks
  bool more;            // the file, seen through own heavy pieces, holds a rook still to come
  int state;
  int own_pawn_ahead;    // rank, from the own side, of the nearest own pawn ahead; 0 for none
  int enemy_pawn_ahead;  // the same for an enemy pawn
};

// The file attacks, continued through own rooks and queens standing on the file.
Bitboard FileSeenThroughHeavyPieces(const Board& board, const ColourView& v, int square) {
  const Bitboard heavy = v.own.rooks | v.own.queens;
  Bitboard seen = board.FileAttacksFrom(square);
  Bitboard done = SquareBit(square);
  for (Bitboard next = seen & heavy & ~done; next != 0; next = seen & heavy & ~done) {
    const int through = FindHighestBit(next);
    done |= SquareBit(through);
    seen |= board.FileAttacksFrom(through);
  }
  return seen & ~SquareBit(square);
}

// The rank, as White sees it, of the lowest square of a set in White's frame; 0 for none.
int NearestRank(Bitboard white_frame_set) {
  return white_frame_set ? Rank(FindLowestBit(white_frame_set)) : 0;
}

void ReadFile(const ColourView& v, RookSquare& r) {
  const int white_square = v.Square(r.square);
  const Bitboard file = FileMask(r.file);
  const Bitboard ahead = file & (~Bitboard{0} << white_square) & ~SquareBit(white_square);
  const Bitboard own_pawns = v.Set(v.own.pawns);
  r.own_pawn_ahead = NearestRank(own_pawns & ahead);
  r.enemy_pawn_ahead = NearestRank(v.Set(v.other.pawns) & ahead);
  if (!(own_pawns & file)) {
    r.state = (v.other.pawns & file) ? HALF_OPEN_FILE : OPEN_FILE;
  } else if (r.own_pawn_ahead != 0) {
    const bool enemy_first = r.enemy_pawn_ahead != 0 && r.enemy_pawn_ahead < r.own_pawn_ahead;
    r.state = enemy_first ? HALF_OPEN_FILE : CLOSED_BY_OWN_PAWN;
  } else {
    r.state = OWN_PAWNS_BEHIND;
  }
}

bool EnemyKingOnLastTwoRanks(const ColourView& v) {
  return v.RankOf(v.other.king_square) >= SEVENTH_RANK;
}

ScorePair RookPairs(const ColourView& v, const RookSquare& r) {
  const Bitboard partners = r.plain & r.not_walked;
  if (partners == 0) {
    if (!r.more) return {};
    // Doubled, but with a piece of our own between them.
    v.units[r.wing].attack -= 2;
    v.units[r.wing].defence -= 4;
    return {-6, -10};
  }
  const bool both_on_seventh = v.RankOf(r.square) == SEVENTH_RANK &&
                               (v.Set(partners) & RankMask(SEVENTH_RANK)) != 0;
  if (both_on_seventh && EnemyKingOnLastTwoRanks(v)) {
    v.units[CENTRE].attack += 10;
    return {15, 28};
  }
  v.units[CENTRE].defence += 2;
  return {8, 12};
}

ScorePair SideBySideAtHome(const ColourView& v, const RookSquare& r) {
  const int white_square = v.Square(r.square);
  const Bitboard home_ranks = RANK_1 | RankMask(1);
  if (Rank(white_square) > 1 || r.file == 7) return {};
  if (!(v.Set(v.own.rooks) & FileMask(r.file + 1) & home_ranks)) return {};
  const Bitboard pawn_squares = (FileMask(r.file) | FileMask(r.file + 1)) & (RankMask(1) | RankMask(2));
  if (v.Set(v.own.pawns) & pawn_squares) return {};
  v.units[r.wing].attack += 1;
  v.units[r.wing].defence += 1;
  return {2, 4};
}

// A king that has given up castling in the corner beside its rook, which can only get out past
// its own pawns and king.
bool LockedInByKing(const ColourView& v, const RookSquare& r) {
  const int rook = v.Square(r.square);
  const int king = v.Square(v.own.king_square);
  for (Bitboard corner : {QUEENSIDE_CORNER, KINGSIDE_CORNER}) {
    if (!(corner & SquareBit(rook)) || !(corner & SquareBit(king))) continue;
    const Bitboard ways_out = v.Set(r.plain) & ~corner;
    return (ways_out & ~(v.Set(v.own.pawns) | SquareBit(king))) == 0;
  }
  return false;
}

ScorePair ClosedByOwnPawn(const Board& board, const ColourView& v, const RookSquare& r) {
  ScorePair s;
  if (r.own_pawn_ahead < 3) {
    s += {-6, -14};
    v.units[r.wing].attack -= 4;
    const Bitboard free = board.RankAttacksFrom(r.square) & ~v.own.all;
    const Bitboard files_without_own_pawns = ~OccupiedFiles(v.own.pawns);
    if (free == 0) {
      s += {-2, -6};
      v.units[r.wing].attack -= 5;
    } else if (v.Set(free) & RANK_1 & files_without_own_pawns) {
      // It can still swing over to a file of its own.
      s += {6, 12};
      v.units[r.wing].attack += 4;
    }
  }
  if (v.CastlingRights(board) == 0 && LockedInByKing(v, r)) {
    s += {-50, -70};
    v.units[r.wing].attack -= 8;
    v.units[r.wing].defence -= 5;
  }
  return s;
}

ScorePair ByFileState(const EvaluationState& evaluation, const Board& board, const ColourView& v,
                      const RookSquare& r) {
  switch (r.state) {
    case CLOSED_BY_OWN_PAWN:
      return ClosedByOwnPawn(board, v, r);
    case OWN_PAWNS_BEHIND:
      v.units[r.wing].attack += 6;
      v.units[r.wing].defence -= 6;
      return {};
    case HALF_OPEN_FILE:
      v.units[r.wing].attack += 6;
      return {12, 18};
    default: {
      const int own = r.more ? 2 : 1;
      const int enemy = PopCount(v.other.rooks & FileMask(r.file));
      const OpenFileRow& row = OpenFile[evaluation.only_open_file == r.file][own > enemy];
      v.units[r.wing].attack += row.attack;
      v.units[r.wing].defence += row.defence;
      return row.pair;
    }
  }
}

// Pressure on the seventh rank, the enemy king's files and the enemy queen.
ScorePair Targets(const EvaluationState& evaluation, const ColourView& v, const RookSquare& r) {
  ScorePair s;
  if (v.RankOf(r.square) == SEVENTH_RANK && EnemyKingOnLastTwoRanks(v)) {
    s += {28, 50};
    v.units[CENTRE].attack += 14;
  }
  const int king_file_distance = std::abs(File(v.other.king_square) - r.file);
  const int king_wing = evaluation.king_zone[v.enemy];
  if (king_file_distance == 0) {
    s += {15, 38};
    v.units[king_wing].attack += 13;
  } else if (king_file_distance == 1) {
    s += {12, 33};
    v.units[king_wing].attack += 11;
  }
  if (v.other.queens & FileMask(r.file)) {
    s += {8, 25};
    v.units[r.wing].attack += 4;
    v.enemy_units[r.wing].defence -= 9;
  }
  return s;
}

ScorePair OneRook(EvaluationState& evaluation, const Board& board, const ColourView& v,
                  RookSquare& r, int base) {
  ScorePair s{base + 15, base - 15};
  evaluation.endgame_trend = std::int16_t(evaluation.endgame_trend + v.Signed(ROOK_ENDGAME_TREND));
  const Bitboard seen = FileSeenThroughHeavyPieces(board, v, r.square);
  s += RookFileMobility[std::clamp(PopCount(seen), 1, 7) - 1];
  r.plain = board.RookAttacksFrom(r.square);
  evaluation.attacked[v.colour] |= r.plain;
  r.more = (seen & r.not_walked) != 0;
  ReadFile(v, r);
  s += RookPairs(v, r);
  s += SideBySideAtHome(v, r);
  s += ByFileState(evaluation, board, v, r);
  if (r.state != CLOSED_BY_OWN_PAWN) s += Targets(evaluation, v, r);
  return s;
}

}  // namespace

ScorePair RookTerm(EvaluationState& evaluation, const Board& board, int colour) {
  const ColourView v(evaluation, board, colour);
  // Rooks want open lines, which fewer pawns give them.
  const int pawns = PopCount(board.white.pawns | board.black.pawns);
  const int base = 60 - 12 * std::min(8, pawns / 2);
  ScorePair s;
  Bitboard walked = 0;
  // Rooks that see each other score for the one walked first, so each colour walks from the
  // far side of its own board down: Black's rooks are then judged exactly as White's would be.
  for (Bitboard rest = v.Set(v.own.rooks); rest != 0;) {
    RookSquare r{};
    r.square = v.Square(PopHighest(rest));
    walked |= SquareBit(r.square);
    r.file = File(r.square);
    r.wing = PieceWing[r.file];
    r.not_walked = v.own.rooks & ~walked;
    s += OneRook(evaluation, board, v, r, base);
  }
  return s;
}
