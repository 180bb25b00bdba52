#include "chess/board.h"

#include <algorithm>
#include <cstring>

#include "chess/castling_masks.h"

Board& Board::operator=(const Board& other) {
  if (this == &other) return *this;
  std::memcpy(static_cast<void*>(this), static_cast<const void*>(&other), sizeof(Board));
  // The key stack must point into this board's own storage, at the same distance.
  key_stack = key_storage + (other.key_stack - other.key_storage);
  return *this;
}

// ---------------------------------------------------------------------------------------------
// Setting up and checking a position.

bool Board::Setup(const std::int8_t new_squares[64], int side, int en_passant, int castling) {
  if (side != WHITE && side != BLACK) return false;
  if (en_passant != 0) {
    if (en_passant < 0 || en_passant > 63) return false;
    if (Rank(en_passant) != (side == BLACK ? 2 : 5)) return false;
  }
  if (castling < 0 || castling > ALL_CASTLING) return false;
  for (int square = 0; square < 64; ++square)
    if (new_squares[square] < -KING || new_squares[square] > KING) return false;

  white = PieceSet{};
  black = PieceSet{};
  occupied = occupied_a1h8 = occupied_files = occupied_h1a8 = 0;
  ply = 0;
  side_on_move = std::uint32_t(side);
  total_piece_points = 0;
  states[0] = BoardState{0, 0, std::uint16_t(en_passant), std::uint8_t(castling), 0, 0};

  int material = 0;
  for (int square = 0; square < 64; ++square) {
    int piece = squares[square] = new_squares[square];
    if (piece == NO_PIECE) continue;
    int type = piece > 0 ? piece : -piece;
    PieceSet& set = piece > 0 ? white : black;
    set.all |= SquareBit(square);
    if (type == KING) set.king_square = std::uint32_t(square);
    else set.OfType(type) |= SquareBit(square);
    if (type == KNIGHT || type == BISHOP) set.minor_points += 3;
    if (type == ROOK) set.major_count += 1;
    if (type == QUEEN) set.major_count += 2;
    if (type != KING) total_piece_points += std::uint32_t(PiecePoints[type]);
    material += piece > 0 ? PieceValue[type] : -PieceValue[type];
    ToggleRotated(square);
  }
  states[0].material = std::int16_t(side == WHITE ? material : -material);
  occupied = white.all | black.all;

  const PieceSet& own = Own();
  states[0].in_check =
      (BoardTables.PawnAttacks[side][own.king_square] & Enemy().pawns) ||
      IsAttacked(int(own.king_square), Enemy());

  key_stack = key_storage;
  key_stack[0] = ComputeKey();
  states[0].pawn_key = ComputePawnKey();
  return IsValid();
}

std::uint64_t Board::ComputeKey() const {
  std::uint64_t key = 0;
  for (int square = 0; square < 64; ++square)
    if (squares[square] != NO_PIECE) key ^= PieceKey(square, squares[square]);
  if (side_on_move == BLACK) key ^= ZOBRIST_SIDE;
  if (EnPassant() != 0) key ^= EnPassantKey(EnPassant());
  return key ^ ZobristCastling.key[Castling()];
}

std::uint64_t Board::ComputePawnKey() const {
  std::uint64_t key = 0;
  for (int square = 0; square < 64; ++square) {
    if (squares[square] == PAWN) key ^= ::PawnKey(square, WHITE);
    if (squares[square] == -PAWN) key ^= ::PawnKey(square, BLACK);
  }
  return key;
}

bool Board::IsValid() const {
  int kings[2] = {0, 0};
  for (int square = 0; square < 64; ++square) {
    if (squares[square] == KING) ++kings[WHITE];
    if (squares[square] == -KING) ++kings[BLACK];
  }
  if (kings[WHITE] != 1 || kings[BLACK] != 1) return false;
  constexpr Bitboard back_ranks = RankMask(0) | RankMask(7);
  if ((white.pawns | black.pawns) & back_ranks) return false;
  if (PopCount(white.pawns) > 14 || PopCount(black.pawns) > 14) return false;

  if (int ep = EnPassant(); ep != 0) {
    // The square jumped over and the one it was jumped from are empty; the pawn stands beyond.
    int ahead = side_on_move == BLACK ? 8 : -8;
    if (Rank(ep) != (side_on_move == BLACK ? 2 : 5)) return false;
    if (squares[ep] != NO_PIECE || squares[ep - ahead] != NO_PIECE) return false;
    if (squares[ep + ahead] != (side_on_move == BLACK ? PAWN : -PAWN)) return false;
  }

  struct Home {
    int right, king_square, rook_square, king, rook;
  };
  static constexpr Home homes[] = {{WHITE_SHORT, E1, H1, KING, ROOK},
                                   {WHITE_LONG, E1, A1, KING, ROOK},
                                   {BLACK_SHORT, E8, H8, -KING, -ROOK},
                                   {BLACK_LONG, E8, A8, -KING, -ROOK}};
  for (const Home& home : homes) {
    if (!(Castling() & home.right)) continue;
    if (squares[home.king_square] != home.king || squares[home.rook_square] != home.rook)
      return false;
  }
  return !IsOpponentInCheck();
}

