#include "search/threat_detection.h"

#include "chess/board_tables.h"
#include "search/node_state.h"
#include "search/search_board.h"
#include "search/search_settings.h"
#include "search/search_types.h"

namespace {
// Pieces won by the checked side during a run of checks make a perpetual less likely to be the
// checking side's only hope: it takes more checks in a row to believe it.
constexpr int SMALL_GAIN = 315;
constexpr int LARGE_GAIN = 500;

int TypeAt(const Board& board, int square) {
  const int piece = board.squares[square];
  return piece > 0 ? piece : -piece;
}

// The king is never pinned material; it counts like nothing.
int PointsOf(int type) { return type >= PAWN && type <= QUEEN ? PiecePoints[type] : 0; }

bool IsSlider(int type) { return type == BISHOP || type == ROOK || type == QUEEN; }

Bitboard RaysOf(int type, int square) {
  const auto& tables = BoardTables;
  if (type == BISHOP) return tables.BishopRays[square];
  if (type == ROOK) return tables.RookRays[square];
  return type == QUEEN ? tables.QueenRays[square] : 0;
}

bool IsQueenCheck(Move move) { return MovedType(move) == QUEEN && GivesCheck(move); }

// A pawn or a knight checks from next to the king: nothing can be put in between.
bool IsSliderCheck(Move move) {
  if (!GivesCheck(move)) return false;
  const int type = MovedType(move);
  return !((type == PAWN || type == KNIGHT) && GivesDirectCheck(move));
}

// The square of the piece that gave the check of `previous`, which the interposition at
// `interposed` now screens off.
int CheckingSlider(Move previous, int interposed, const Board& board, int checker_side) {
  const auto& tables = BoardTables;
  if (GivesDirectCheck(previous)) {
    const int to = To(previous);
    if (MovedType(previous) != KING) return to;
    // Castling gives check with its rook.
    const int rank_base = to & 56;
    return File(to) == File(G1) ? rank_base + File(F1) : rank_base + File(D1);
  }
  const PieceSet& checker = board.Pieces(checker_side);
  const int king = int(board.Pieces(checker_side ^ 1).king_square);
  Bitboard candidates = tables.QueenRays[interposed] & tables.QueenRays[From(previous)] &
                        tables.QueenRays[king] & (checker.bishops | checker.rooks | checker.queens);
  if (!candidates) return -1;
  if (candidates & (candidates - 1)) {
    candidates &= board.SliderBehind(interposed, tables.Direction[king][interposed]);
    if (!candidates) return -1;
  }
  return FindHighestBit(candidates);
}

// No pin on the line before: the opponent interposed against a slider check, or moved a slider
// that now holds one of our pieces against our king.
int FindNewPin(PinRecord& record, Move last, Move previous, const Board& board) {
  const auto& tables = BoardTables;
  const int side = int(board.side_on_move);
  const int opponent = side ^ 1;
  if (IsSliderCheck(previous)) {
    if (MovedType(last) == KING || IsCapture(last)) return PIN_NONE;
    const int pinned = To(last);
    const int pinner = CheckingSlider(previous, pinned, board, side);
    if (pinner < 0 || !IsEffectivePin(pinner, pinned, board, side)) return PIN_NONE;
    record = PinRecord{std::int16_t(pinned), std::int16_t(pinner), side};
    return PIN_NEW;
  }
  const int to = To(last);
  const int type = TypeAt(board, to);
  if (GivesDirectCheck(last) || !IsSlider(type)) return PIN_NONE;
  const int king = int(board.Own().king_square);
  if (!(RaysOf(type, to) & SquareBit(king))) return PIN_NONE;
  const Bitboard between = tables.Between[to][king];
  const Bitboard own = between & board.Own().all;
  if ((between & board.Pieces(opponent).all) || !own || (own & (own - 1))) return PIN_NONE;
  const int pinned = FindLowestBit(own);
  if (!IsEffectivePin(to, pinned, board, opponent)) return PIN_NONE;
  record = PinRecord{std::int16_t(pinned), std::int16_t(to), opponent};
  return PIN_NEW;
}

// Whether the piece that just moved to `to` attacks the pinned square.
bool NewlyAttacks(const Board& board, int to, int pinned, int mover) {
  const auto& tables = BoardTables;
  const int type = TypeAt(board, to);
  const Bitboard target = SquareBit(pinned);
  switch (type) {
    case PAWN: return tables.PawnAttacks[mover][to] & target;
    case KNIGHT: return tables.KnightAttacks[to] & target;
    case KING: return tables.KingAttacks[to] & target;
    default:
      return (RaysOf(type, to) & target) && !(tables.Between[to][pinned] & board.occupied);
  }
}

// A pin stood before the last move: did the move break it, keep it, or tighten it?
int FollowPin(PinRecord& record, const PinRecord& before, Move last, const Board& board) {
  const auto& tables = BoardTables;
  const int side = int(board.side_on_move);
  const int opponent = side ^ 1;
  const int to = To(last);
  const int pinned = before.pinned_square;
  const int pinner = before.pinner_square;
  if (before.pinning_side == side) {
    // The side under the pin moved.
    const int king = int(board.Pieces(opponent).king_square);
    if (MovedType(last) == KING || to == pinner || (tables.Between[king][pinner] & SquareBit(to))) {
      return PIN_ENDED;
    }
    record = before;
    return PIN_STANDS;
  }
  // The pinning side moved.
  if (to == pinned) return PIN_PIECE_CAPTURED;
  if (From(last) == pinner) return PIN_ENDED;
  const int king = int(board.Own().king_square);
  if (tables.Between[pinned][king] & SquareBit(to)) return PIN_ENDED;
  if (tables.Between[pinner][pinned] & SquareBit(to)) {
    const int type = TypeAt(board, to);
    if (!IsSlider(type) || !(RaysOf(type, to) & SquareBit(pinned))) return PIN_ENDED;
    record = before;
    record.pinner_square = std::int16_t(to);
    return PIN_TIGHTENED;
  }
  record = before;
  return NewlyAttacks(board, to, pinned, opponent) ? PIN_TIGHTENED : PIN_STANDS;
}

// Whether the pinning side defends the square of its pinner, so that the pinned queen cannot
// take it for free.
bool IsDefended(const Board& board, int square, int side) {
  const PieceSet& defender = board.Pieces(side);
  if (BoardTables.PawnAttacks[side ^ 1][square] & defender.pawns) return true;
  return board.IsAttacked(square, defender);
}
}  // namespace

