// A position inside a game: the board with the game's outcome, and the rules that end a game.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "chess/board.h"

constexpr std::uint32_t RESULT_RUNNING = 0;
constexpr std::uint32_t RESULT_WHITE_WINS = 1;
constexpr std::uint32_t RESULT_BLACK_WINS = 2;
constexpr std::uint32_t RESULT_DRAW = 3;
constexpr std::uint32_t RESULT_UNKNOWN = 4;

constexpr std::uint32_t REASON_CHECKMATE = 0;
constexpr std::uint32_t REASON_RESIGNATION = 1;
constexpr std::uint32_t REASON_ON_TIME = 2;
constexpr std::uint32_t REASON_STALEMATE = 3;
constexpr std::uint32_t REASON_NO_MATING_MATERIAL = 4;
constexpr std::uint32_t REASON_REPETITION = 5;
constexpr std::uint32_t REASON_AGREEMENT = 6;
constexpr std::uint32_t REASON_FIFTY_MOVES = 7;
constexpr std::uint32_t REASON_ABORTED = 8;
constexpr std::uint32_t REASON_NONE = 9;

// The initial position, a1 to h8.
constexpr std::int8_t INITIAL_POSITION[64] = {
    4,  2,  3,  5,  6,  3,  2,  4,   //
    1,  1,  1,  1,  1,  1,  1,  1,   //
    0,  0,  0,  0,  0,  0,  0,  0,   //
    0,  0,  0,  0,  0,  0,  0,  0,   //
    0,  0,  0,  0,  0,  0,  0,  0,   //
    0,  0,  0,  0,  0,  0,  0,  0,   //
    -1, -1, -1, -1, -1, -1, -1, -1,  //
    -4, -2, -3, -5, -6, -3, -2, -4,  //
};

struct GameBoard : Board {
  GameBoard() = default;
  explicit GameBoard(const Board& board) : Board(board) {}

  bool IsOver() const { return result != RESULT_RUNNING; }

  std::uint32_t result = RESULT_RUNNING;
  std::uint32_t reason = REASON_NONE;
};

// "1-0", "0-1", "1/2-1/2", or "*" for a running game and an unknown result.
std::string_view ResultText(std::uint32_t result);
// Why the game ended, in words; the winner decides the text of mates and resignations.
std::string_view ReasonText(std::uint32_t result, std::uint32_t reason);

// Sets result and reason if the position ends the game: mate, stalemate, fifty moves, bare
// material, or the third occurrence of the position among keys (the positions after each move).
// Leaves them as they are otherwise.
void GameEnd(GameBoard& board, const std::vector<std::uint64_t>& keys);

// Plays a legal move as part of the game: the stacks are rebased so that a game of any length
// fits, the new key joins the history, and the game end is tested.
void MakeGameMove(GameBoard& board, Move move, std::vector<std::uint64_t>& keys);