bool Board::IsOpponentInCheck() const {
  const PieceSet& enemy = Enemy();
  int king = int(enemy.king_square);
  return (BoardTables.PawnAttacks[side_on_move ^ 1][king] & Own().pawns) ||
         IsAttacked(king, Own());
}

// ---------------------------------------------------------------------------------------------
// Making and taking back moves. This is the hot path of the whole program: no allocation, no loop
// over the board, one state and one key written per move.

void Board::ToggleRotated(int square) {
  occupied_a1h8 ^= Rotation::Bits.a1h8[square];
  occupied_files ^= Rotation::Bits.files[square];
  occupied_h1a8 ^= Rotation::Bits.h1a8[square];
}

void Board::MakeMove(Move move) {
  const int from = From(move), to = To(move), type = MovedType(move);
  const int captured = CapturedType(move);
  const int side = int(side_on_move);
  const int sign = side == WHITE ? 1 : -1;
  PieceSet& own = Own();
  PieceSet& enemy = Enemy();

  if (!captured) ToggleRotated(to);
  ToggleRotated(from);

  const BoardState& old_state = states[ply];
  ++ply;
  BoardState& state = states[ply];
  state = old_state;
  std::uint64_t key = key_stack[ply - 1];
  state.en_passant = 0;
  state.material = std::int16_t(-old_state.material);
  state.in_check = GivesCheck(move) ? 1 : 0;
  if (old_state.en_passant) key ^= EnPassantKey(old_state.en_passant);

  const int piece = sign * type;
  key ^= PieceKey(from, piece) ^ PieceKey(to, piece);
  squares[from] = NO_PIECE;
  squares[to] = std::int8_t(piece);
  const Bitboard from_to = SquareBit(from) | SquareBit(to);
  own.all ^= from_to;

  int castling_after = state.castling & CastlingMasks.kept[from] & CastlingMasks.kept[to];
  if (type == KING) {
    own.king_square = std::uint32_t(to);
    if (to - from == 2 || from - to == 2) key ^= MoveCastlingRook(to);
  } else {
    own.OfType(type) ^= from_to;
    if (type == PAWN) {
      state.pawn_key ^= ::PawnKey(from, side) ^ ::PawnKey(to, side);
      if (to - from == 16 || from - to == 16) {
        state.en_passant = std::uint16_t((from + to) / 2);
        key ^= EnPassantKey(state.en_passant);
      } else if (int promoted = PromotionType(move)) {
        key ^= PieceKey(to, piece) ^ PieceKey(to, sign * promoted);
        Promote(to, promoted);
      }
    }
  }

  if (captured) {
    state.halfmove_clock = 0;
    state.material = std::int16_t(state.material - PieceValue[captured]);
    if (captured == PAWN && type == PAWN && to == old_state.en_passant) {
      ToggleRotated(to);  // the target square was empty
      RemoveEnPassantPawn(to);
      key ^= PieceKey(side == WHITE ? to - 8 : to + 8, -sign * PAWN);
    } else {
      enemy.all ^= SquareBit(to);
      enemy.OfType(captured) ^= SquareBit(to);
      if (captured == PAWN) state.pawn_key ^= ::PawnKey(to, side ^ 1);
      if (captured == KNIGHT || captured == BISHOP) enemy.minor_points -= 3;
      if (captured == ROOK) enemy.major_count -= 1;
      if (captured == QUEEN) enemy.major_count -= 2;
      key ^= PieceKey(to, -sign * captured);
      total_piece_points -= std::uint32_t(PiecePoints[captured]);
    }
  } else if (type == PAWN) {
    state.halfmove_clock = 0;
  } else {
    ++state.halfmove_clock;
  }

  // A move from or to a king's or rook's home square takes the rights that depend on it.
  key ^= ZobristCastling.key[state.castling ^ castling_after];
  state.castling = std::uint8_t(castling_after);

  side_on_move ^= 1;
  key_stack[ply] = key ^ ZOBRIST_SIDE;
  occupied = white.all | black.all;
}

