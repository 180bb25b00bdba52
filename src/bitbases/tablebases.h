// The one face of the endgame tablebases that the rest of the program sees: initialisation,
// a probe of a board with a status code, and the facts the draw and resign bookkeeping asks for.
#pragma once

#include <cstdint>
#include <string>

#include "shell/brask_exception.h"

class Board;

namespace BraskTablebases {

class TB_Exception : public BraskException {
 public:
  using BraskException::BraskException;
};

// Results of ProbeTablebase.
constexpr int TB_NOT_LOADED = 0;
constexpr int TB_FOUND = 1;
constexpr int TB_NOT_AVAILABLE = 2;
constexpr int TB_QUEUED = 3;  // never produced by this reader; callers treat it as an error

inline constexpr const char* INIT_FAILED_PREFIX = "Could not initialize Nalimov tablebases.\nReason: ";

// A position outside a Board: the tablebase square lists (16 slots per colour) and piece counts.
struct TablebasePosition {
  int white[16];
  int black[16];
  int counts[10];  // white p n b r q, black p n b r q
  int side;
};

// score: relative to the side on move; 0 a draw, 32765 the fastest win, -32767 mated.
int ProbeTablebase(const Board& board, int* score);
int ProbeTablebase(const TablebasePosition& position, int* score);

// Found, and the mate (either way) is at least 30 plies off.
bool TablebaseMateIsFar(const Board& board);

// Registers the tables on path and sets the block cache; throws TB_Exception. Returns the largest
// number of pieces of a table found.
int InitTablebases(const std::string& path, std::uint64_t cache_bytes);

// The size the tb command passes on: a negative value or one beyond 32 bits is reported to the
// log and replaced by the largest allowed.
std::uint64_t CheckedCacheSize(std::int64_t size);

struct TablebaseStatus {
  bool loaded;
  int max_pieces;
  int files;
  std::uint64_t cache_entries;
};
TablebaseStatus GetTablebaseStatus();

// The probe command's words for a probe result: "result=" n, "not found", ...
std::string DescribeProbe(int result, int score);

}  // namespace BraskTablebases
