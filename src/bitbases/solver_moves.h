// The moves of the positions of one table, forward for counting them and for the en-passant
// rights a double step gives, with the legality tests they need. Pieces are numbered as the
// material orders them, and a position is the array of their squares.
#pragma once

#include <bit>
#include <cstdlib>

#include "bitbases/solver_geometry.h"
#include "bitbases/table_material.h"
#include "chess/basic.h"

namespace NalimovTablebases {

constexpr int NO_PIECE_INDEX = -1;
constexpr int PROMOTIONS[] = {QUEEN, ROOK, BISHOP, KNIGHT};

inline int PawnForward(int colour) { return colour == WHITE ? 8 : -8; }
// The rank a pawn of the colour reaches with its double step.
inline int DoubleStepRank(int colour) { return colour == WHITE ? 3 : 4; }
inline bool IsLastRank(int square) { return square < 8 || square >= 56; }

class SolverMoves {
 public:
  explicit SolverMoves(const TableMaterial& material) : m_(material), n_(material.count) {}

  // Whether a piece of colour by attacks target; skip is a piece taken off the board.
  bool Attacked(int target, int by, const int* squares, Bitboard occupied, int skip) const;
  // visit(piece, to, captured, promotion) for every legal move but en-passant captures.
  template <typename Visit>
  void ForEachLegalMove(int side, const int* squares, Bitboard occupied, bool in_check,
                        Visit visit) const;
  // visit(pawn) for each pawn of the side not on move that stands where its double step ends,
  // with the squares it crossed empty and a pawn of the side on move beside it.
  template <typename Visit>
  void ForEachEpPawn(int side, const int* squares, Bitboard occupied, Visit visit) const;
  // visit(capturer, to) for each legal en-passant capture of the pawn.
  template <typename Visit>
  void ForEachEpCapture(int side, const int* squares, Bitboard occupied, int pawn,
                        Visit visit) const;

 private:
  bool TryMove(int side, const int* squares, Bitboard occupied, int piece, int to,
               int captured) const;
  bool MayShieldKing(int side, const int* squares, int from) const;

