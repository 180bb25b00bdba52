// brask-tactics MILLISECONDS FILE.epd...: searches every position of the suites for the given time
// and counts the positions whose best move ("bm") the search finds, or whose move to avoid ("am")
// it avoids. A benchmark of the search's strength: compare the figures before and after a change.
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "chess/user_board.h"
#include "search/hash.h"
#include "search/search_serial.h"

namespace {
struct Problem {
  std::string fen;
  std::vector<std::string> best;   // any of them solves it
  std::vector<std::string> avoid;  // none of them may be played
};

// Move text without check marks and annotations, so that "Qd1 +" and "Qd1+" compare equal.
std::string Plain(std::string text) {
  text.erase(std::remove_if(text.begin(), text.end(),
                            [](char c) { return c == '+' || c == '#' || c == '!' || c == '?'; }),
             text.end());
  return text;
}

std::vector<std::string> MovesOf(const std::string& operations, const std::string& opcode) {
  std::vector<std::string> moves;
  std::size_t start = 0;
  while ((start = operations.find(opcode + " ", start)) != std::string::npos) {
    if (start > 0 && operations[start - 1] != ' ' && operations[start - 1] != ';') {
      start += opcode.size();
      continue;
    }
    const std::size_t stop = operations.find(';', start);
    std::istringstream words(Plain(operations.substr(start + opcode.size(), stop - start - opcode.size())));
    for (std::string word; words >> word;) moves.push_back(word);
    start = stop == std::string::npos ? operations.size() : stop;
  }
  return moves;
}

bool ParseLine(const std::string& line, Problem& problem) {
  std::istringstream fields(line);
  std::string board, side, castling, en_passant;
  if (!(fields >> board >> side >> castling >> en_passant)) return false;
  problem.fen = board + " " + side + " " + castling + " " + en_passant + " 0 1";
  std::string rest;
  std::getline(fields, rest);
  problem.best = MovesOf(" " + rest, "bm");
  problem.avoid = MovesOf(" " + rest, "am");
  return !problem.best.empty() || !problem.avoid.empty();
}

bool Solves(const Problem& problem, const std::string& move) {
  const auto in = [&move](const std::vector<std::string>& list) {
    return std::find(list.begin(), list.end(), move) != list.end();
  };
  if (!problem.best.empty() && !in(problem.best)) return false;
  return !in(problem.avoid);
}
}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "usage: brask-tactics MILLISECONDS FILE.epd...\n";
    return 1;
  }
  const int milliseconds = std::atoi(argv[1]);
  if (milliseconds < 1) {
    std::cerr << "brask-tactics: the time must be a positive number of milliseconds\n";
    return 1;
  }
  TRANSPOSITION_TABLE.Resize(DEFAULT_TRANSPOSITION_BYTES);
  PAWN_HASH_TABLE.Resize(DEFAULT_PAWN_HASH_BYTES);
  EVALUATION_HASH_TABLE.Resize(DEFAULT_EVALUATION_HASH_BYTES);
  SerialSearch search;
  int total_solved = 0, total_count = 0;
  for (int i = 2; i < argc; ++i) {
    std::ifstream file(argv[i]);
    if (!file) {
      std::cerr << "brask-tactics: cannot read " << argv[i] << "\n";
      return 1;
    }
    int solved = 0, count = 0;
    std::uint64_t depths = 0;
    for (std::string line; std::getline(file, line);) {
      Problem problem;
      if (!ParseLine(line, problem)) continue;
      UserBoard game;
      try {
        game.SetFEN(problem.fen);
      } catch (const std::exception& error) {
        std::cerr << "skipped: " << line << " (" << error.what() << ")\n";
        continue;
      }
      TRANSPOSITION_TABLE.Clear();
      SearchRequest request;
      request.max_time_limit = milliseconds;
      request.variable_time_limit = milliseconds;
      search.SearchWithoutHost(request, game);
      const std::string move = search.best_line.empty() ? "-" : Plain(search.best_line.front().text);
      const bool ok = Solves(problem, move);
      solved += ok;
      ++count;
      depths += std::uint64_t(search.depth);
      std::printf("%s %-7s depth %2d  %s\n", ok ? "+" : "-", move.c_str(), int(search.depth),
                  line.c_str());
      std::fflush(stdout);
    }
    std::printf("%s: %d of %d solved, mean depth %.1f\n", argv[i], solved, count,
                count ? double(depths) / count : 0.0);
    total_solved += solved;
    total_count += count;
  }
  std::printf("total: %d of %d solved\n", total_solved, total_count);
  return 0;
}
