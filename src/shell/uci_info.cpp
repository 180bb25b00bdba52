#include "shell/uci_info.h"

#include <algorithm>
#include <cctype>

#include "chess/move_text.h"
#include "chess/user_board.h"
#include "search/search_serial.h"
#include "shell/time_point.h"

std::string UciScoreText(std::int32_t score) {
  if (score >= -(MATE_THRESHOLD + 1) && score <= MATE_THRESHOLD + 1)
    return "cp " + std::to_string(score);
  const int plies = MATE - (score < 0 ? -score : score);
  const int moves = (plies - 1) / 2 + 1;
  return "mate " + std::to_string(score < 0 ? -moves : moves);
}

// The engine's coordinates leave a queen promotion unmarked; UCI names every promotion.
std::string UciMoveText(const Board& board, Move move) {
  std::string text = MoveToText(board, move, COORDINATE_NOTATION);
  for (char& c : text) c = char(std::tolower(static_cast<unsigned char>(c)));
  if (IsPromotion(move) && PromotionType(move) == QUEEN) text += 'q';
  return text;
}

std::vector<std::string> UciLineText(const UserBoard& game, const std::vector<Move>& moves) {
  std::vector<std::string> texts;
  GameBoard board = game.current;
  for (Move move : moves) {
    if (!board.VerifyMove(move)) break;
    texts.push_back(UciMoveText(board, move));
    board.MakeMove(move);
    board.RebaseStacks();
  }
  return texts;
}

namespace {
// Time, nodes and speed, which every report carries.
std::string Counters(const SerialSearch& search) {
  const std::int64_t ms = std::max<std::int64_t>(ElapsedMsSince(search.start_time), 0);
  const std::uint64_t nps = search.nodes * 1000 / std::uint64_t(std::max<std::int64_t>(ms, 1));
  return " nodes " + std::to_string(search.nodes) + " nps " + std::to_string(nps) + " time " +
         std::to_string(ms);
}
}  // namespace

std::string UciPvInfo(const SerialSearch& search, std::int32_t score, std::string_view bound,
                      const std::vector<Move>& line) {
  const std::vector<std::string> moves = UciLineText(search.game, line);
  const std::size_t depth = std::size_t(std::max<std::int32_t>(search.depth, 1));
  std::string text = "info depth " + std::to_string(depth) + " seldepth " +
                     std::to_string(std::max(depth, moves.size())) + " score " +
                     UciScoreText(score);
  if (!bound.empty()) text += " " + std::string(bound);
  text += Counters(search);
  if (!moves.empty()) text += " pv";
  for (const std::string& move : moves) text += " " + move;
  return text + "\n";
}

std::string UciProgressInfo(const SerialSearch& search, std::uint32_t hashfull_permille) {
  std::string text = "info depth " + std::to_string(std::max<std::int32_t>(search.depth, 1));
  if (search.current_move != INVALID && search.game.current.VerifyMove(search.current_move)) {
    text += " currmove " + UciMoveText(search.game.current, search.current_move) +
            " currmovenumber " + std::to_string(search.moves_total - search.moves_left + 1);
  }
  // The best move far outside the window it was expected in: what is known of its score.
  if (search.searching_best_root_move && search.fail_state == SearchClock::FAILED_LOW)
    text += " score " + UciScoreText(search.clock.upperbound) + " upperbound";
  if (search.searching_best_root_move && search.fail_state == SearchClock::FAILED_HIGH)
    text += " score " + UciScoreText(search.clock.lowerbound) + " lowerbound";
  return text + Counters(search) + " hashfull " + std::to_string(hashfull_permille) + "\n";
}
