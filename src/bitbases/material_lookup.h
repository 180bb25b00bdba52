// Finds the table of a material: a tree over the ten piece counts (white pawns, knights, bishops,
// rooks, queens, then Black's), each level indexed by the next count up to what the earlier ones
// leave of three. The tree is built whole once, so a look-up only walks it.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace NalimovTablebases {

constexpr int MAX_PIECES_BESIDE_KINGS = 3;
using PieceCounts = std::array<int, 10>;

// "kqkr" -> {0,0,0,0,1, 0,0,0,1,0}
PieceCounts CountsOfName(std::string_view name);
PieceCounts ColourSwapped(const PieceCounts& counts);

class MaterialLookup {
 public:
  MaterialLookup();

  // 0: no table; +id: the table; -id: the table with the colours reversed.
  int Find(const PieceCounts& counts) const;
  void Enter(const PieceCounts& counts, int id);

 private:
  // Where the counts lead: a leaf slot, or -1 when they add up to more than three pieces.
  int LeafOf(const PieceCounts& counts) const;

  // Inner node n has its children at nodes_[n][count]; level 10 indexes leaves_.
  std::vector<std::array<std::int32_t, MAX_PIECES_BESIDE_KINGS + 1>> nodes_;
  std::vector<std::int16_t> leaves_;
};

}  // namespace NalimovTablebases