  const TableMaterial& m_;
  const int n_;
};

inline bool SolverMoves::Attacked(int target, int by, const int* squares, Bitboard occupied,
                                  int skip) const {
  for (int j = 0; j < n_; ++j)
    if (j != skip && m_.colour[std::size_t(j)] == by &&
        SolverGeometry::Attacks(m_.type[std::size_t(j)], by, squares[j], target, occupied))
      return true;
  return false;
}

// Whether the move leaves the mover's king safe. captured may stand elsewhere than on to (en
// passant).
inline bool SolverMoves::TryMove(int side, const int* squares, Bitboard occupied, int piece, int to,
                                 int captured) const {
  Bitboard after = (occupied ^ SquareBit(squares[piece])) | SquareBit(to);
  if (captured != NO_PIECE_INDEX && squares[captured] != to) after ^= SquareBit(squares[captured]);
  int moved[MAX_TABLE_PIECES];
  std::copy(squares, squares + n_, moved);
  moved[piece] = to;
  return !Attacked(moved[side], side ^ 1, moved, after, captured);
}

// Whether from lies between the side's king and an enemy slider that moves along that line.
inline bool SolverMoves::MayShieldKing(int side, const int* squares, int from) const {
  int king = squares[side];
  int line = SolverGeometry::TABLES.line[king][from];
  if (line == 0) return false;
  for (int j = 2; j < n_; ++j) {
    int type = m_.type[std::size_t(j)];
    if (m_.colour[std::size_t(j)] == side || type == PAWN || type == KNIGHT) continue;
    if ((type == QUEEN || (type == ROOK) == (line == 1)) &&
        SolverGeometry::TABLES.line[king][squares[j]] == line &&
        (SolverGeometry::TABLES.between[king][squares[j]] & SquareBit(from)))
      return true;
  }
  return false;
}

template <typename Visit>
void SolverMoves::ForEachLegalMove(int side, const int* squares, Bitboard occupied, bool in_check,
                                   Visit visit) const {
  Bitboard own = 0, theirs = 0;
  for (int j = 0; j < n_; ++j)
    (m_.colour[std::size_t(j)] == side ? own : theirs) |= SquareBit(squares[j]);
  auto piece_on = [&](int square) {
    for (int j = 0; j < n_; ++j)
      if (squares[j] == square) return j;
    return NO_PIECE_INDEX;
  };
  // Only a move of the king, a move out of check, or one of a piece that may shield the king
  // from a slider can leave the king attacked: the rest need no test.
  bool test = true;
  auto emit = [&](int piece, int to, int captured, bool promotes) {
    if (test && !TryMove(side, squares, occupied, piece, to, captured)) return;
    if (!promotes) {
      visit(piece, to, captured, 0);
      return;
    }
    for (int promotion : PROMOTIONS) visit(piece, to, captured, promotion);
  };
  for (int piece = 0; piece < n_; ++piece) {
    if (m_.colour[std::size_t(piece)] != side) continue;
    int from = squares[piece], type = m_.type[std::size_t(piece)];
    test = in_check || piece == side || MayShieldKing(side, squares, from);
    if (type != PAWN) {
      for (Bitboard targets = SolverGeometry::Attacks(type, from, occupied) & ~own; targets;
           targets &= targets - 1) {
        int to = std::countr_zero(targets);
        emit(piece, to, (theirs & SquareBit(to)) ? piece_on(to) : NO_PIECE_INDEX, false);
      }
      continue;
    }
    int one = from + PawnForward(side);
    if (!(occupied & SquareBit(one))) {
      emit(piece, one, NO_PIECE_INDEX, IsLastRank(one));
      int two = one + PawnForward(side);
      if (Rank(two) == DoubleStepRank(side) && !(occupied & SquareBit(two)))
        emit(piece, two, NO_PIECE_INDEX, false);
    }
    for (Bitboard targets = SolverGeometry::TABLES.pawn_attacks[side][from] & theirs; targets;
         targets &= targets - 1) {
      int to = std::countr_zero(targets);
      emit(piece, to, piece_on(to), IsLastRank(to));
    }
  }
}

template <typename Visit>
void SolverMoves::ForEachEpPawn(int side, const int* squares, Bitboard occupied,
                                Visit visit) const {
  int stepper = side ^ 1;
  for (int pawn = 2; pawn < n_; ++pawn) {
    if (m_.colour[std::size_t(pawn)] != stepper || m_.type[std::size_t(pawn)] != PAWN) continue;
    int square = squares[pawn];
    if (Rank(square) != DoubleStepRank(stepper)) continue;
    int crossed = square - PawnForward(stepper), origin = crossed - PawnForward(stepper);
    if (occupied & (SquareBit(crossed) | SquareBit(origin))) continue;
    for (int j = 2; j < n_; ++j)
      if (m_.colour[std::size_t(j)] == side && m_.type[std::size_t(j)] == PAWN &&
          Rank(squares[j]) == Rank(square) && std::abs(File(squares[j]) - File(square)) == 1) {
        visit(pawn);
        break;
      }
  }
}

template <typename Visit>
void SolverMoves::ForEachEpCapture(int side, const int* squares, Bitboard occupied, int pawn,
                                   Visit visit) const {
  int target = squares[pawn] - PawnForward(side ^ 1);
  for (int j = 2; j < n_; ++j)
    if (m_.colour[std::size_t(j)] == side && m_.type[std::size_t(j)] == PAWN &&
        Rank(squares[j]) == Rank(squares[pawn]) &&
        std::abs(File(squares[j]) - File(squares[pawn])) == 1 &&
        TryMove(side, squares, occupied, j, target, pawn))
      visit(j, target);
}

}  // namespace NalimovTablebases
