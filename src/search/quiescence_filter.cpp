#include "search/quiescence_filter.h"

#include "search/search_settings.h"
#include "search/search_types.h"
#include "search/static_exchange.h"

namespace {
bool PassesPromotion(Move move) {
  if (PromotionType(move) == QUEEN) return true;
  return PromotionType(move) == KNIGHT && GivesDirectCheck(move);
}

// Checks near the horizon are searched whatever they cost.
bool IsCheckNearHorizon(int kind, std::int32_t distance) {
  switch (kind) {
    case 1: return distance >= search_every_normal_check_in_quiescence_min_distance;
    case 2: return distance >= search_every_discovered_check_in_quiescence_min_distance;
    case 3: return distance >= search_every_double_check_in_quiescence_min_distance;
    default: return false;
  }
}
}  // namespace

bool PassesQuiescenceFilter(Move move, std::int32_t distance, std::int32_t beta,
                            int position_type, const Board& board) {
  if (IsPromotion(move)) return PassesPromotion(move);
  const int kind = CheckKind(move);
  if (IsCheckNearHorizon(kind, distance)) return true;
  // Beyond this only a mate reaches beta, and the checks that may give one were let through above.
  if (beta > MATE_THRESHOLD + 1) return false;

  // `light`: no check, or a direct one, which the exchange on the target square can judge.
  const bool light = kind < 2;
  const int moved = MovedType(move);
  std::int32_t needed = beta - board.Material() - QuiescenceMargin[position_type];
  // A quiet check gets harder to search with every ply below the horizon.
  if (!IsCapture(move) && light && distance < -128) needed -= distance;
  std::int32_t gain = PieceValue[CapturedType(move)];
  if (needed > gain && kind != 0) {
    if (moved != KNIGHT && light) return false;
    gain += ThreatAfterMove(move, board);
  }
  if (needed > gain) return false;
  if (moved == KING || !light) return true;  // a discovered check is not judged by the mover
  if (PiecePoints[CapturedType(move)] >= PiecePoints[moved]) return true;
  return StaticExchange(move, board) >= -10;
}
