// The wing that a file belongs to: 0 queenside, 1 kingside, 2 centre.
#pragma once

constexpr int QUEENSIDE = 0;
constexpr int KINGSIDE = 1;
constexpr int CENTRE = 2;

// For pawns and kings: the c to f files are the centre.
constexpr int PawnWing[8] = {0, 0, 2, 2, 2, 2, 1, 1};
// For pieces: only the d and e files are the centre.
constexpr int PieceWing[8] = {0, 0, 0, 2, 2, 1, 1, 1};
