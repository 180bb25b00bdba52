#include "bitbases/generic_bitbases.h"

#include <span>

#include "chess/board.h"
#include "shell/os_dependent.h"

namespace BraskBitbases {

namespace {

constexpr int BITS_PER_COUNTER = 3;
constexpr int COUNTER_MASK = (1 << BITS_PER_COUNTER) - 1;
constexpr int SIDE_COUNTERS = 5;
constexpr int WEIGHT[SIDE_COUNTERS] = {11, 29, 31, 53, 97};  // pawn .. queen
constexpr char NAME_ORDER[] = "qrbnp";
constexpr int NAME_TYPES[] = {QUEEN, ROOK, BISHOP, KNIGHT, PAWN};
constexpr int RANK_FLIP = 56;

constexpr int WHITE_PIECES[] = {CounterIndex(WHITE, KNIGHT), CounterIndex(WHITE, BISHOP),
                                CounterIndex(WHITE, ROOK), CounterIndex(WHITE, QUEEN)};
constexpr int BLACK_PIECES[] = {CounterIndex(BLACK, KNIGHT), CounterIndex(BLACK, BISHOP),
                                CounterIndex(BLACK, ROOK), CounterIndex(BLACK, QUEEN)};

// Every way to hand out `left` pieces to the counters in order, each taking from all that is left
// down to none; with `exact`, the last counter takes what remains. `visit` gets what is left over.
template <typename Visit>
void Distribute(PieceCounters& counters, std::span<const int> slots, int left, bool exact,
                const Visit& visit) {
  if (slots.empty()) {
    visit(left);
  } else if (exact && slots.size() == 1) {
    counters[std::size_t(slots[0])] = left;
    visit(0);
  } else {
    for (int n = left; n >= 0; --n) {
      counters[std::size_t(slots[0])] = n;
      Distribute(counters, slots.subspan(1), left - n, exact, visit);
    }
  }
}

void Append(PositionList& list, Bitboard squares, int flip) {
  for (; squares; squares &= squares - 1)
    list.squares[list.count++] = FindLowestBit(squares) ^ flip;
}

Bitboard OfType(const PieceSet& set, int type) {
  switch (type) {
    case PAWN: return set.pawns;
    case KNIGHT: return set.knights;
    case BISHOP: return set.bishops;
    case ROOK: return set.rooks;
    default: return set.queens;
  }
}

int Weight(const PieceCounters& counters, int colour) {
  int weight = 0;
  for (int i = 0; i < SIDE_COUNTERS; ++i)
    weight += WEIGHT[i] * counters[colour * SIDE_COUNTERS + i];
  return weight;
}

}  // namespace

MaterialSignature Signature(const PieceCounters& counters) {
  MaterialSignature signature = 0;
  for (int i = 0; i < COUNTERS; ++i) {
    if (counters[i] < 0 || counters[i] > MAX_PIECES_OF_A_TYPE) throw PieceIndexOutOfBounds();
    signature |= MaterialSignature(counters[i]) << (BITS_PER_COUNTER * i);
  }
  return signature;
}

PieceCounters CountersOf(MaterialSignature signature) {
  PieceCounters counters{};
  for (int i = 0; i < COUNTERS; ++i)
    counters[i] = int(signature >> (BITS_PER_COUNTER * i)) & COUNTER_MASK;
  return counters;
}

PieceCounters SwapColours(const PieceCounters& counters) {
  PieceCounters swapped{};
  for (int i = 0; i < SIDE_COUNTERS; ++i) {
    swapped[i] = counters[i + SIDE_COUNTERS];
    swapped[i + SIDE_COUNTERS] = counters[i];
  }
  return swapped;
}

int PieceCount(const PieceCounters& counters) {
  int pieces = 2;
  for (int counter : counters) pieces += counter;
  return pieces;
}

int PawnCount(const PieceCounters& counters) {
  return counters[CounterIndex(WHITE, PAWN)] + counters[CounterIndex(BLACK, PAWN)];
}

bool IsMirrored(const PieceCounters& counters) {
  const int white = Weight(counters, WHITE), black = Weight(counters, BLACK);
  if (white != black) return white < black;
  for (int type : NAME_TYPES) {
    const int w = counters[CounterIndex(WHITE, type)], b = counters[CounterIndex(BLACK, type)];
    if (w != b) return w < b;
  }
  return false;
}

std::string EndgameName(const PieceCounters& counters) {
  std::string name;
  for (int colour : {WHITE, BLACK}) {
    name += colour == WHITE ? "k" : "_k";
    for (int i = 0; i < SIDE_COUNTERS; ++i)
      name.append(std::size_t(counters[CounterIndex(colour, NAME_TYPES[i])]), NAME_ORDER[i]);
  }
  return name;
}

PieceCounters CountersOf(const Board& board) {
  PieceCounters counters{};
  for (int colour : {WHITE, BLACK}) {
    const PieceSet& set = board.Pieces(colour);
    const Bitboard boards[SIDE_COUNTERS] = {set.pawns, set.knights, set.bishops, set.rooks,
                                            set.queens};
    for (int i = 0; i < SIDE_COUNTERS; ++i)
      counters[colour * SIDE_COUNTERS + i] = PopCount(boards[i]);
  }
  return counters;
}

std::string EndgameName(const Board& board) { return EndgameName(CountersOf(board)); }

void BuildList(const Board& board, PositionList& list, bool colours_swapped) {
  const PieceSet& first = colours_swapped ? board.black : board.white;
  const PieceSet& second = colours_swapped ? board.white : board.black;
  const int flip = colours_swapped ? RANK_FLIP : 0;
  list.count = 0;
  Append(list, first.pawns, flip);
  Append(list, second.pawns, flip);
  list.squares[list.count++] = int(first.king_square) ^ flip;
  list.squares[list.count++] = int(second.king_square) ^ flip;
  for (int type : {BISHOP, KNIGHT, ROOK, QUEEN}) {
    Append(list, OfType(first, type), flip);
    Append(list, OfType(second, type), flip);
  }
}

MaterialSignature BuildMaterialAndList(const Board& board, PositionList& list,
                                       bool colours_swapped) {
  const PieceSet& first = colours_swapped ? board.black : board.white;
  const PieceSet& second = colours_swapped ? board.white : board.black;
  MaterialSignature signature = 0;
  for (int type = PAWN; type <= QUEEN; ++type) {
    const int ours = PopCount(OfType(first, type)), theirs = PopCount(OfType(second, type));
    if (ours > MAX_PIECES_OF_A_TYPE || theirs > MAX_PIECES_OF_A_TYPE) throw PieceIndexOutOfBounds();
    signature |= MaterialSignature(ours) << (BITS_PER_COUNTER * CounterIndex(WHITE, type));
    signature |= MaterialSignature(theirs) << (BITS_PER_COUNTER * CounterIndex(BLACK, type));
  }
  BuildList(board, list, colours_swapped);
  return signature;
}

bool GenericBitbaseExists(const PieceCounters& counters, std::string& name_out,
                          std::string& path_out, const std::string& directory) {
  name_out = EndgameName(counters);
  path_out = directory + "/" + name_out + ".bgb";
  return FileExists(path_out);
}

bool GenericBitbaseExists(const PieceCounters& counters, std::string& name_out,
                          std::string& path_out) {
  return GenericBitbaseExists(counters, name_out, path_out, ExecutableDirectory());
}

int EnumerateEndgames(int pieces, int pawns, std::vector<PieceCounters>& out) {
  const int others = pieces - 2 - pawns;
  if (others < 0 || pawns < 0) return 0;
  const std::size_t before = out.size();
  PieceCounters counters{};
  for (int white_pawns = pawns; white_pawns >= 0; --white_pawns) {
    counters[CounterIndex(WHITE, PAWN)] = white_pawns;
    counters[CounterIndex(BLACK, PAWN)] = pawns - white_pawns;
    Distribute(counters, WHITE_PIECES, others, false, [&](int black_pieces) {
      Distribute(counters, BLACK_PIECES, black_pieces, true, [&](int) { out.push_back(counters); });
    });
  }
  return int(out.size() - before);
}

int EnumerateEndgames(int pieces, std::vector<PieceCounters>& out) {
  int added = 0;
  for (int pawns = 0; pawns <= pieces - 2; ++pawns) added += EnumerateEndgames(pieces, pawns, out);
  return added;
}

std::vector<PieceCounters> EnumerateEndgamesUpTo(int pieces) {
  std::vector<PieceCounters> endgames;
  for (int n = 2; n <= pieces; ++n) EnumerateEndgames(n, endgames);
  return endgames;
}

}  // namespace BraskBitbases
