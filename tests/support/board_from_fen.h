// Test-side set-up of a Board from FEN text. Test positions are trusted, so failures are test
// failures rather than exceptions.
#pragma once

#include <string>

#include "chess/board.h"

// Sets up the position; returns false for text it cannot read or a position Board refuses.
bool SetupFromFen(Board& board, const std::string& fen);

// The same, failing the current test on bad text.
Board BoardFromFen(const std::string& fen);
