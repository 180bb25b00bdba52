#include "support/endgame_positions.h"

#include <algorithm>
#include <cstdlib>

#include "bitbases/nalimov_index.h"
#include "chess/basic.h"

namespace {

int TypeOfLetter(char c) {
  return c == 'p' ? PAWN : c == 'n' ? KNIGHT : c == 'b' ? BISHOP : c == 'r' ? ROOK : QUEEN;
}

bool Attacks(const PlacedPiece& piece, int target, const EndgamePosition& position) {
  int df = File(target) - File(piece.square), dr = Rank(target) - Rank(piece.square);
  int adf = std::abs(df), adr = std::abs(dr);
  auto occupied = [&](int square) {
    return std::any_of(position.pieces.begin(), position.pieces.end(),
                       [&](const PlacedPiece& p) { return p.square == square; });
  };
  auto ray_is_free = [&]() {
    int step_f = (df > 0) - (df < 0), step_r = (dr > 0) - (dr < 0);
    int file = File(piece.square) + step_f, rank = Rank(piece.square) + step_r;
    for (; MakeSquare(file, rank) != target; file += step_f, rank += step_r)
      if (occupied(MakeSquare(file, rank))) return false;
    return true;
  };
  switch (piece.type) {
    case PAWN: return adf == 1 && dr == (piece.colour == WHITE ? 1 : -1);
    case KNIGHT: return adf * adr == 2;
    case BISHOP: return adf == adr && adf > 0 && ray_is_free();
    case ROOK: return (adf == 0) != (adr == 0) && ray_is_free();
    case QUEEN: return (adf == adr || adf == 0 || adr == 0) && adf + adr > 0 && ray_is_free();
    default: return adf <= 1 && adr <= 1 && adf + adr > 0;
  }
}

std::vector<int> SortedSquares(const EndgamePosition& position, int colour, int type) {
  std::vector<int> squares;
  for (const PlacedPiece& p : position.pieces)
    if (p.colour == colour && p.type == type) squares.push_back(p.square);
  std::sort(squares.begin(), squares.end());
  return squares;
}

bool SameSquares(const EndgamePosition& a, const EndgamePosition& b) {
  for (int colour : {WHITE, BLACK})
    for (int type = PAWN; type <= KING; ++type)
      if (SortedSquares(a, colour, type) != SortedSquares(b, colour, type)) return false;
  return true;
}

bool HasPawns(const EndgamePosition& position) {
  return std::any_of(position.pieces.begin(), position.pieces.end(),
                     [](const PlacedPiece& p) { return p.type == PAWN; });
}

bool PlaceFrom(EndgamePosition& position, std::size_t i,
               const std::function<void(const EndgamePosition&)>& visit) {
  if (i == position.pieces.size()) {
    if (IsLegal(position)) visit(position);
    return true;
  }
  PlacedPiece& piece = position.pieces[i];
  const PlacedPiece* twin = i > 0 && position.pieces[i - 1].type == piece.type &&
                                    position.pieces[i - 1].colour == piece.colour
                                ? &position.pieces[i - 1]
                                : nullptr;
  for (int square = twin ? twin->square + 1 : 0; square < 64; ++square) {
    bool taken = false;
    for (std::size_t j = 0; j < i; ++j) taken |= position.pieces[j].square == square;
    if (taken) continue;
    piece.square = square;
    PlaceFrom(position, i + 1, visit);
  }
  return true;
}

}  // namespace

void EndgamePosition::FillSquareLists(int* white, int* black) const {
  std::fill(white, white + NalimovTablebases::SQUARE_LIST_SIZE, 0);
  std::fill(black, black + NalimovTablebases::SQUARE_LIST_SIZE, 0);
  for (int colour : {WHITE, BLACK}) {
    int* list = colour == WHITE ? white : black;
    list[NalimovTablebases::KING_SLOT] = SortedSquares(*this, colour, KING)[0];
    for (int type = PAWN; type <= QUEEN; ++type) {
      std::vector<int> squares = SortedSquares(*this, colour, type);
      for (std::size_t k = 0; k < squares.size(); ++k)
        list[NalimovTablebases::FirstSlot(type) + k] = squares[k];
    }
  }
}

EndgamePosition EndgamePosition::ColourReversed() const {
  EndgamePosition reversed = *this;
  for (PlacedPiece& p : reversed.pieces) {
    p.colour ^= 1;
    p.square ^= 56;
  }
  reversed.side ^= 1;
  return reversed;
}

EndgamePosition MakeMaterial(std::string_view name, int side) {
  EndgamePosition position;
  position.side = side;
  position.material = name;
  position.pieces.push_back({WHITE, KING, 0});
  position.pieces.push_back({BLACK, KING, 0});
  int colour = WHITE;
  for (std::size_t i = 1; i < name.size(); ++i) {
    if (name[i] == 'k') colour = BLACK;
    else position.pieces.push_back({colour, TypeOfLetter(name[i]), 0});
  }
  return position;
}

bool IsLegal(const EndgamePosition& position) {
  const auto& pieces = position.pieces;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (pieces[i].type == PAWN && (pieces[i].square < A2 || pieces[i].square > H7)) return false;
    for (std::size_t j = 0; j < i; ++j)
      if (pieces[i].square == pieces[j].square) return false;
  }
  int defender_king = pieces[position.side == WHITE ? 1 : 0].square;
  for (const PlacedPiece& p : pieces)
    if (p.colour == position.side && Attacks(p, defender_king, position)) return false;
  return true;
}

void ForEachLegalPosition(std::string_view name, int side,
                          const std::function<void(const EndgamePosition&)>& visit) {
  EndgamePosition position = MakeMaterial(name, side);
  PlaceFrom(position, 0, visit);
}

EndgamePosition RandomLegalPosition(std::string_view name, int side, std::mt19937_64& random) {
  EndgamePosition position = MakeMaterial(name, side);
  do {
    for (PlacedPiece& p : position.pieces) p.square = int(random() % 64);
  } while (!IsLegal(position));
  return position;
}

bool AreSymmetricTwins(const EndgamePosition& a, const EndgamePosition& b) {
  if (a.side != b.side) return false;
  int symmetries = HasPawns(a) ? 2 : 8;
  for (int s = 0; s < symmetries; ++s) {
    EndgamePosition image = a;
    for (PlacedPiece& p : image.pieces) {
      int square = p.square ^ (s & 1 ? 7 : 0) ^ (s & 2 ? 56 : 0);
      p.square = s & 4 ? Transpose(square) : square;
    }
    if (SameSquares(image, b)) return true;
  }
  return false;
}
