// The position of a UCI "position" line, built whole before it replaces anything.
#pragma once

#include <string>
#include <vector>

#include "chess/user_board.h"

// "position startpos|fen <fields> [moves <move>...]", tokens from the word "position" on. Throws
// ErrorCommand for a bad FEN or an illegal move, naming what was wrong.
UserBoard ParseUciPosition(const std::vector<std::string>& tokens, const std::string& line);

// The front end decides draws by rule (repetition, fifty moves, material); the game goes on
// through them as long as there are legal moves.
void IgnoreDrawByRule(UserBoard& game);