// The pawn's key and squares are already on the target square; it becomes the new piece there.
void Board::Promote(int to, int promoted) {
  const int side = int(side_on_move);
  PieceSet& own = Own();
  BoardState& state = states[ply];
  state.pawn_key ^= ::PawnKey(to, side);
  squares[to] = std::int8_t(side == WHITE ? promoted : -promoted);
  own.pawns ^= SquareBit(to);
  own.OfType(promoted) |= SquareBit(to);
  if (promoted == KNIGHT || promoted == BISHOP) own.minor_points += 3;
  if (promoted == ROOK) own.major_count += 1;
  if (promoted == QUEEN) own.major_count += 2;
  total_piece_points += std::uint32_t(PiecePoints[promoted]);
  state.material = std::int16_t(state.material - (PieceValue[promoted] - PieceValue[PAWN]));
}

void Board::RemoveEnPassantPawn(int to) {
  const int side = int(side_on_move);
  const int captured_square = side == WHITE ? to - 8 : to + 8;
  PieceSet& enemy = Enemy();
  enemy.pawns ^= SquareBit(captured_square);
  enemy.all ^= SquareBit(captured_square);
  states[ply].pawn_key ^= ::PawnKey(captured_square, side ^ 1);
  squares[captured_square] = NO_PIECE;
  ToggleRotated(captured_square);
}

// The rook's part of castling, for the king's target square; the same call undoes it. Returns the
// change of the position key.
std::uint64_t Board::MoveCastlingRook(int king_to) {
  struct RookMove {
    int rook_from, rook_to;
  };
  const RookMove rook = king_to == G1   ? RookMove{H1, F1}
                        : king_to == C1 ? RookMove{A1, D1}
                        : king_to == G8 ? RookMove{H8, F8}
                                        : RookMove{A8, D8};
  PieceSet& own = Own();
  const Bitboard from_to = SquareBit(rook.rook_from) | SquareBit(rook.rook_to);
  own.rooks ^= from_to;
  own.all ^= from_to;
  ToggleRotated(rook.rook_from);
  ToggleRotated(rook.rook_to);
  std::swap(squares[rook.rook_from], squares[rook.rook_to]);
  const int piece = side_on_move == WHITE ? ROOK : -ROOK;
  return PieceKey(rook.rook_from, piece) ^ PieceKey(rook.rook_to, piece);
}

void Board::UndoMove(Move move) {
  const int from = From(move), to = To(move), type = MovedType(move);
  const int captured = CapturedType(move);

  // Keys and states need no work: the entries of the earlier ply are still there.
  --ply;
  side_on_move ^= 1;
  const int side = int(side_on_move);
  const int sign = side == WHITE ? 1 : -1;
  PieceSet& own = Own();
  PieceSet& enemy = Enemy();

  ToggleRotated(from);
  if (!captured) ToggleRotated(to);
  squares[to] = NO_PIECE;
  squares[from] = std::int8_t(sign * type);
  const Bitboard from_to = SquareBit(from) | SquareBit(to);
  own.all ^= from_to;

  if (type == KING) {
    own.king_square = std::uint32_t(from);
    if (to - from == 2 || from - to == 2) MoveCastlingRook(to);
  } else {
    own.OfType(type) ^= from_to;
    if (int promoted = PromotionType(move)) {
      own.pawns ^= SquareBit(to);
      own.OfType(promoted) ^= SquareBit(to);
      if (promoted == KNIGHT || promoted == BISHOP) own.minor_points -= 3;
      if (promoted == ROOK) own.major_count -= 1;
      if (promoted == QUEEN) own.major_count -= 2;
      total_piece_points -= std::uint32_t(PiecePoints[promoted]);
    }
  }

  if (captured) {
    if (captured == PAWN && type == PAWN && to == states[ply].en_passant) {
      const int captured_square = side == WHITE ? to - 8 : to + 8;
      squares[captured_square] = std::int8_t(-sign * PAWN);
      enemy.pawns |= SquareBit(captured_square);
      enemy.all |= SquareBit(captured_square);
      ToggleRotated(captured_square);
      ToggleRotated(to);  // the target square was empty
    } else {
      squares[to] = std::int8_t(-sign * captured);
      enemy.OfType(captured) |= SquareBit(to);
      enemy.all |= SquareBit(to);
      if (captured == KNIGHT || captured == BISHOP) enemy.minor_points += 3;
      if (captured == ROOK) enemy.major_count += 1;
      if (captured == QUEEN) enemy.major_count += 2;
      total_piece_points += std::uint32_t(PiecePoints[captured]);
    }
  }
  occupied = white.all | black.all;
}

