// Test-side set-up of a Board from FEN text, through the engine's own FEN reader. Test positions
// are trusted, so failures are test failures rather than exceptions; the move counters may be
// left out.
#pragma once

#include <string>

#include "chess/board.h"

// Sets up the position; returns false for text the engine refuses.
bool SetupFromFen(Board& board, const std::string& fen);

// The same, failing the current test on bad text.
Board BoardFromFen(const std::string& fen);

// The position as FEN, for failure messages.
std::string FenOf(const Board& board);
