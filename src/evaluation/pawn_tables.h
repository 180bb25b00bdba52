// The numbers of the pawn structure: square tables from White's view (Black reads square ^ 56)
// and the tables by rank or distance that the pawn terms look up.
#pragma once

#include <array>
#include <cstdint>

#include "evaluation/score_pair.h"

using PawnSquareTable = std::array<std::int8_t, 64>;

// Square tables are written as the board is seen from White's side, the eighth rank first; no
// pawn ever stands on the first or last rank, so those rows are zero.
constexpr PawnSquareTable FromWhitesView(const std::array<std::int8_t, 64>& board_view) {
  PawnSquareTable table{};
  for (int row = 0; row < 8; ++row)
    for (int file = 0; file < 8; ++file) table[(7 - row) * 8 + file] = board_view[row * 8 + file];
  return table;
}

// clang-format off
constexpr PawnSquareTable OpeningPawnPositional = FromWhitesView({
    0, 0, 0, 0, 0, 0, 0, 0,
    8, 10, 10, -6, -6, 10, 10, 8,
    -12, -2, 8, 22, 22, 6, -6, -12,
    -13, -4, 7, 14, 14, 5, -6, -13,
    -14, -6, 10, 22, 22, 6, -6, -14,
    -14, -4, 3, 10, 10, 3, -4, -14,
    -13, -4, -8, 4, 4, -4, -4, -13,
    0, 0, 0, 0, 0, 0, 0, 0});

constexpr PawnSquareTable OpeningPawnReckless = FromWhitesView({
    0, 0, 0, 0, 0, 0, 0, 0,
    8, 10, 12, 0, 0, 10, 10, 8,
    -18, -14, 6, 32, 32, 6, -14, -18,
    -20, -14, 5, 28, 28, 5, -15, -20,
    -22, -15, 10, 34, 34, 6, -15, -22,
    -24, -15, -3, 16, 16, -3, -15, -24,
    -20, -15, -8, 6, 6, -6, -15, -20,
    0, 0, 0, 0, 0, 0, 0, 0});

constexpr PawnSquareTable MiddlegamePawnPositional = FromWhitesView({
    0, 0, 0, 0, 0, 0, 0, 0,
    8, 10, 10, -6, -6, 10, 10, 8,
    -12, -2, 6, 21, 21, 6, -6, -12,
    -13, -4, 5, 21, 21, 5, -6, -13,
    -14, -6, 6, 18, 18, 6, -6, -14,
    -14, -7, 3, 12, 12, 3, -7, -14,
    -15, -6, -6, 8, 8, -4, -6, -15,
    0, 0, 0, 0, 0, 0, 0, 0});

constexpr PawnSquareTable MiddlegamePawnReckless = FromWhitesView({
    0, 0, 0, 0, 0, 0, 0, 0,
    8, 10, 10, 0, 0, 10, 10, 8,
    -19, -12, 4, 26, 26, 6, -12, -19,
    -21, -12, 3, 28, 28, 5, -13, -21,
    -23, -13, 4, 28, 28, 6, -13, -23,
    -25, -17, -3, 6, 6, -3, -17, -25,
    -25, -18, -6, 0, 0, -6, -15, -25,
    0, 0, 0, 0, 0, 0, 0, 0});

constexpr PawnSquareTable DuoPositional = FromWhitesView({
    0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0,
    7, 10, 12, 16, 16, 12, 10, 7,
    3, 4, 8, 10, 10, 8, 4, 3,
    2, 2, 6, 9, 9, 8, 2, 2,
    0, 0, 1, 3, 3, 1, 0, 0,
    6, 6, 4, 0, 0, 4, 6, 6,
    0, 0, 0, 0, 0, 0, 0, 0});

