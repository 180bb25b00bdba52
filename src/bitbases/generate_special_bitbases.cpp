#include "bitbases/generate_special_bitbases.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <initializer_list>

#include "bitbases/log_only_scope.h"
#include "bitbases/memory_mapped_file.h"
#include "bitbases/special_bitbases.h"
#include "bitbases/tablebases.h"
#include "chess/edit_board.h"

namespace BraskGenerator {

using namespace BraskBitbases;

namespace {

struct Piece {
  int square;
  int piece;  // negative for Black
};

// The square list's pieces on the board; false when two share a square or the position is illegal.
bool SetUp(EditBoard& edit, int side, std::initializer_list<Piece> pieces) {
  edit.Reset(side);
  for (const Piece& piece : pieces) {
    if (edit.pieces[piece.square] != NO_PIECE) return false;
    edit.color_is_black = piece.piece < 0;
    edit.SetPiece(piece.square, piece.piece < 0 ? -piece.piece : piece.piece);
  }
  edit.color_is_black = 0;
  edit.castling = 0;
  return edit.IsValid();
}

// Before a file is created: the tablebases must answer a typical position for both sides.
void TryTrialPosition(std::initializer_list<Piece> pieces, const char* not_available) {
  EditBoard edit;
  for (int side : {WHITE, BLACK}) {
    if (!SetUp(edit, side, pieces)) continue;
    int score = 0;
    switch (BraskTablebases::ProbeTablebase(edit.board, &score)) {
      case BraskTablebases::TB_NOT_AVAILABLE: throw GenerationFailed(not_available);
      case BraskTablebases::TB_QUEUED: throw GenerationFailed("internal error: lookup queued");
      case BraskTablebases::TB_NOT_LOADED: throw GenerationFailed("tablebases not loaded");
      default: break;
    }
  }
}

int Probe(const Board& board) {
  int score = 0;
  switch (BraskTablebases::ProbeTablebase(board, &score)) {
    case BraskTablebases::TB_FOUND: return score;
    case BraskTablebases::TB_NOT_LOADED:
      throw GenerationFailed("Internal error: returned ptrDisabled");
    case BraskTablebases::TB_NOT_AVAILABLE: {
      LogOnlyScope log_only;
      Output << "Corrupted position found:\n";
      board.Display(true);
      throw GenerationFailed("Tablebase corruption detected");
    }
    default: throw GenerationFailed("Internal error: lookup queued");
  }
}

int SpecialEntry(int score) {
  return score > 0 ? SPECIAL_WIN : score < 0 ? SPECIAL_LOSS : SPECIAL_DRAW;
}

// fill(data) writes the table into a zeroed mapping of the temporary file; only a complete table
// is renamed to path, and a failure removes what was written.
template <typename Fill>
void WriteSpecialFile(const std::string& path, std::size_t size, Fill&& fill) {
  const std::string temporary = TemporaryPath(path);
  std::remove(temporary.c_str());  // a mapping keeps the tail of a longer leftover
  try {
    std::unique_ptr<BraskUtils::MemoryMappedFile> file;
    try {
      file = std::make_unique<BraskUtils::MemoryMappedFile>(temporary, size);
    } catch (const BraskUtils::MemoryMappedFile::IOException&) {
      throw GenerationFailed("IO error");
    }
    std::memset(file->GetData(), 0, size);
    fill(file->GetData());
    file.reset();  // synced and unmapped
  } catch (const GenerationFailed&) {
    std::remove(temporary.c_str());
    throw;
  }
  if (std::rename(temporary.c_str(), path.c_str()) != 0) {
    std::remove(temporary.c_str());
    throw GenerationFailed("IO error");
  }
}

constexpr int FIRST_PAWN_RANK = 1;
constexpr int LAST_PAWN_RANK = 6;
constexpr int LEFT_FILES = 4;
constexpr int FIRST_PAWN_SQUARE = 8;
constexpr int LAST_PAWN_SQUARE = 55;
constexpr int RANK = 8;

}  // namespace

void GenerateTwoPawnsBitbases(const std::string& path) {
  TryTrialPosition({{E1, KING}, {E2, PAWN}, {E8, -KING}, {E7, -PAWN}},
                   "endgame king+pawn vs king+pawn not available");
  WriteSpecialFile(path, TWO_PAWNS_FILE_SIZE, [](std::uint8_t* data) {
    EditBoard edit;
    // Only White on move: a position with Black on move is read through the colour flip.
    for (int rank = FIRST_PAWN_RANK; rank <= LAST_PAWN_RANK; ++rank)
      for (int file = 0; file < LEFT_FILES; ++file) {
        const int white_pawn = rank * RANK + file;
        for (int black_pawn = FIRST_PAWN_SQUARE; black_pawn <= LAST_PAWN_SQUARE; ++black_pawn)
          for (int white_king = 0; white_king < 64; ++white_king)
            for (int black_king = 0; black_king < 64; ++black_king) {
              if (!SetUp(edit, WHITE,
                         {{white_pawn, PAWN}, {black_pawn, -PAWN}, {white_king, KING},
                          {black_king, -KING}}))
                continue;
              const std::size_t byte =
                  ((std::size_t(HelperFunctions::PawnIndex(white_pawn)) * 48 +
                    std::size_t(black_pawn - 8)) * 64 + std::size_t(white_king)) * 16 +
                  std::size_t(black_king & 15);
              data[byte] |= std::uint8_t(SpecialEntry(Probe(edit.board)) << ((black_king >> 4) * 2));
            }
      }
  });
}

void GenerateRammedPawnBitbases(const std::string& path) {
  TryTrialPosition({{E1, KING}, {E2, PAWN}, {D2, PAWN}, {E8, -KING}, {E7, -PAWN}},
                   "endgame king+pawn+pawn vs king+pawn not available");
  WriteSpecialFile(path, RAMMED_PAWN_FILE_SIZE, [](std::uint8_t* data) {
    EditBoard edit;
    for (int side : {WHITE, BLACK})
      for (int other = FIRST_PAWN_SQUARE; other <= LAST_PAWN_SQUARE; ++other)
        // A ram pawn on the seventh rank would need its blocker on the eighth.
        for (int rank = FIRST_PAWN_RANK; rank < LAST_PAWN_RANK; ++rank)
          for (int file = 0; file < LEFT_FILES; ++file) {
            const int ram = rank * RANK + file;
            for (int white_king = 0; white_king < 64; ++white_king)
              for (int black_king = 0; black_king < 64; ++black_king) {
                if (!SetUp(edit, side,
                           {{other, PAWN}, {ram, PAWN}, {ram + RANK, -PAWN}, {white_king, KING},
                            {black_king, -KING}}))
                  continue;
                const std::size_t byte =
                    ((std::size_t(HelperFunctions::PawnIndex(ram)) * 48 +
                      std::size_t(other - 8)) * 64 + std::size_t(white_king)) * 32 +
                    std::size_t(black_king & 31);
                const int shift = (side == BLACK ? 2 : 0) + (black_king >> 5) * 4;
                int score = Probe(edit.board);
                if (side == BLACK) score = -score;  // the file is relative to White
                data[byte] |= std::uint8_t(SpecialEntry(score) << shift);
              }
          }
  });
}

}  // namespace BraskGenerator
