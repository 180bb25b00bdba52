#include "bitbases/generate_generic_bitbases.h"

#include <cstdio>
#include <vector>

#include "bitbases/bit_array.h"
#include "bitbases/generic_bitbase_index.h"
#include "bitbases/placement_walk.h"
#include "bitbases/tablebases.h"
#include "chess/edit_board.h"

namespace BraskGenerator {

using namespace BraskBitbases;

namespace {

// Entries of a generic bitbase, relative to White of the file's material.
constexpr int ENTRY_DRAW = 0;
constexpr int ENTRY_BLACK_WINS = 1;
constexpr int ENTRY_WHITE_WINS = 3;
constexpr int ENTRY_ILLEGAL = 3;  // in dont_care: both bits of the entry

int EntryForWhite(int score, int side) {
  if (side == BLACK) score = -score;
  return score > 0 ? ENTRY_WHITE_WINS : score < 0 ? ENTRY_BLACK_WINS : ENTRY_DRAW;
}

template <int PIECES, int PAWNS>
std::uint32_t IndexOf(const int* squares, int side) {
  const int mask = FileCoordinatesMask(squares[0], PAWNS > 0);
  int file_squares[PIECES];
  for (int i = 0; i < PIECES; ++i) file_squares[i] = squares[i] ^ mask;
  return GenericIndex<PIECES, PAWNS>(file_squares, side);
}

int ProbeForGeneration(const Board& board, const std::string& name) {
  int score = 0;
  switch (BraskTablebases::ProbeTablebase(board, &score)) {
    case BraskTablebases::TB_FOUND: return score;
    case BraskTablebases::TB_NOT_LOADED: throw GenerationFailed("Tablebases are disabled");
    case BraskTablebases::TB_NOT_AVAILABLE:
      throw GenerationFailed("Endgame '" + name + "' not available");
    default: throw GenerationFailed("Internal error: lookup queued");
  }
}

// Nobody reads the entries of illegal positions, so each run of them may take any value: carrying
// on the bit in front of the run lengthens that run of results and compresses better than zeros.
void FillIllegalRuns(const BitArray& dont_care, BitArray& results) {
  dont_care.ForEachRun([&](std::uint32_t first, std::uint32_t last) {
    const bool carried = first > 0 && results.Get1(first - 1);
    results.SetRange(first, last, carried);
  });
}

void SaveAndRename(BitArray& results, const std::string& path) {
  const std::string temporary = TemporaryPath(path);
  results.Save(temporary);
  if (std::rename(temporary.c_str(), path.c_str()) != 0) {
    std::remove(temporary.c_str());
    throw BitArray_IOException("Error: Could not write file '" + path + "'");
  }
}

template <int PIECES, int PAWNS>
void GenerateClass(const PieceCounters& counters, const std::string& path) {
  BitArray results(ClassBits(PIECES, PAWNS));
  {
    BitArray dont_care(ClassBits(PIECES, PAWNS));
    const PlacementList list = BuildPlacementList(counters);
    const std::string name = EndgameName(counters);
    EditBoard edit;
    WalkPlacements(list, [&](const int* squares) {
      for (int side : {WHITE, BLACK}) {
        if (!SetUpPlacement(edit, list, squares, side)) return;  // a shared square: nothing
        if (!edit.IsValid()) {
          dont_care.Set2(IndexOf<PIECES, PAWNS>(squares, side), ENTRY_ILLEGAL);
          continue;
        }
        const int score = ProbeForGeneration(edit.board, name);
        results.Set2(IndexOf<PIECES, PAWNS>(squares, side), EntryForWhite(score, side));
      }
    });
    FillIllegalRuns(dont_care, results);
  }
  SaveAndRename(results, path);
}

template <int PIECES, int PAWNS>
void Register(std::map<MaterialSignature, GenericBitbaseGenerator::Routine>& routines) {
  std::vector<PieceCounters> endgames;
  EnumerateEndgames(PIECES, PAWNS, endgames);
  for (const PieceCounters& counters : endgames)
    routines[Signature(counters)] = &GenerateClass<PIECES, PAWNS>;
}

}  // namespace

std::string TemporaryPath(const std::string& path) { return path + ".part"; }

GenericBitbaseGenerator::GenericBitbaseGenerator() {
  Register<5, 3>(routines_);
  Register<5, 2>(routines_);
  Register<5, 1>(routines_);
  Register<5, 0>(routines_);
  Register<4, 2>(routines_);
  Register<4, 1>(routines_);
  Register<4, 0>(routines_);
  Register<3, 1>(routines_);
  Register<3, 0>(routines_);
}

void GenericBitbaseGenerator::Generate(const PieceCounters& counters,
                                       const std::string& path) const {
  const auto routine = routines_.find(Signature(counters));
  if (routine == routines_.end())
    throw GenerationFailed(
        "Endgame not supported. Increase the number of supported pieces "
        "(GENERIC_BITBASES_MAX_SUPPORTED_PIECES). Note that this requires a rebuild.");
  routine->second(counters, path);
}

}  // namespace BraskGenerator
