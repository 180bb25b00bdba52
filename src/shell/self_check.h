// The start-up proof that the square arithmetic of the chess vocabulary holds: files and ranks,
// the mirrors, the quarter turn and the transposition.
#pragma once

bool CoordinateArithmeticAgrees();