bool TestPerpetualCheck(PerpetualRecord* records, const Board& board) {
  const int ply = int(board.ply);
  PerpetualRecord& r = records[ply];
  const int king = int(board.Own().king_square);
  r.flag = 0;
  r.king_square = std::int16_t(king);
  r.blocked = board.Own().all & BoardTables.KingAttacks[king];
  r.material = std::int16_t(board.Material());
  r.check_count = std::int16_t(ply >= 2 ? records[ply - 2].check_count + 1 : 1);
  const int count = r.check_count;
  if (count < 2) return false;
  const int start = ply - 2 * count + 2;
  const PerpetualRecord& s = records[start < 0 ? 0 : start];

  const int gained = r.material - s.material;
  int need = 2;
  if (gained >= LARGE_GAIN) {
    if (count < 4) return false;
    need = 4;
  } else if (gained >= SMALL_GAIN) {
    if (count < 3) return false;
    need = 3;
  }
  const int moved = BoardTables.Distance[s.king_square][r.king_square];
  if (moved >= 2) {
    need += moved >= 4 ? 2 : 1;
  } else if (PopCount(r.blocked) > 1 && (!s.blocked || PopCount(s.blocked) < PopCount(r.blocked))) {
    // More own men around the king than when the checks began: it may find shelter soon.
    ++need;
  }
  if (need > count) return false;
  r.flag = 1;
  return true;
}

