// Positions of small endgames for tests, built without the engine's board: a list of pieces on
// squares, a legality test by plain geometry, and the square lists of the tablebase index.
#pragma once

#include <array>
#include <functional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

struct PlacedPiece {
  int colour;
  int type;
  int square;
};

struct EndgamePosition {
  std::vector<PlacedPiece> pieces;  // White's king first, then Black's, then the others
  int side = 0;
  std::string material;  // the table's name, "kqkr"

  // The lists of the tablebase index for these colours.
  void FillSquareLists(int* white, int* black) const;
  // Colours swapped and ranks mirrored; the side on move swaps too.
  EndgamePosition ColourReversed() const;
};

// "kqkr" -> both kings and the pieces, all on square 0.
EndgamePosition MakeMaterial(std::string_view name, int side);

bool IsLegal(const EndgamePosition& position);

// Calls visit for every legal placement, like pieces counted once.
void ForEachLegalPosition(std::string_view name, int side,
                          const std::function<void(const EndgamePosition&)>& visit);

EndgamePosition RandomLegalPosition(std::string_view name, int side, std::mt19937_64& random);

// The same position up to a symmetry of the board (all eight without pawns, the file mirror with
// them) and the order of like pieces.
bool AreSymmetricTwins(const EndgamePosition& a, const EndgamePosition& b);
