// The walk over every placement of a material that generation and verification share: one square
// for each piece, in the order of the position list, like pieces unordered (each set of squares
// comes in every order). The walk shows its progress on the terminal, never in the log: a run of
// five pieces takes hours and would otherwise fill the log with percentages.
#pragma once

#include <cstdint>
#include <vector>

#include "bitbases/generic_bitbases.h"

class EditBoard;

namespace BraskGenerator {

// One piece: its code (1 pawn .. 6 king, negative for Black) and the squares it may take.
struct PlacementRange {
  int lowest;
  int highest;
  int piece;
};
using PlacementList = std::vector<PlacementRange>;

// White pawns, black pawns, white king, black king, then bishops, knights, rooks and queens,
// White's before Black's: the order of the generic index.
PlacementList BuildPlacementList(const BraskBitbases::PieceCounters& counters);

// Percentages of the first piece's walk: "37%  " and four backspaces, so the next one overwrites.
class ProgressDisplay {
 public:
  explicit ProgressDisplay(const PlacementList& list);
  // Called for each square of the first piece, in ascending order.
  void Step(int square);

 private:
  int lowest_;
  int step_;
  int calls_ = 0;
  std::uint64_t first_range_;
  std::uint64_t total_;
};

// Puts the placement on the board with `side` on move and no castling rights (a rook on its corner
// beside a king on its home square must not give any). False when two pieces share a square.
bool SetUpPlacement(EditBoard& edit, const PlacementList& list, const int* squares, int side);

template <typename Leaf>
void WalkRemaining(const PlacementList& list, std::size_t depth, int* squares, Leaf& leaf) {
  if (depth == list.size()) {
    leaf(static_cast<const int*>(squares));
    return;
  }
  for (int square = list[depth].lowest; square <= list[depth].highest; ++square) {
    squares[depth] = square;
    WalkRemaining(list, depth + 1, squares, leaf);
  }
}

// Calls leaf(squares) for every placement, the first piece outermost.
template <typename Leaf>
void WalkPlacements(const PlacementList& list, Leaf&& leaf) {
  int squares[BraskBitbases::GENERIC_BITBASES_MAX_SUPPORTED_PIECES] = {};
  ProgressDisplay progress(list);
  for (int square = list[0].lowest; square <= list[0].highest; ++square) {
    progress.Step(square);
    squares[0] = square;
    WalkRemaining(list, 1, squares, leaf);
  }
}

}  // namespace BraskGenerator