int UpdatePin(PinRecord* records, Move last_move, Move previous_move, const Board& board) {
  const int ply = int(board.ply);
  PinRecord& record = records[ply];
  const PinRecord& before = records[ply - 1];
  if (last_move == INVALID) {
    record = before;
    return PIN_NONE;
  }
  record = NO_PIN;
  if (before.pinned_square < 0) return FindNewPin(record, last_move, previous_move, board);
  return FollowPin(record, before, last_move, board);
}

bool IsEffectivePin(int pinner, int pinned, const Board& board, int pinning_side) {
  const auto& tables = BoardTables;
  const int pinner_type = TypeAt(board, pinner);
  switch (TypeAt(board, pinned)) {
    case KING:
    case KNIGHT: return true;
    case PAWN:
      // A pawn that can take its pinner is not held by it.
      return !(tables.PawnAttacks[pinning_side ^ 1][pinned] & SquareBit(pinner));
    case BISHOP:
      if (pinner_type == QUEEN) return (tables.RookRays[pinned] & SquareBit(pinner)) != 0;
      return pinner_type == ROOK;
    case ROOK:
      if (pinner_type == QUEEN) return (tables.BishopRays[pinned] & SquareBit(pinner)) != 0;
      return pinner_type == BISHOP;
    case QUEEN:
      // A queen takes any pinner along the line; it is only held when that costs her.
      if (pinner_type == QUEEN) return false;
      return IsDefended(board, pinner, pinning_side);
    default: return false;
  }
}

bool IsPinThreat(const PinRecord* records, const Board& board, int pin_state) {
  const PinRecord& record = records[board.ply];
  if (record.pinned_square < 0) return false;
  const int gain = PointsOf(TypeAt(board, record.pinned_square)) -
                   PointsOf(TypeAt(board, record.pinner_square));
  if (consider_only_winning_pins_as_threats) return gain > 0;
  return gain > 0 || pin_state == PIN_TIGHTENED;
}

void DetectPinThreat(NodeState& node) {
  SearchBoard& board = node.board;
  const int ply = node.ply;
  node.pin_state = PIN_NONE;
  if (enable_pin_threat_detection && ply >= 2) {
    node.pin_state =
        UpdatePin(board.pin_records, board.played_moves[ply], board.played_moves[ply - 1], board);
  }
  if ((node.node_flags & PIN_THREAT) ||
      (node.pin_state > 0 && IsPinThreat(board.pin_records, board, node.pin_state))) {
    node.node_flags |= PIN_THREAT;
    if (skip_pruning_at_the_next_ply_because_of_pin_threat) {
      node.flags |= CHILD_SKIP_RAZORING | CHILD_SKIP_EXTENDED_FUTILITY | CHILD_UNUSED_FLAG;
    } else if (skip_pruning_at_this_ply_because_of_pin_threat) {
      node.flags |= SKIP_RAZORING | SKIP_EXTENDED_FUTILITY | UNUSED_FLAG;
    }
  }
}

void DetectPerpetualCheck(NodeState& node) {
  SearchBoard& board = node.board;
  const int ply = node.ply;
  PerpetualRecord& record = board.perpetual_records[ply];
  if (!(node.flags & SKIP_PERPETUAL_CHECK_TEST) && ply >= 2 &&
      IsQueenCheck(board.played_moves[ply]) && IsQueenCheck(board.played_moves[ply - 2])) {
    if (TestPerpetualCheck(board.perpetual_records, board)) {
      node.node_flags |= PERPETUAL_CHECK_THREAT;
      node.flags |= CHILD_SKIP_RAZORING | CHILD_SKIP_EXTENDED_FUTILITY;
    }
    return;
  }
  record.check_count = 0;
  record.flag = 0;
}