void Board::MakeNullMove() {
  const BoardState& old_state = states[ply];
  std::uint64_t key = key_stack[ply];
  if (old_state.en_passant) key ^= EnPassantKey(old_state.en_passant);
  ++ply;
  states[ply] = BoardState{std::int16_t(-old_state.material), 0, 0, old_state.castling, 0,
                           old_state.pawn_key};
  key_stack[ply] = key ^ ZOBRIST_SIDE;
  side_on_move ^= 1;
}

std::uint64_t Board::KeyAfterMove(Move move) const {
  const int from = From(move), to = To(move), type = MovedType(move);
  const int captured = CapturedType(move);
  const int sign = side_on_move == WHITE ? 1 : -1;
  const int piece = sign * type;
  std::uint64_t key = Key() ^ ZOBRIST_SIDE;
  if (EnPassant()) key ^= EnPassantKey(EnPassant());
  key ^= PieceKey(from, piece) ^ PieceKey(to, piece);

  if (type == KING && (to - from == 2 || from - to == 2)) {
    const int rook_from = to > from ? to + 1 : to - 2, rook_to = to > from ? to - 1 : to + 1;
    key ^= PieceKey(rook_from, sign * ROOK) ^ PieceKey(rook_to, sign * ROOK);
  }
  if (type == PAWN) {
    if (to - from == 16 || from - to == 16) key ^= EnPassantKey((from + to) / 2);
    else if (int promoted = PromotionType(move))
      key ^= PieceKey(to, piece) ^ PieceKey(to, sign * promoted);
  }
  if (captured) {
    if (captured == PAWN && type == PAWN && to == EnPassant())
      key ^= PieceKey(sign > 0 ? to - 8 : to + 8, -sign * PAWN);
    else
      key ^= PieceKey(to, -sign * captured);
  }
  const int castling_after = Castling() & CastlingMasks.kept[from] & CastlingMasks.kept[to];
  return key ^ ZobristCastling.key[Castling() ^ castling_after];
}

// ---------------------------------------------------------------------------------------------
// Repetition, rule draws and the stacks.

bool Board::IsDrawByRule() const {
  const bool no_heavy_material = !(white.pawns | white.rooks | white.queens | black.pawns |
                                   black.rooks | black.queens);
  auto lacks_mating_material = [](const PieceSet& set) {
    return set.minor_points < 6 || (set.minor_points == 6 && set.bishops == 0);
  };
  if (no_heavy_material && lacks_mating_material(white) && lacks_mating_material(black))
    return true;

  const int clock = HalfmoveClock();
  if (clock < 4) return false;
  if (clock > 99) return true;
  const std::uint64_t key = Key();
  for (int back = 2; back <= clock; back += 2)
    if (key_stack[int(ply) - back] == key) return true;
  return false;
}

void Board::RebaseStacks() {
  states[0] = states[ply];
  const int clock = HalfmoveClock();
  if (clock == 0) {
    key_storage[0] = key_stack[ply];
    key_stack = key_storage;
  } else {
    key_stack += ply;
    // Only the last `clock` positions can ever repeat, and no more than the history room is
    // needed (beyond 100 plies the fifty-move rule answers first): slide them down when the
    // stack has climbed into the search's room.
    const int kept = std::min(clock, KEY_HISTORY);
    if (key_stack - key_storage > KEY_HISTORY) {
      std::memmove(key_storage, key_stack - kept, sizeof(std::uint64_t) * (kept + 1));
      key_stack = key_storage + kept;
    }
  }
  ply = 0;
}

// Positions read from FEN have no history: the entries before the current one get numbers that no
// real key equals, so that the clock can be trusted without finding false repetitions.
void Board::SetHalfmoveClock(int n) {
  n = std::clamp(n, 0, 0xFFFF);
  const std::uint64_t key = Key();
  states[ply].halfmove_clock = std::uint16_t(n);
  const int kept = std::min(n, KEY_HISTORY);
  for (int i = 0; i < kept; ++i) key_storage[i] = std::uint64_t(i + 1);
  key_storage[kept] = key;
  key_stack = key_storage + kept - ply;
}

bool Board::ChangeSideOnMove() {
  side_on_move ^= 1;
  BoardState state = states[ply];
  state.material = std::int16_t(-state.material);
  state.halfmove_clock = 0;
  const std::uint64_t key = key_stack[ply] ^ ZOBRIST_SIDE;
  ply = 0;
  key_stack = key_storage;
  key_storage[0] = key;
  states[0] = state;
  states[0].in_check = (BoardTables.PawnAttacks[side_on_move][Own().king_square] & Enemy().pawns) ||
                       IsAttacked(int(Own().king_square), Enemy());
  return IsValid();
}
