// The one probe of the bitbases that the search makes, and the handler table behind it: from a
// material signature to the code and the data that answer it in two memory accesses.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "bitbases/generic_bitbases.h"

class Board;

namespace BraskBitbases {

// Result codes of ProbeBitbases.
constexpr int BITBASE_FOUND = 0;
constexpr int BITBASE_NOT_FOUND = 1;
constexpr int BITBASE_DISABLED = 2;  // no handler gives it; callers still handle it

// Score of a win in a generic bitbase, from the view of the side on move.
constexpr int GENERIC_WIN_SCORE = 32267;
constexpr std::size_t GENERIC_BITBASES_MEMORY_LIMIT = 0x4000000;

// Slots are signature % HANDLER_TABLE_MODULUS: the smallest modulus that separates every material
// of at most five pieces, so no key needs to be stored or compared.
constexpr int HANDLER_TABLE_MODULUS = 2291;
constexpr int HANDLER_TABLE_WORDS = HANDLER_TABLE_MODULUS + 2;

using Handler = int (*)(void* data, const Board& board, const PositionList& list, int* score);

// 0 when the position was answered, with `score` 0 for a draw, positive for a win of the side on
// move and negative for a loss; 1 when no bitbase knows it. Never throws.
int ProbeBitbases(const Board& board, int* score);

// What the probe command shows of a result: "result=" and the score, "not found" or "disabled".
std::string DescribeProbe(int result, int score);

// Rebuilds the table from the files of `directory`, loading the endgames in their order until
// memory_limit bytes (0: none) are spent. Files that cannot be read are left out with a warning.
void BuildHandlerTable(const std::vector<PieceCounters>& endgames, std::size_t memory_limit,
                       const std::string& directory);
void ClearHandlerTable();
std::size_t GetTotalMemoryUsage();

// The default endgames from `directory` (the executable's without one), messages to the log alone.
void LoadGenericBitbases(const std::string& directory);
void LoadGenericBitbases();

// The handlers that need no generic file, for exact materials.
namespace FixedHandlers {
int BareKings(void* data, const Board& board, const PositionList& list, int* score);
int KingAndPawnAgainstKing(void* data, const Board& board, const PositionList& list, int* score);
int KingAgainstKingAndPawn(void* data, const Board& board, const PositionList& list, int* score);
int KingAndPawnAgainstKingAndPawn(void* data, const Board& board, const PositionList& list,
                                  int* score);
}  // namespace FixedHandlers

}  // namespace BraskBitbases