constexpr PawnSquareTable DuoReckless = FromWhitesView({
    0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0,
    10, 14, 18, 24, 24, 18, 14, 10,
    3, 8, 10, 14, 14, 10, 8, 3,
    2, 6, 10, 12, 12, 10, 6, 2,
    0, 0, 1, 4, 4, 1, 0, 0,
    2, 2, 1, 0, 0, 1, 2, 2,
    0, 0, 0, 0, 0, 0, 0, 0});

constexpr PawnSquareTable DefendedPositional = FromWhitesView({
    0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0,
    6, 6, 9, 10, 10, 9, 6, 6,
    4, 5, 7, 7, 7, 6, 4, 4,
    4, 4, 4, 5, 5, 4, 4, 4,
    4, 5, 4, 3, 3, 4, 5, 4,
    0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0});

constexpr PawnSquareTable DefendedReckless = FromWhitesView({
    0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0,
    2, 4, 9, 12, 12, 9, 4, 2,
    0, 0, 6, 7, 7, 6, 0, 0,
    0, 0, 2, 5, 5, 2, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0});

constexpr PawnSquareTable EndingPawnTable = FromWhitesView({
    0, 0, 0, 0, 0, 0, 0, 0,
    17, 18, 18, 18, 18, 18, 18, 17,
    9, 11, 11, 10, 10, 11, 11, 9,
    6, 8, 8, 7, 7, 8, 8, 6,
    3, 6, 6, 5, 5, 6, 6, 3,
    0, 4, 4, 3, 3, 4, 4, 0,
    0, 4, 4, 3, 3, 4, 4, 0,
    0, 0, 0, 0, 0, 0, 0, 0});

constexpr PawnSquareTable EndingDuoTable = FromWhitesView({
    0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0,
    10, 10, 10, 10, 10, 10, 10, 10,
    7, 7, 7, 7, 7, 7, 7, 7,
    3, 4, 4, 4, 4, 4, 4, 3,
    2, 3, 3, 3, 3, 3, 3, 2,
    2, 3, 3, 3, 3, 3, 3, 2,
    0, 0, 0, 0, 0, 0, 0, 0});

constexpr PawnSquareTable EndingDefendedTable = FromWhitesView({
    0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0,
    3, 3, 3, 3, 3, 3, 3, 3,
    3, 3, 3, 3, 3, 3, 3, 3,
    5, 3, 3, 3, 3, 3, 3, 5,
    3, 4, 4, 4, 4, 4, 4, 3,
    0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0});
// clang-format on

// Tables by rank count from the pawn's own side; entries for ranks no pawn can stand on are 0.

constexpr ScorePair PassedPawnValue[8] = {{}, {10, 5}, {12, 7}, {18, 10},
                                          {30, 20}, {55, 46}, {140, 140}, {}};
constexpr int PassedPawnFile[8] = {7, 8, 7, 5, 5, 7, 8, 7};

constexpr int AdjacentGap[6] = {10, 9, 7, 5, 3, 2};
constexpr ScorePair AdjacentValue[7] = {{}, {15, 10}, {16, 11}, {20, 18},
                                        {32, 35}, {44, 50}, {100, 110}};
constexpr int AdjacentEndingGap[6] = {10, 9, 7, 5, 3, 2};
constexpr int AdjacentEndingTop[7] = {0, 39, 40, 45, 54, 75, 118};

constexpr ScorePair CandidateValue[8] = {{}, {}, {0, 2}, {0, 6}, {0, 8}, {0, 10}, {}, {}};
constexpr int EndingCandidateValue[8] = {0, 0, 2, 7, 10, 12, 0, 0};

constexpr int BlockerValue[7] = {0, 0, 8, 7, 6, 4, 10};  // by piece type, pawn 0
constexpr ScorePair BlockerRank[7] = {{}, {2, 3}, {4, 4}, {6, 5}, {12, 10}, {28, 30}, {72, 83}};

constexpr int EndingDefendedFile[8] = {7, 8, 8, 8, 8, 8, 8, 7};
constexpr int DefendedPassedRank[7] = {0, 0, 3, 10, 30, 55, 90};
