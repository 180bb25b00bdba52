#include "bitbases/table_material.h"

#include <algorithm>

#include "bitbases/nalimov_index.h"
#include "bitbases/tablebase_descriptors.h"
#include "chess/basic.h"

namespace NalimovTablebases {

namespace {

constexpr std::string_view PIECE_LETTERS = " pnbrqk";

int TypeOfLetter(char letter) {
  std::size_t type = PIECE_LETTERS.find(letter);
  return type == std::string_view::npos || letter == ' ' ? 0 : int(type);
}

}  // namespace

int TableIdOf(std::string_view name) {
  for (int id = 1; id <= TABLE_COUNT; ++id)
    if (Descriptors[id].name == name) return id;
  return 0;
}

std::optional<TableMaterial> TableMaterial::Of(std::string_view name) {
  TableMaterial m;
  m.id = TableIdOf(name);
  if (m.id == 0) return std::nullopt;
  m.name = std::string(name);
  m.colour[0] = WHITE, m.type[0] = KING;
  m.colour[1] = BLACK, m.type[1] = KING;
  m.count = 2;
  int colour = WHITE;
  for (std::size_t i = 1; i < name.size(); ++i) {
    if (name[i] == 'k') {
      colour = BLACK;
      continue;
    }
    m.colour[std::size_t(m.count)] = colour;
    m.type[std::size_t(m.count++)] = TypeOfLetter(name[i]);
  }
  return m;
}

bool TableMaterial::Symmetric() const { return Descriptors[id].IsSymmetric(); }

bool TableMaterial::HasPawns() const {
  return std::find(type.begin(), type.begin() + count, PAWN) != type.begin() + count;
}

bool TableMaterial::PawnsOnBothSides() const {
  bool pawn[2] = {false, false};
  for (int i = 0; i < count; ++i)
    if (type[std::size_t(i)] == PAWN) pawn[colour[std::size_t(i)]] = true;
  return pawn[WHITE] && pawn[BLACK];
}

std::string MaterialName(const int* colour, const int* type, int count) {
  std::string letters[2];
  for (int i = 0; i < count; ++i)
    if (type[i] != KING) letters[colour[i]] += PIECE_LETTERS[std::size_t(type[i])];
  for (std::string& side : letters)
    std::sort(side.begin(), side.end(),
              [](char a, char b) { return TypeOfLetter(a) > TypeOfLetter(b); });
  return "k" + letters[WHITE] + "k" + letters[BLACK];
}

TableOfMaterial FindTable(const int* colour, const int* type, int count) {
  if (int id = TableIdOf(MaterialName(colour, type, count)); id != 0) return {id, false};
  int swapped[MAX_TABLE_PIECES];
  for (int i = 0; i < count; ++i) swapped[i] = colour[i] ^ 1;
  return {TableIdOf(MaterialName(swapped, type, count)), true};
}

TableEntry EntryIn(TableOfMaterial table, const int* colour, const int* type, const int* square,
                   int count, int side) {
  int lists[2][SQUARE_LIST_SIZE] = {};
  int used[2][KING] = {};
  int reversed = table.reversed ? 1 : 0;
  for (int i = 0; i < count; ++i) {
    int c = colour[i] ^ reversed;
    if (type[i] == KING)
      lists[c][KING_SLOT] = square[i];
    else
      lists[c][FirstSlot(type[i]) + used[c][type[i]]++] = square[i];
  }
  // The index takes like pieces lowest first.
  for (int c : {WHITE, BLACK})
    for (int t = PAWN; t < KING; ++t)
      if (used[c][t] == 2 && lists[c][FirstSlot(t)] > lists[c][FirstSlot(t) + 1])
        std::swap(lists[c][FirstSlot(t)], lists[c][FirstSlot(t) + 1]);
  int file_side = side ^ reversed;
  const int* first = lists[WHITE];
  const int* second = lists[BLACK];
  bool invert = table.reversed;
  // A table whose two sides own the same pieces keeps only White's file, which holds Black's
  // positions too, with the colours (and for pawns the ranks) turned round.
  if (Descriptors[table.id].IsSymmetric() && file_side == BLACK) {
    std::swap(first, second);
    file_side = WHITE;
    invert = !invert;
  }
  std::uint64_t index = GetIndexFunction(table.id, file_side)(first, second, NO_EN_PASSANT, invert);
  if (index >= Descriptors[table.id].entries[file_side]) index = NO_INDEX;
  return {table.id, file_side, index};
}

}  // namespace NalimovTablebases
