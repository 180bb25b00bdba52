#include "bitbases/special_bitbases.h"

#include <memory>

#include "bitbases/log_only_scope.h"
#include "bitbases/memory_mapped_file.h"
#include "bitbases/probe_generic_bitbases.h"
#include "chess/board.h"
#include "chess/board_tables.h"
#include "shell/checked_assert.h"
#include "shell/os_dependent.h"
#include "shell/tee_stream.h"

namespace BraskBitbases {

const std::uint8_t* two_pawns_data = nullptr;
const std::uint8_t* rammed_pawn_data = nullptr;

namespace {

using BraskUtils::ReadOnlyMemoryMappedFile;
using HelperFunctions::PawnIndex;

constexpr int RANK_FLIP = 56;
constexpr int FILE_FLIP = 7;

bool OnKingsSide(int square) { return (square & 4) != 0; }

// The mapping stays alive until the next successful load of the same file replaces it.
void MapInto(const std::string& path, std::size_t size, const std::uint8_t*& data,
             std::unique_ptr<ReadOnlyMemoryMappedFile>& holder) {
  std::unique_ptr<ReadOnlyMemoryMappedFile> file;
  try {
    file = std::make_unique<ReadOnlyMemoryMappedFile>(path, size);
  } catch (const ReadOnlyMemoryMappedFile::IOException&) {
    throw CouldNotOpenFileException("Could not open file '" + path + "'");
  }
  // Pointer first, holder second: a probe never sees data that is already unmapped.
  data = file->GetData();
  holder.swap(file);
}

std::unique_ptr<ReadOnlyMemoryMappedFile>& TwoPawnsHolder() {
  static std::unique_ptr<ReadOnlyMemoryMappedFile> holder;
  return holder;
}

std::unique_ptr<ReadOnlyMemoryMappedFile>& RammedPawnHolder() {
  static std::unique_ptr<ReadOnlyMemoryMappedFile> holder;
  return holder;
}

void CheckSquareCompaction() {
  bool ok = true;
  int counter = 0;
  for (int square = 0; square < 64; ++square) {
    if (OnKingsSide(square)) continue;
    ok = ok && ((square & 56) >> 1) + (square & 3) == counter++;
    ok = ok && HelperFunctions::CompactAntiMirroredSquare(square) == counter - 1;
  }
  CHECKED_ASSERT(ok, "Error in BraskBitbases::HelperFunctions::CompactAntiMirroredSquare");
}

void LoadSpecialFile(const std::string& directory, const char* name,
                     void (*load)(const std::string&), const char* found, const char* failed,
                     const char* not_found, const char* not_found_end) {
  const std::string path = directory + "/" + name;
  if (!FileExists(path)) {
    Output << not_found << path << not_found_end;
    return;
  }
  try {
    load(path);
    Output << found;
  } catch (const CouldNotOpenFileException&) {
    Output << failed;
  }
}

}  // namespace

void LoadTwoPawnsBitbases(const std::string& path) {
  MapInto(path, TWO_PAWNS_FILE_SIZE, two_pawns_data, TwoPawnsHolder());
}

void LoadRammedPawnBitbases(const std::string& path) {
  MapInto(path, RAMMED_PAWN_FILE_SIZE, rammed_pawn_data, RammedPawnHolder());
}

void ReleaseSpecialBitbases() {
  two_pawns_data = nullptr;
  rammed_pawn_data = nullptr;
  TwoPawnsHolder().reset();
  RammedPawnHolder().reset();
}

int ProbeTwoPawns(int side_on_move, int white_king, int black_king, int white_pawn,
                  int black_pawn) {
  const bool white = side_on_move == WHITE;
  int mask = white ? 0 : RANK_FLIP;
  const int own_pawn = white ? white_pawn : black_pawn;
  if (OnKingsSide(own_pawn)) mask |= FILE_FLIP;
  const int s_pawn = own_pawn ^ mask;
  const int s_king = (white ? white_king : black_king) ^ mask;
  const int o_pawn = (white ? black_pawn : white_pawn) ^ mask;
  const int o_king = (white ? black_king : white_king) ^ mask;
  const std::size_t offset =
      std::size_t(((PawnIndex(s_pawn) * 48 + (o_pawn - 8)) * 64 + s_king) * 16 + (o_king & 15));
  // Read signed and shifted arithmetically; the mask drops the copied sign bits.
  const int byte = static_cast<std::int8_t>(two_pawns_data[offset]);
  return (byte >> ((o_king >> 4) * 2)) & 3;
}

int ProbeRammedPawn(const Board& board) {
  if (rammed_pawn_data == nullptr) return 0;
  const int white_pawns = PopCount(board.white.pawns), black_pawns = PopCount(board.black.pawns);
  const bool white_has_two = white_pawns == 2 && black_pawns == 1;
  if (!white_has_two && !(white_pawns == 1 && black_pawns == 2)) return 0;

  // Side A owns two pawns; its ram pawn R stands right in front of D's pawn.
  const PieceSet& a = white_has_two ? board.white : board.black;
  const PieceSet& d = white_has_two ? board.black : board.white;
  const int d_pawn = FindLowestBit(d.pawns);
  const int ram = white_has_two ? d_pawn - 8 : d_pawn + 8;
  if ((a.pawns & SquareBit(ram)) == 0) return 0;
  int mask = white_has_two ? 0 : RANK_FLIP;
  const bool side_a_on_move = (board.side_on_move == WHITE) == white_has_two;
  if (OnKingsSide(ram)) mask |= FILE_FLIP;
  const int r = ram ^ mask;
  const int q = FindLowestBit(a.pawns & ~SquareBit(ram)) ^ mask;
  const int a_king = int(a.king_square) ^ mask, d_king = int(d.king_square) ^ mask;
  if (r < A2 || r > H6) return 0;

  const std::size_t offset =
      std::size_t(((PawnIndex(r) * 48 + (q - 8)) * 64 + a_king) * 32 + (d_king & 31));
  const int shift = (side_a_on_move ? 0 : 2) + (d_king >> 5) * 4;
  const int entry = (rammed_pawn_data[offset] >> shift) & 3;
  int score = 0;
  if (entry == SPECIAL_WIN) score = 32667 + 4 * (q >> 3);
  if (entry == SPECIAL_LOSS) score = -32637 + 4 * BoardTables.Distance[d_king][r];
  return side_a_on_move ? score : -score;
}

void LoadBitbases() { LoadBitbases(ExecutableDirectory()); }

void LoadBitbases(const std::string& directory) {
  CheckSquareCompaction();
  LogOnlyScope log_only;
  Output << "Loading bitbases (executables directory='" << directory << "'):\n";
  LoadSpecialFile(directory, TWO_PAWNS_FILE_NAME, LoadTwoPawnsBitbases,
                  "- two pawns bitbases found\n", "Warning: Failed to open two pawns bitbases.\n",
                  "- two pawns bitbases not found ('", "')\n");
  LoadSpecialFile(directory, RAMMED_PAWN_FILE_NAME, LoadRammedPawnBitbases,
                  "- rammed pawn bitbases found\n",
                  "Warning: Failed to open rammed pawn bitbases\n",
                  "- rammed pawn bitbases not found ('", "').\n");
  LoadGenericBitbases(directory);
}

}  // namespace BraskBitbases
