#include "search/endgame_probes.h"

#include "bitbases/probe_generic_bitbases.h"
#include "bitbases/tablebases.h"
#include "search/position_type.h"
#include "search/search_board.h"
#include "search/search_types.h"

namespace {
constexpr int BITBASE_FOUND = 0;
// The largest tablebases have six pieces, kings included.
constexpr int MAX_TABLEBASE_PIECES = 6;
// Close to the root every probe is worth its price, and so is one after a capture high in the
// tree.
constexpr int ALWAYS_PROBE_PLY = 2;
constexpr std::int32_t DEEP_CAPTURE_DISTANCE = 895;

// A database score, relative to the side on move and to the position, as a score of the search.
Score FromDatabase(const SearchBoard& board, int score) {
  const int ply = int(board.ply);
  if (score == 0) return board.DrawScore();
  return score > 0 ? score + 1 - ply : score + ply;
}

struct PieceWindow {
  int min = 0;
  int max = MAX_TABLEBASE_PIECES;
};

bool HasPawns(const PieceSet& side) { return side.pawns != 0; }
bool HasOnlyPawns(const PieceSet& side) {
  return HasPawns(side) && side.minor_points == 0 && side.major_count == 0;
}

// Which endings are worth a tablebase access, from how deep, and with how many pieces. False:
// none.
bool TablebaseWindow(const SearchBoard& board, int position_type, bool pv, std::int32_t distance,
                     PieceWindow& window) {
  const PieceSet& white = board.white;
  const PieceSet& black = board.black;
  const bool both_pawns = HasPawns(white) && HasPawns(black);
  const int ply = int(board.ply);
  switch (position_type) {
    case ENDGAME_ROOKS:
    case ENDGAME_QUEENS:
      if (ply > 3 && distance <= (pv ? 320 : 384)) return false;
      window = both_pawns ? PieceWindow{5, 6} : PieceWindow{5, 5};
      return true;
    case ENDGAME_KNIGHTS:
    case ENDGAME_SAME_BISHOPS:
    case ENDGAME_OPPOSITE_BISHOPS:
      if (distance <= (pv ? 448 : 576) || both_pawns) return false;
      window = PieceWindow{6, 6};
      return true;
    case ENDGAME_KNIGHT_PAWNS:
    case ENDGAME_BISHOP_PAWNS:
    case ENDGAME_ROOK_PAWNS:
      if (distance <= (pv ? 448 : 576)) return false;
      window = PieceWindow{0, 6};
      return (HasOnlyPawns(white) && !HasPawns(black)) || (HasOnlyPawns(black) && !HasPawns(white));
    case ENDGAME_QUEEN_PAWNS: {
      if (distance <= (pv ? 384 : 512)) return false;
      window = PieceWindow{0, 6};
      // The side without the queen has a pawn one step from promotion.
      if (!white.queens) return !HasPawns(black) && (white.pawns & RankMask(6));
      return !HasPawns(white) && (black.pawns & RankMask(1));
    }
    case ENDGAME_PAWNS:
      if (!HasPawns(white) || !HasPawns(black)) {
        window = PieceWindow{0, 3};
      } else {
        window = distance > (pv ? 384 : 512) ? PieceWindow{0, 6} : PieceWindow{0, 4};
      }
      return true;
    default: return false;
  }
}
}  // namespace

bool ProbeEndgameTablebase(SearchBoard& board, int position_type, int node_type,
                           std::int32_t distance, Score beta, Score& value) {
  const bool pv = node_type == PV;
  const int ply = int(board.ply);
  const Move last = board.played_moves[ply];
  PieceWindow window;
  const bool unconditional = ply <= ALWAYS_PROBE_PLY ||
                             ((IsCapture(last) || IsPromotion(last)) &&
                              (pv || distance > DEEP_CAPTURE_DISTANCE));
  if (!unconditional && !TablebaseWindow(board, position_type, pv, distance, window)) return false;
  const int pieces = PopCount(board.occupied);
  if (pieces < window.min || pieces > window.max) return false;
  int score = 0;
  ++board.tablebase_probes.asked;
  if (BraskTablebases::ProbeTablebase(board, &score) != BraskTablebases::TB_FOUND) return false;
  ++board.tablebase_probes.found;
  value = Answer(beta, FromDatabase(board, score));
  return true;
}

bool ProbeEndgameDatabases(SearchBoard& board, int position_type, int node_type,
                           std::int32_t distance, Score beta, Score& value) {
  if (position_type < ENDGAME_EQUAL_PIECES) return false;
  int score = 0;
  if (board.ply > ALWAYS_PROBE_PLY && ++board.bitbase_probes.asked &&
      BraskBitbases::ProbeBitbases(board, &score) == BITBASE_FOUND) {
    ++board.bitbase_probes.found;
    const Score v = FromDatabase(board, score);
    // A lost position proves nothing against a beta at or below the loss.
    if (score >= 0 || beta > v) {
      value = Answer(beta, v);
      return true;
    }
  }
  return ProbeEndgameTablebase(board, position_type, node_type, distance, beta, value);
}
