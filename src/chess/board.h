// The position the search plays on: bitboards by colour and piece, three rotated occupancy boards,
// a mailbox, and the state and key stacks that make UndoMove cheap and repetition detection exact.
// Moves must come from the move generator (or pass VerifyMove): their check bits are trusted.
#pragma once

#include <cstdint>

#include "chess/basic.h"
#include "chess/bitboard.h"

struct PieceSet {
  Bitboard pawns;
  Bitboard knights;
  Bitboard bishops;
  Bitboard rooks;
  Bitboard queens;
  Bitboard all;  // includes the king, which has no bitboard of its own
  std::uint32_t king_square;
  std::int32_t minor_points;  // 3 per knight or bishop
  std::int32_t major_count;   // 1 per rook, 2 per queen

  Bitboard& OfType(int type) {
    Bitboard* boards[] = {nullptr, &pawns, &knights, &bishops, &rooks, &queens};
    return *boards[type];
  }
  Bitboard Sliders(int direction) const {
    return queens | (IsDiagonalDirection(direction) ? bishops : rooks);
  }
};

struct BoardState {
  std::int16_t material;  // centipawns from the view of the side on move, kings not counted
  std::uint16_t halfmove_clock;
  std::uint16_t en_passant;  // square jumped over by the last double step, 0 if none
  std::uint8_t castling;
  std::uint8_t in_check;
  std::uint64_t pawn_key;
};

class Board {
 public:
  static constexpr int MAX_PLY = 80;
  static constexpr int KEY_HISTORY = 100;

  Board() = default;
  Board(const Board& other) { *this = other; }
  Board& operator=(const Board& other);

  bool Setup(const std::int8_t squares[64], int side, int en_passant, int castling);
  bool IsValid() const;

  void MakeMove(Move move);
  void UndoMove(Move move);
  void MakeNullMove();
  std::uint64_t KeyAfterMove(Move move) const;

  bool IsMovePseudoLegal(Move move) const;
  bool VerifyMove(Move move) const;
  bool LeavesKingInCheck(Move move) const;
  bool IsOpponentInCheck() const;
  bool IsDrawByRule() const;

  void RebaseStacks();
  void SetHalfmoveClock(int n);
  bool ChangeSideOnMove();

  // Attack queries.
  Bitboard AttackersTo(int square) const;
  bool IsAttacked(int square, const PieceSet& attacker) const;
  Bitboard FindPinned(Bitboard candidates, const PieceSet& slider_side, int square,
                      Bitboard slider_mask) const;
  Bitboard FindPinnedOf(int square, Bitboard mask, const PieceSet& slider_side,
                        Bitboard slider_mask) const;
  Bitboard SliderBehind(int square, int direction) const;
  bool IsQueenAttackedByLesser() const;
  bool IsPinnedTo(int square, int king, const PieceSet& slider_side) const;
  bool IsEnPassantLegal(Move move) const;
  // Both pawns of an en-passant capture (from, cap) leave the rank at once, which no pin test
  // sees: does that open the rank between the king and a rook or queen of slider_side?
  bool TwoPawnsOnRankExpose(int from, int cap, int king, const PieceSet& slider_side) const;

  void Display(bool with_state) const;

  // Sliding attacks with the present occupancy.
  Bitboard RankAttacksFrom(int square) const { return RankAttacks(square, occupied); }
  Bitboard FileAttacksFrom(int square) const { return FileAttacks(square, occupied_files); }
  Bitboard A1H8AttacksFrom(int square) const { return A1H8Attacks(square, occupied_a1h8); }
  Bitboard H1A8AttacksFrom(int square) const { return H1A8Attacks(square, occupied_h1a8); }
  Bitboard BishopAttacksFrom(int square) const {
    return A1H8AttacksFrom(square) | H1A8AttacksFrom(square);
  }
  Bitboard RookAttacksFrom(int square) const {
    return RankAttacksFrom(square) | FileAttacksFrom(square);
  }
  Bitboard QueenAttacksFrom(int square) const {
    return BishopAttacksFrom(square) | RookAttacksFrom(square);
  }
  // The attacks from a square along the line of a direction code (both ways along that line).
  Bitboard LineAttacksFrom(int square, int direction) const;

  // Accessors of the current entries.
  const BoardState& State() const { return states[ply]; }
  BoardState& State() { return states[ply]; }
  std::uint64_t Key() const { return key_stack[ply]; }
  std::uint64_t PawnKey() const { return states[ply].pawn_key; }
  int Material() const { return states[ply].material; }
  int EnPassant() const { return states[ply].en_passant; }
  int Castling() const { return states[ply].castling; }
  int HalfmoveClock() const { return states[ply].halfmove_clock; }
  bool InCheck() const { return states[ply].in_check != 0; }

  PieceSet& Pieces(int colour) { return colour == WHITE ? white : black; }
  const PieceSet& Pieces(int colour) const { return colour == WHITE ? white : black; }
  PieceSet& Own() { return Pieces(side_on_move); }
  const PieceSet& Own() const { return Pieces(side_on_move); }
  const PieceSet& Enemy() const { return Pieces(side_on_move ^ 1); }
  PieceSet& Enemy() { return Pieces(side_on_move ^ 1); }

  // The position key computed from nothing (Setup's way), for checks of the incremental key.
  std::uint64_t ComputeKey() const;
  std::uint64_t ComputePawnKey() const;

  std::uint32_t ply = 0;
  std::uint32_t side_on_move = WHITE;
  std::uint32_t total_piece_points = 0;
  Bitboard occupied = 0;
  Bitboard occupied_a1h8 = 0;
  Bitboard occupied_files = 0;
  Bitboard occupied_h1a8 = 0;
  PieceSet white{};
  PieceSet black{};
  std::int8_t squares[64]{};
  std::uint64_t* key_stack = key_storage;
  BoardState states[MAX_PLY]{};
  std::uint64_t key_storage[KEY_HISTORY + MAX_PLY]{};

 private:
  void ToggleRotated(int square);
  void Promote(int to, int promoted);
  void RemoveEnPassantPawn(int to);
  std::uint64_t MoveCastlingRook(int king_to);
  bool IsCastlingPseudoLegal(Move move) const;
  bool GivesDirectCheckFromHere(Move move) const;
  bool GivesDiscoveredCheckFromHere(Move move) const;
};
