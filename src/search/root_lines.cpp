// The lines of the root moves. A null-window search keeps no line of its own: the known line of a
// root move is written into the transposition table before each search and read back after it.

#include "chess/move_generator.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "search/search_board.h"
#include "search/search_serial.h"
#include "search/search_types.h"
#include "shell/tee_stream.h"

namespace {
// Lines stop short of the end of the board's stacks.
constexpr std::uint32_t LAST_LINE_PLY = 78;
}  // namespace

void SerialSearch::StorePrincipalVariation(const RootMove& root_move) {
  Board copy(*board);
  int position_type = ClassifyPosition(copy, UNCLASSIFIED);
  bool first = true;
  for (Move move : root_move.principal_variation) {
    if (copy.ply >= LAST_LINE_PLY) break;
    Move known = INVALID;
    int distance = 0;
    // The root move's position is the root itself, which is no node of the tree.
    if (!first && !TRANSPOSITION_TABLE.ProbeMove(copy.Key(), known, distance)) {
      Move moves[MOVE_BUFFER_SIZE];
      moves[MAX_MOVES] = INVALID;
      const bool single_reply = GenerateMoves(moves, copy, GEN_EVERY_MOVE) - moves == 1;
      TRANSPOSITION_TABLE.Store(MakePlaceholder(copy.Key(), move, position_type, single_reply,
                                                copy.IsQueenAttackedByLesser(), false));
    }
    first = false;
    copy.MakeMove(move);
    position_type = ClassifyPosition(copy, position_type);
  }
}

void SerialSearch::ReadPrincipalVariation(RootMove& root_move) {
  Board copy(*board);
  root_move.principal_variation.clear();
  // First the line the search found, then what the table knows behind it. Every move is checked:
  // a stale row or a key collision ends the line instead of corrupting it.
  for (const Move* move = board->principal_variation[0]; *move != INVALID; ++move) {
    if (copy.ply >= LAST_LINE_PLY || !copy.VerifyMove(*move)) return;
    root_move.principal_variation.push_back(*move);
    copy.MakeMove(*move);
  }
  int position_type = UNCLASSIFIED;
  while (!copy.IsDrawByRule() && copy.ply < LAST_LINE_PLY) {
    position_type = ClassifyPosition(copy, position_type);
    Move move = INVALID;
    int type = 0;
    int flags = 0;
    const int found = TRANSPOSITION_TABLE.Probe(copy.Key(), int(copy.ply), 0, MATE, move,
                                                type, flags);
    if (found == HASH_MISS || move == INVALID || !copy.VerifyMove(move)) return;
    root_move.principal_variation.push_back(move);
    copy.MakeMove(move);
  }
}

void SerialSearch::RebuildBestLine(const RootMove& root_move) {
  best_line.clear();
  UserBoard line_board = game;
  for (Move move : root_move.principal_variation) {
    std::string text;
    try {
      text = line_board.MoveText(move, SAN_NOTATION);
      best_line.push_back({move, text});
      line_board.MakeMove(move);
    } catch (const UserBoard::user_exception&) {
      const bool terminal = Output.SetTerminal(false);
      Output << "Illegal move detected: " << text << " (" << std::uint32_t(move) << ")\n";
      line_board.Display(true);
      Output.SetTerminal(terminal);
      Output.Flush();
    }
  }
}
