#include "bitbases/probe_generic_bitbases.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>

#include "bitbases/bit_array.h"
#include "bitbases/generic_bitbase_handlers.h"
#include "bitbases/log_only_scope.h"
#include "bitbases/special_bitbases.h"
#include "chess/board.h"
#include "chess/memory_size.h"
#include "shell/checked_assert.h"
#include "shell/os_dependent.h"
#include "shell/tee_stream.h"

namespace BraskBitbases {

namespace {

// A handler record is two words, the handler and its data. Records have no array of their own:
// they live in free pairs of the slot array itself, next to the slot that points at them, so that
// a probe usually finds slot and record on one cache line. All words are integers, so slots and
// records share the storage without aliasing questions.
using Word = std::uintptr_t;
constexpr int PAIRS = HANDLER_TABLE_WORDS / 2;
constexpr int POOL_BLOCK_RECORDS = 16;

struct LoadResult {
  Handler handler = nullptr;
  void* data = nullptr;
  std::unique_ptr<BitArray> owned;
  std::size_t memory = 0;
};

struct HandlerTable {
  alignas(64) Word handler_info_ptr_array[HANDLER_TABLE_WORDS] = {};
  std::vector<std::unique_ptr<std::array<Word, 2 * POOL_BLOCK_RECORDS>>> overflow_pool;
  int pool_records_used = 0;
  std::unordered_map<MaterialSignature, std::unique_ptr<BitArray>> loaded_bitbases;
  std::size_t total_memory = 0;
};

HandlerTable data;

// Slots whose material may still get a handler while the table is built: it keeps their pairs
// out of the free-pair search.
Word reserved_marker[2] = {};

Word Address(const Word* record) { return reinterpret_cast<Word>(record); }
Word* Record(Word slot_word) { return reinterpret_cast<Word*>(slot_word); }
Word ReservedMarker() { return Address(reserved_marker); }

int SlotOf(MaterialSignature signature) { return int(signature % HANDLER_TABLE_MODULUS); }

bool PairIsFree(int pair) {
  return data.handler_info_ptr_array[2 * pair] == 0 &&
         data.handler_info_ptr_array[2 * pair + 1] == 0;
}

Word* PoolRecord() {
  if (data.pool_records_used % POOL_BLOCK_RECORDS == 0)
    data.overflow_pool.push_back(std::make_unique<std::array<Word, 2 * POOL_BLOCK_RECORDS>>());
  Word* record =
      data.overflow_pool.back()->data() + 2 * (data.pool_records_used % POOL_BLOCK_RECORDS);
  ++data.pool_records_used;
  record[0] = record[1] = 0;
  return record;
}

// The free pair nearest to `pair`, looking up and down in turn.
Word* FindFreeRecord(int pair) {
  for (int up = pair + 1, down = pair - 1; up < PAIRS || down >= 0; ++up, --down) {
    if (up < PAIRS && PairIsFree(up)) return &data.handler_info_ptr_array[2 * up];
    if (down >= 0 && PairIsFree(down)) return &data.handler_info_ptr_array[2 * down];
  }
  return PoolRecord();
}

// ---------------------------------------------------------------------------------------------
// Loaders: one per size class, all of one form.

using Creator = LoadResult (*)();
using Loader = LoadResult (*)(const PieceCounters&, std::size_t, const std::string&);

LoadResult Fixed(Handler handler) {
  LoadResult result;
  result.handler = handler;
  return result;
}

const std::unordered_map<MaterialSignature, Creator>& SpecializedHandlersMap() {
  static const std::unordered_map<MaterialSignature, Creator> map = [] {
    std::unordered_map<MaterialSignature, Creator> creators;
    creators[0x0001] = [] { return Fixed(FixedHandlers::KingAndPawnAgainstKing); };
    creators[0x8000] = [] { return Fixed(FixedHandlers::KingAgainstKingAndPawn); };
    // Only when the file is there at the first build: a generic file serves otherwise.
    if (two_pawns_data != nullptr)
      creators[0x8001] = [] { return Fixed(FixedHandlers::KingAndPawnAgainstKingAndPawn); };
    return creators;
  }();
  return map;
}

Creator FindSpecializedCreator(const PieceCounters& counters) {
  MaterialSignature signature = 0;
  try {
    signature = Signature(counters);
  } catch (const PieceIndexOutOfBounds&) {
    CHECKED_ASSERT(false, "SpecializedHandlersMap: piece index out of bounds!");
  }
  const auto& map = SpecializedHandlersMap();
  const auto found = map.find(signature);
  return found == map.end() ? nullptr : found->second;
}

template <int PIECES, int PAWNS>
LoadResult Load(const PieceCounters& counters, std::size_t memory_left,
                const std::string& directory) {
  if (Creator creator = FindSpecializedCreator(counters)) return creator();
  LogOnlyScope log_only;
  if (IsMirrored(counters)) return Fixed(GenericHandler<PIECES, PAWNS, true>);

  std::string name, path;
  if (!GenericBitbaseExists(counters, name, path, directory)) {
    Output << "- '" << name << ".bgb' not available\n";
    return {};
  }
  Output << "- loading '" << name << ".bgb'...";
  LoadResult result;
  try {
    result.owned = std::make_unique<BitArray>(path, ClassBits(PIECES, PAWNS), memory_left);
  } catch (const BitArray_MemoryLimitReached&) {
    Output << "skipped (memory limit reached)\n";
    return {};
  } catch (...) {
    Output << "failed\n";
    throw;
  }
  Output << "done\n";
  result.handler = GenericHandler<PIECES, PAWNS, false>;
  result.data = result.owned.get();
  result.memory = result.owned->MemoryUsage();
  return result;
}

LoadResult LoadBareKings(const PieceCounters&, std::size_t, const std::string&) {
  return Fixed(FixedHandlers::BareKings);
}

Loader LoaderOf(int pieces, int pawns) {
  switch (pieces * 8 + pawns) {
    case 2 * 8 + 0: return LoadBareKings;
    case 3 * 8 + 0: return Load<3, 0>;
    case 3 * 8 + 1: return Load<3, 1>;
    case 4 * 8 + 0: return Load<4, 0>;
    case 4 * 8 + 1: return Load<4, 1>;
    case 4 * 8 + 2: return Load<4, 2>;
    case 5 * 8 + 0: return Load<5, 0>;
    case 5 * 8 + 1: return Load<5, 1>;
    case 5 * 8 + 2: return Load<5, 2>;
    case 5 * 8 + 3: return Load<5, 3>;
    default: return nullptr;
  }
}

// ---------------------------------------------------------------------------------------------
// Building the table.

std::map<MaterialSignature, Loader> ReserveSlotsForAllMaterials() {
  std::map<MaterialSignature, Loader> loaders;
  for (const PieceCounters& counters :
       EnumerateEndgamesUpTo(GENERIC_BITBASES_MAX_SUPPORTED_PIECES)) {
    const MaterialSignature signature = Signature(counters);
    const int index = SlotOf(signature);
    CHECKED_ASSERT(data.handler_info_ptr_array[index] == 0,
                   ("collision found at position " + std::to_string(index)).c_str());
    data.handler_info_ptr_array[index] = ReservedMarker();
    loaders[signature] = LoaderOf(PieceCount(counters), PawnCount(counters));
  }
  return loaders;
}

LoadResult LoadOne(Loader loader, const PieceCounters& counters, std::size_t memory_left,
                   const std::string& directory) {
  try {
    return loader(counters, memory_left, directory);
  } catch (const BraskException& error) {
    // A damaged file costs its own material, not the start of the engine.
    LogOnlyScope log_only;
    Output << "Warning: Failed to load generic bitbase '" << EndgameName(counters) << "' ("
           << error.Text() << ")\n";
    return {};
  }
}

struct PendingMirror {
  MaterialSignature stored_signature;
  int slot;
};

void ResolveMirrors(const std::vector<PendingMirror>& pending) {
  for (const PendingMirror& mirror : pending) {
    const Word stored = data.handler_info_ptr_array[SlotOf(mirror.stored_signature)];
    Word* record = Record(data.handler_info_ptr_array[mirror.slot]);
    if (stored == ReservedMarker() || stored == 0) {
      data.handler_info_ptr_array[mirror.slot] = 0;
      record[0] = record[1] = 0;
    } else {
      record[1] = Record(stored)[1];
    }
  }
}

void RemoveMarkers() {
  for (Word& word : data.handler_info_ptr_array)
    if (word == ReservedMarker()) word = 0;
}

}  // namespace

void ClearHandlerTable() {
  data.loaded_bitbases.clear();
  data.overflow_pool.clear();
  data.pool_records_used = 0;
  data.total_memory = 0;
  for (Word& word : data.handler_info_ptr_array) word = 0;
}

std::size_t GetTotalMemoryUsage() { return data.total_memory; }

void BuildHandlerTable(const std::vector<PieceCounters>& endgames, std::size_t memory_limit,
                       const std::string& directory) {
  ClearHandlerTable();
  const std::map<MaterialSignature, Loader> loaders = ReserveSlotsForAllMaterials();
  Output.ReportLogOnly("\nLoading generic bitbases:");

  std::vector<PendingMirror> pending;
  for (const PieceCounters& counters : endgames) {
    MaterialSignature signature = 0;
    try {
      signature = Signature(counters);
    } catch (const PieceIndexOutOfBounds&) {
      continue;
    }
    const auto loader = loaders.find(signature);
    if (loader == loaders.end() || loader->second == nullptr) continue;
    const int slot = SlotOf(signature);
    if (data.handler_info_ptr_array[slot] != ReservedMarker()) continue;  // named twice
    Word* record = FindFreeRecord(slot / 2);
    data.handler_info_ptr_array[slot] = Address(record);

    // 0 would mean no limit to the array: a spent budget still leaves a limit of one byte.
    const std::size_t spent = std::min(memory_limit, data.total_memory);
    const std::size_t memory_left =
        memory_limit == 0 ? 0 : std::max<std::size_t>(1, memory_limit - spent);
    LoadResult result = LoadOne(loader->second, counters, memory_left, directory);
    record[0] = reinterpret_cast<Word>(result.handler);
    record[1] = reinterpret_cast<Word>(result.data);

    if (IsMirrored(counters) && FindSpecializedCreator(counters) == nullptr) {
      if (result.handler != nullptr) pending.push_back({Signature(SwapColours(counters)), slot});
      continue;
    }
    if (result.handler == nullptr) {
      data.handler_info_ptr_array[slot] = ReservedMarker();
      continue;
    }
    if (result.owned) {
      data.total_memory += result.memory;
      data.loaded_bitbases[signature] = std::move(result.owned);
    }
  }
  ResolveMirrors(pending);
  RemoveMarkers();
}

void LoadGenericBitbases() { LoadGenericBitbases(ExecutableDirectory()); }

void LoadGenericBitbases(const std::string& directory) {
  {
    LogOnlyScope log_only;
    Output << "\nGeneric bitbases information:\n- max supported pieces: "
           << std::int32_t(GENERIC_BITBASES_MAX_SUPPORTED_PIECES)
           << "\n- max pieces to load by default: "
           << std::int32_t(GENERIC_BITBASES_MAX_PIECES_TO_LOAD) << "\n"
           << "- use specialized handlers if available: true\n"
           << "- use specialized hash table implementation: true\n";
  }
  BuildHandlerTable(EnumerateEndgamesUpTo(GENERIC_BITBASES_MAX_PIECES_TO_LOAD),
                    GENERIC_BITBASES_MEMORY_LIMIT, directory);
  LogOnlyScope log_only;
  Output << "Total memory usage (all loaded generic bitbases combined): "
         << BraskUtils::FormatMemorySize(data.total_memory) << "\n";
}

std::string DescribeProbe(int result, int score) {
  switch (result) {
    case BITBASE_FOUND: return "result=" + std::to_string(score);
    case BITBASE_DISABLED: return "disabled";
    default: return "not found";
  }
}

int ProbeBitbases(const Board& board, int* score) {
  // More pieces than any bitbase holds: answered before the list is built.
  if (PopCount(board.occupied) > GENERIC_BITBASES_MAX_SUPPORTED_PIECES) return BITBASE_NOT_FOUND;
  PositionList list;
  MaterialSignature signature = 0;
  try {
    signature = BuildMaterialAndList(board, list);
  } catch (const PieceIndexOutOfBounds&) {
    return BITBASE_NOT_FOUND;
  }
  if (list.count > GENERIC_BITBASES_MAX_SUPPORTED_PIECES) return BITBASE_NOT_FOUND;
  const Word slot = data.handler_info_ptr_array[SlotOf(signature)];
  if (slot == 0) return BITBASE_NOT_FOUND;
  const Word* record = Record(slot);
  const Handler handler = reinterpret_cast<Handler>(record[0]);
  return handler(reinterpret_cast<void*>(record[1]), board, list, score);
}

}  // namespace BraskBitbases
