// The two square colours as bitboards; a1 is dark.
#pragma once

#include "chess/basic.h"

constexpr Bitboard LIGHT_SQUARES = 0x55AA55AA55AA55AAULL;
constexpr Bitboard DARK_SQUARES = 0xAA55AA55AA55AA55ULL;
