#include "bitbases/material_lookup.h"

namespace NalimovTablebases {

namespace {

constexpr int LEVELS = 10;
constexpr std::string_view LETTERS = "pnbrq";

}  // namespace

PieceCounts CountsOfName(std::string_view name) {
  PieceCounts counts{};
  int colour_offset = 0;
  for (std::size_t i = 1; i < name.size(); ++i) {
    if (name[i] == 'k') colour_offset = 5;
    else ++counts[colour_offset + LETTERS.find(name[i])];
  }
  return counts;
}

PieceCounts ColourSwapped(const PieceCounts& counts) {
  PieceCounts swapped{};
  for (int i = 0; i < 5; ++i) {
    swapped[i] = counts[i + 5];
    swapped[i + 5] = counts[i];
  }
  return swapped;
}

MaterialLookup::MaterialLookup() {
  // Breadth by level: each node knows the pieces its path has used.
  struct Pending {
    std::int32_t node;
    int used;
  };
  std::vector<Pending> level{{0, 0}};
  nodes_.push_back({-1, -1, -1, -1});
  for (int depth = 0; depth < LEVELS; ++depth) {
    std::vector<Pending> next;
    for (const Pending& p : level)
      for (int count = 0; p.used + count <= MAX_PIECES_BESIDE_KINGS; ++count) {
        std::int32_t child;
        if (depth + 1 == LEVELS) {
          child = std::int32_t(leaves_.size());
          leaves_.push_back(0);
        } else {
          child = std::int32_t(nodes_.size());
          nodes_.push_back({-1, -1, -1, -1});
          next.push_back({child, p.used + count});
        }
        nodes_[p.node][count] = child;
      }
    level = std::move(next);
  }
}

int MaterialLookup::LeafOf(const PieceCounts& counts) const {
  std::int32_t node = 0;
  for (int depth = 0; depth < LEVELS; ++depth) {
    int count = counts[depth];
    if (count < 0 || count > MAX_PIECES_BESIDE_KINGS) return -1;
    node = nodes_[node][count];
    if (node < 0) return -1;
  }
  return node;
}

int MaterialLookup::Find(const PieceCounts& counts) const {
  int leaf = LeafOf(counts);
  return leaf < 0 ? 0 : leaves_[leaf];
}

void MaterialLookup::Enter(const PieceCounts& counts, int id) {
  int leaf = LeafOf(counts);
  if (leaf >= 0) leaves_[leaf] = std::int16_t(id);
}

}  // namespace NalimovTablebases
