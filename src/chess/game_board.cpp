#include "chess/game_board.h"

#include <algorithm>

#include "chess/move_generator.h"

std::string_view ResultText(std::uint32_t result) {
  switch (result) {
    case RESULT_WHITE_WINS: return "1-0";
    case RESULT_BLACK_WINS: return "0-1";
    case RESULT_DRAW: return "1/2-1/2";
    default: return "*";
  }
}

std::string_view ReasonText(std::uint32_t result, std::uint32_t reason) {
  constexpr std::string_view FIXED_TEXTS[] = {
      "",  // checkmate: depends on the winner
      "",  // resignation: depends on the winner
      "Lost on time",          "Stalemate",        "Insufficient material",
      "Threefold repetition",  "Mutual agreement", "Fifthy move rule",
      "aborted",
  };
  switch (reason) {
    case REASON_CHECKMATE: return result == RESULT_WHITE_WINS ? "White mates" : "Black mates";
    case REASON_RESIGNATION: return result == RESULT_WHITE_WINS ? "Black resigns" : "White resigns";
    default: return reason < std::size(FIXED_TEXTS) ? FIXED_TEXTS[reason] : "unknown reason";
  }
}

namespace {

bool HasMatingMaterial(const PieceSet& side) {
  return side.pawns != 0 || side.rooks != 0 || side.queens != 0 || side.minor_points >= 6;
}

void EndGame(GameBoard& board, std::uint32_t result, std::uint32_t reason) {
  board.result = result;
  board.reason = reason;
}

}  // namespace

void GameEnd(GameBoard& board, const std::vector<std::uint64_t>& keys) {
  std::vector<Move> legal_moves;
  GenerateMoves(legal_moves, board);
  if (legal_moves.empty()) {
    if (board.InCheck())
      EndGame(board, board.side_on_move == WHITE ? RESULT_BLACK_WINS : RESULT_WHITE_WINS,
              REASON_CHECKMATE);
    else
      EndGame(board, RESULT_DRAW, REASON_STALEMATE);
  } else if (board.HalfmoveClock() >= 100) {
    EndGame(board, RESULT_DRAW, REASON_FIFTY_MOVES);
  } else if (!HasMatingMaterial(board.white) && !HasMatingMaterial(board.black)) {
    // Two knights count as mating material here, unlike in the search's draw test: a mate with
    // them can be helped along, and a game record must not call it a draw.
    EndGame(board, RESULT_DRAW, REASON_NO_MATING_MATERIAL);
  } else if (std::count(keys.begin(), keys.end(), board.Key()) == 3) {
    EndGame(board, RESULT_DRAW, REASON_REPETITION);
  }
}

void MakeGameMove(GameBoard& board, Move move, std::vector<std::uint64_t>& keys) {
  board.MakeMove(move);
  board.RebaseStacks();
  keys.push_back(board.Key());
  GameEnd(board, keys);
}
