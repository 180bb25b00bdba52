#include "bitbases/tablebases.h"

#include <bit>
#include <cstdlib>
#include <utility>

#include "bitbases/nalimov_index.h"
#include "bitbases/nalimov_reader.h"
#include "chess/board.h"
#include "shell/tee_stream.h"

namespace BraskTablebases {

namespace {

using NalimovTablebases::NO_RESULT;

NalimovTablebases::Reader reader;
bool loaded = false;
int max_pieces = 0;

constexpr std::int64_t LARGEST_CACHE = 0x7FFFFFFF;
constexpr int FAR_MATE_PLIES = 29;

// Lowest square first within a type. False for more pieces of a type than the lists can hold.
bool FillSquareList(const PieceSet& pieces, int* list, int* counts) {
  const Bitboard boards[5] = {pieces.pawns, pieces.knights, pieces.bishops, pieces.rooks,
                              pieces.queens};
  for (int type = PAWN; type <= QUEEN; ++type) {
    Bitboard b = boards[type - 1];
    int count = std::popcount(b);
    if (count > NalimovTablebases::MAX_PIECES_BESIDE_KINGS) return false;
    counts[type - 1] = count;
    for (int slot = NalimovTablebases::FirstSlot(type); b; b &= b - 1) list[slot++] = std::countr_zero(b);
  }
  list[NalimovTablebases::KING_SLOT] = int(pieces.king_square);
  return true;
}

int ScoreOfValue(int value) {
  if (value == 0) return 0;
  return value > 0 ? 2 * value - MATE : 2 * value + MATE - 2;
}

}  // namespace

int ProbeTablebase(const Board& board, int* score) {
  if (!loaded) return TB_NOT_LOADED;
  if (board.EnPassant() != 0 || board.Castling() != 0) return TB_NOT_AVAILABLE;
  TablebasePosition position{};
  position.side = int(board.side_on_move);
  if (!FillSquareList(board.white, position.white, position.counts) ||
      !FillSquareList(board.black, position.black, position.counts + 5))
    return TB_NOT_AVAILABLE;
  return ProbeTablebase(position, score);
}

int ProbeTablebase(const TablebasePosition& position, int* score) {
  if (!loaded) return TB_NOT_LOADED;
  NalimovTablebases::PieceCounts counts;
  std::copy(position.counts, position.counts + 10, counts.begin());
  int id = reader.Find(counts);
  if (id == 0) return TB_NOT_AVAILABLE;

  const int* first = position.white;
  const int* second = position.black;
  bool invert = id < 0;
  int side = position.side;
  if (invert) {
    std::swap(first, second);
    side = position.side == WHITE ? BLACK : WHITE;
    id = -id;
  }
  if (!reader.IsRegistered(id, side)) return TB_NOT_AVAILABLE;

  std::uint64_t index = NalimovTablebases::GetIndexFunction(id, side)(
      first, second, NalimovTablebases::NO_EN_PASSANT, invert);
  int value = reader.ReadEntry(id, side, index);
  if (value == NO_RESULT) return TB_NOT_AVAILABLE;
  *score = ScoreOfValue(value);
  return TB_FOUND;
}

bool TablebaseMateIsFar(const Board& board) {
  int score;
  return ProbeTablebase(board, &score) == TB_FOUND && MATE - std::abs(score) > FAR_MATE_PLIES;
}

int InitTablebases(const std::string& path, std::uint64_t cache_bytes) {
  loaded = false;
  max_pieces = 0;
  try {
    max_pieces = reader.Initialize(path, std::size_t(cache_bytes));
  } catch (const NalimovTablebases::NalimovException& e) {
    throw TB_Exception(INIT_FAILED_PREFIX + e.Text());
  }
  loaded = true;
  return max_pieces;
}

std::uint64_t CheckedCacheSize(std::int64_t size) {
  if (size >= 0 && size <= std::int64_t{0xFFFFFFFF}) return std::uint64_t(size);
  Output.ReportLogOnly(
      "NalimovInitializer: Cannot allocate the requested memory, because of an integer overflow. "
      "Allocating maximum memory instead.");
  return LARGEST_CACHE;
}

TablebaseStatus GetTablebaseStatus() {
  return {loaded, max_pieces, reader.RegisteredFiles(), reader.CacheEntries()};
}

std::string DescribeProbe(int result, int score) {
  switch (result) {
    case TB_FOUND: return "result=" + std::to_string(score);
    case TB_NOT_AVAILABLE: return "not found";
    case TB_NOT_LOADED: return "disabled (not loaded)";
    default: return "queued (this should never happen!)";
  }
}

}  // namespace BraskTablebases
