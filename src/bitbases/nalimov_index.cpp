// The 220 index functions are one template: the table's material and the side on move are
// compile-time parameters, so each instance is the formula with its own pieces filled in, and
// every branch on the material disappears from the code that runs.
#include "bitbases/nalimov_index.h"

#include <array>
#include <utility>

#include "bitbases/nalimov_index_tables.h"
#include "bitbases/tablebase_descriptors.h"

namespace NalimovTablebases {
namespace {

// Who stands where in the formula. Pieces are numbered 0, 1 for White's (strongest first) and 2
// for Black's one piece; S is the set counted with the king pair, O the rest.
struct Layout {
  int s_count = 0;
  int s_code[2] = {NO_CODE, NO_CODE};
  int s_piece[2] = {0, 0};
  bool flip = false;  // S and the kings are read rank-mirrored (Black on move, S has a pawn)
  bool s_empty_uses_pair = false;
  int o_count = 0;
  int o_type[2] = {0, 0};
  int o_piece[2] = {0, 0};
};

struct Material {
  int white[2] = {0, 0};
  int white_count = 0;
  int black = 0;  // type of Black's piece, 0 for a bare king
  bool pawns = false;
};

constexpr int TypeOfLetter(char c) {
  switch (c) {
    case 'p': return PAWN;
    case 'n': return KNIGHT;
    case 'b': return BISHOP;
    case 'r': return ROOK;
    case 'q': return QUEEN;
    default: return 0;
  }
}

constexpr Material ParseMaterial(std::string_view name) {
  Material m;
  std::size_t second_king = name.find('k', 1);
  for (std::size_t i = 1; i < second_king; ++i) m.white[m.white_count++] = TypeOfLetter(name[i]);
  if (second_king + 1 < name.size()) m.black = TypeOfLetter(name[second_king + 1]);
  m.pawns = m.white[0] == PAWN || m.white[1] == PAWN || m.black == PAWN;
  return m;
}

constexpr Layout MakeLayout(const Material& m, int side) {
  Layout l;
  auto add_s = [&](int code, int piece) {
    l.s_code[l.s_count] = code;
    l.s_piece[l.s_count++] = piece;
  };
  auto add_o = [&](int type, int piece) {
    l.o_type[l.o_count] = type;
    l.o_piece[l.o_count++] = piece;
  };
  if (side == WHITE) {
    for (int i = 0; i < m.white_count; ++i) add_s(m.white[i], i);
    if (m.black) add_o(m.black, 2);
  } else if (m.black) {
    add_s(m.black, 2);
    l.flip = m.black == PAWN;
    for (int i = 0; i < m.white_count; ++i) add_o(m.white[i], i);
  } else if (!m.pawns) {
    for (int i = 0; i < m.white_count; ++i) add_o(m.white[i], i);
  } else {
    for (int i = 0; i < m.white_count; ++i) {
      if (m.white[i] == PAWN) add_s(BARE_KING_PAWN, i);
      else add_o(m.white[i], i);
    }
    l.flip = true;
  }
  return l;
}

// The list slot of White's piece i: like pieces take consecutive slots.
constexpr int WhiteSlot(const Material& m, int i) {
  return FirstSlot(m.white[i]) + (i == 1 && m.white[0] == m.white[1]);
}

constexpr int QuadrantMask(int king) {
  return (File(king) >= 4 ? 7 : 0) | (Rank(king) >= 4 ? 56 : 0);
}

constexpr std::int64_t Triangle(std::int64_t n) { return n * (n - 1) / 2; }

// The square's number among those the code may use, less one when the king on move takes one of
// the lower ones. NOT_ALLOWED comes back as -1.
inline int FreeNumber(int code, int k1, int k2, int square) {
  int number = FreeSquare[code][k2][square];
  if (number == NOT_ALLOWED) return -1;
  return number - (k1 < square && FreeSquare[code][k2][k1] != NOT_ALLOWED);
}

template <typename... Others>
constexpr int CountBelow(int square, Others... others) {
  return ((others < square) + ... + 0);
}

template <Material M, int SIDE>
std::uint64_t Index(const int* first, const int* second, int /*ep_square*/, bool invert) {
  constexpr Layout L = MakeLayout(M, SIDE);
  constexpr int P = 2 + L.s_count;
  constexpr int p = (L.s_count > 0 && IsPawnCode(L.s_code[0])) +
                    (L.s_count > 1 && IsPawnCode(L.s_code[1]));

  int piece[3] = {M.white_count > 0 ? first[WhiteSlot(M, 0)] : 0,
                  M.white_count > 1 ? first[WhiteSlot(M, 1)] : 0,
                  M.black ? second[FirstSlot(M.black)] : 0};
  int k1 = SIDE == WHITE ? first[KING_SLOT] : second[KING_SLOT];
  int k2 = SIDE == WHITE ? second[KING_SLOT] : first[KING_SLOT];

  // Step 1: the frame.
  if constexpr (M.pawns) {
    int mask = (File(k1) >= 4 ? 7 : 0) ^ (invert ? 56 : 0);
    k1 ^= mask, k2 ^= mask;
    for (int& square : piece) square ^= mask;
  } else {
    int mask = QuadrantMask(k1);
    k1 ^= mask, k2 ^= mask;
    for (int& square : piece) square ^= mask;
    if (Rank(k1) > File(k1) || (Rank(k1) == File(k1) && Rank(k2) > File(k2))) {
      k1 = Transpose(k1), k2 = Transpose(k2);
      for (int& square : piece) square = Transpose(square);
    }
  }

  // Steps 2 and 3: the king pair and the placement of S, in S's own frame.
  constexpr int flip = L.flip ? 56 : 0;
  int f1 = k1 ^ flip, f2 = k2 ^ flip;
  int pair = M.pawns ? KingPairPawn[f1][f2] : KingPair[f1][f2];
  if (pair == NO_PAIR) return NO_INDEX;

  std::int64_t placement = pair;
  if constexpr (L.s_count > 0) {
    constexpr int x = L.s_code[0];
    constexpr int y = L.s_count > 1 ? L.s_code[1] : NO_CODE;
    int sx = piece[L.s_piece[0]] ^ flip;
    int a;
    if constexpr (L.s_count == 1) {
      a = FreeNumber(x, f1, f2, sx);
      if (a < 0) return NO_INDEX;
    } else {
      int sy = piece[L.s_piece[1]] ^ flip;
      if constexpr (x == y) {
        int high = FreeNumber(x, f1, f2, sx > sy ? sx : sy);
        int low = FreeNumber(x, f1, f2, sx > sy ? sy : sx);
        if (low < 0 || high < 0) return NO_INDEX;
        a = int(Triangle(high)) + low;
      } else {
        int fx = FreeNumber(x, f1, f2, sx), fy = FreeNumber(y, f1, f2, sy);
        if (fx < 0 || fy < 0) return NO_INDEX;
        a = fx * SquaresLeft(y, f1, f2) + fy;
      }
    }
    placement = (M.pawns ? CumulativePawn[x][y][pair] : Cumulative[x][y][pair]) + a;
  }

  // Step 4: the rest, in the frame of step 1. A digit is a square less the pieces beneath it.
  int s0 = L.s_count > 0 ? piece[L.s_piece[0]] : 0;
  int s1 = L.s_count > 1 ? piece[L.s_piece[1]] : 0;
  auto below_fixed = [&](int square) {
    if constexpr (L.s_count == 0) return CountBelow(square, k1, k2);
    else if constexpr (L.s_count == 1) return CountBelow(square, k1, k2, s0);
    else return CountBelow(square, k1, k2, s0, s1);
  };
  auto pawns_below = [&](int square) {
    return (p > 0 && IsPawnCode(L.s_code[0]) && s0 < square) +
           (p > 1 && IsPawnCode(L.s_code[1]) && s1 < square);
  };
  auto pawn_digit = [&](int square) { return square - 8 - pawns_below(square); };

  std::int64_t index;
  if constexpr (L.o_count == 0) {
    index = placement;
  } else if constexpr (L.o_count == 1) {
    int o = piece[L.o_piece[0]];
    if constexpr (L.o_type[0] == PAWN) index = placement * (48 - p) + pawn_digit(o);
    else index = placement * (64 - P) + o - below_fixed(o);
  } else {
    int ox = piece[L.o_piece[0]], oy = piece[L.o_piece[1]];
    constexpr int tx = L.o_type[0], ty = L.o_type[1];
    if constexpr (tx == PAWN && ty == PAWN) {
      int h = pawn_digit(ox > oy ? ox : oy), l = pawn_digit(ox > oy ? oy : ox);
      index = placement * Triangle(48 - p) + Triangle(h) + l;
    } else if constexpr (tx == ty) {
      int hs = ox > oy ? ox : oy, ls = ox > oy ? oy : ox;
      int h = hs - below_fixed(hs), l = ls - below_fixed(ls);
      index = placement * Triangle(64 - P) + Triangle(h) + l;
    } else if constexpr (ty == PAWN) {
      int dx = ox - below_fixed(ox) - (oy < ox);
      index = placement * (63 - P) * (48 - p) + std::int64_t(dx) * (48 - p) + pawn_digit(oy);
    } else {
      int dx = ox - below_fixed(ox);
      int dy = oy - below_fixed(oy) - (ox < oy);
      index = placement * (64 - P) * (63 - P) + std::int64_t(dx) * (63 - P) + dy;
    }
  }
  return index < 0 ? NO_INDEX : std::uint64_t(index);
}

std::uint64_t NoTable(const int*, const int*, int, bool) { return NO_INDEX; }

template <std::size_t ID>
constexpr std::array<IndexFunction, 2> FunctionsOf() {
  if constexpr (ID == 0) {
    return {NoTable, NoTable};
  } else {
    constexpr Material material = ParseMaterial(Descriptors[ID].name);
    return {Index<material, WHITE>, Index<material, BLACK>};
  }
}

template <std::size_t... IDS>
constexpr std::array<std::array<IndexFunction, 2>, sizeof...(IDS)> MakeFunctionTable(
    std::index_sequence<IDS...>) {
  return {FunctionsOf<IDS>()...};
}

constexpr auto IndexFunctions = MakeFunctionTable(std::make_index_sequence<TABLE_COUNT + 1>());

}  // namespace

IndexFunction GetIndexFunction(int id, int side) { return IndexFunctions[id][side]; }

}  // namespace NalimovTablebases
