// The texts about the hash tables: the status that the "hash" command shows, and what a refused
// resize tells the user.
#pragma once

#include <cstdint>
#include <string>

#include "search/hash_table.h"

// "<size in words>", "1023 byte" below a kilobyte.
std::string SizeInWords(std::uint64_t bytes);

// The lines of one table: "<name>: <size>\n", and in detailed mode the slot counts and the fill.
std::string TableStatusText(const char* name, const AbstractHashTable& table, bool detailed);

// The status of the transposition, pawn and evaluation tables, in that order.
std::string HashtableStatusText(bool detailed);

// Written when a table could not be given the size asked for; the table keeps its old size.
inline constexpr const char* HASHTABLE_RESIZE_FAILED =
    "not enough memory for this size, the table keeps its size\n";
