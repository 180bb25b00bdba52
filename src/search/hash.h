// The three process-wide hash tables. They start small; the program sizes them before anything
// uses them.
#pragma once

#include <cstdint>

#include "search/hash_evaluation.h"
#include "search/hash_pawn.h"
#include "search/hash_transposition.h"

extern TranspositionTable TRANSPOSITION_TABLE;
extern PawnHashTable PAWN_HASH_TABLE;
extern EvaluationHashTable EVALUATION_HASH_TABLE;

constexpr std::uint64_t DEFAULT_TRANSPOSITION_BYTES = std::uint64_t{32} << 20;
constexpr std::uint64_t DEFAULT_PAWN_HASH_BYTES = std::uint64_t{4} << 20;
constexpr std::uint64_t DEFAULT_EVALUATION_HASH_BYTES = std::uint64_t{4} << 20;

// The start of a search: a new generation of the transposition table, and fresh counters in all.
void NewSearchOnHashTables();
