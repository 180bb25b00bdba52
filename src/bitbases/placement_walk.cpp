#include "bitbases/placement_walk.h"

#include <algorithm>
#include <cstdlib>

#include "chess/edit_board.h"
#include "shell/tee_stream.h"

namespace BraskGenerator {

using BraskBitbases::CounterIndex;

namespace {

constexpr int FIRST_PAWN_SQUARE = 8;
constexpr int LAST_PAWN_SQUARE = 55;
constexpr int PERCENT = 100;

void Append(PlacementList& list, int count, int lowest, int highest, int piece) {
  for (int i = 0; i < count; ++i) list.push_back({lowest, highest, piece});
}

}  // namespace

PlacementList BuildPlacementList(const BraskBitbases::PieceCounters& counters) {
  PlacementList list;
  for (int colour : {WHITE, BLACK})
    Append(list, counters[CounterIndex(colour, PAWN)], FIRST_PAWN_SQUARE, LAST_PAWN_SQUARE,
           colour == WHITE ? PAWN : -PAWN);
  Append(list, 1, 0, 63, KING);
  Append(list, 1, 0, 63, -KING);
  for (int type : {BISHOP, KNIGHT, ROOK, QUEEN})
    for (int colour : {WHITE, BLACK})
      Append(list, counters[CounterIndex(colour, type)], 0, 63, colour == WHITE ? type : -type);
  return list;
}

ProgressDisplay::ProgressDisplay(const PlacementList& list)
    : lowest_(list[0].lowest),
      first_range_(std::uint64_t(list[0].highest - list[0].lowest + 1)),
      total_(1) {
  step_ = std::max(1, int(first_range_ / PERCENT));
  for (const PlacementRange& range : list) total_ *= std::uint64_t(range.highest - range.lowest + 1);
}

void ProgressDisplay::Step(int square) {
  if (calls_++ % (step_ + 1) != 0) return;
  const std::uint64_t percent =
      total_ == 0 ? PERCENT
                  : std::uint64_t(square - lowest_) * (total_ / first_range_) * PERCENT / total_;
  const bool former = Output.SetLog(false);
  Output << std::uint32_t(percent) << "%";
  if (percent < 100) Output << " ";
  if (percent < 10) Output << " ";
  Output << "\b\b\b\b";
  Output.Flush();
  Output.SetLog(former);
}

bool SetUpPlacement(EditBoard& edit, const PlacementList& list, const int* squares, int side) {
  edit.Reset(side);
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (edit.pieces[squares[i]] != NO_PIECE) return false;
    edit.color_is_black = list[i].piece < 0;
    edit.SetPiece(squares[i], std::abs(list[i].piece));
  }
  edit.color_is_black = 0;
  edit.castling = 0;
  return true;
}

}  // namespace BraskGenerator
