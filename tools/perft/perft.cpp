// brask-perft DEPTH [FEN] [--divide] [--time]: counts the leaves of the legal move tree, to check
// the move generator and the board against published counts and to measure their speed. The
// count stands alone on the last line of the output.
#include <chrono>
#include <cstdint>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>

#include "../../tests/support/perft.h"
#include "chess/user_board.h"

namespace {

constexpr std::string_view INITIAL_POSITION =
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
constexpr std::string_view USAGE = "usage: brask-perft DEPTH [FEN] [--divide] [--time]\n";
// Each ply takes a state entry of the board, and the tree grows far beyond any patience before.
constexpr int MAX_DEPTH = 30;

struct Options {
  int depth = -1;
  std::string fen;
  bool divide = false;
  bool time = false;
};

int Fail(const std::string& message) {
  std::cerr << "brask-perft: " << message << "\n" << USAGE;
  return 1;
}

// The usual perft positions are quoted without the move counters, which the engine's reader
// insists on; they do not change the count.
std::string WithMoveCounters(const std::string& fen) {
  int fields = 0;
  bool in_field = false;
  for (char c : fen) {
    const bool blank = c == ' ' || c == '\t';
    if (!blank && !in_field) ++fields;
    in_field = !blank;
  }
  return fields == 4 ? fen + " 0 1" : fen;
}

// Returns "" or what is wrong with the FEN.
std::string SetupBoard(const std::string& fen, Board& board) {
  try {
    UserBoard game;
    game.SetFEN(WithMoveCounters(fen));
    board = game.current;
    return "";
  } catch (const std::exception& error) {
    // The reader's texts may begin with "FEN: " already.
    const std::string_view text = error.what();
    return std::string(text.substr(0, 5) == "FEN: " ? text.substr(5) : text);
  }
}

bool ReadDepth(std::string_view text, int& depth) {
  if (text.empty() || text.size() > 2) return false;
  depth = 0;
  for (char c : text) {
    if (c < '0' || c > '9') return false;
    depth = depth * 10 + (c - '0');
  }
  return depth <= MAX_DEPTH;
}

// The first plain argument is the depth; the others make up the FEN, so that it may also be given
// unquoted as several arguments. Returns "" or what is wrong.
std::string ParseArguments(int argc, char** argv, Options& options) {
  bool have_depth = false;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "--divide") {
      options.divide = true;
    } else if (argument == "--time") {
      options.time = true;
    } else if (argument.substr(0, 2) == "--") {
      return "unknown option '" + std::string(argument) + "'";
    } else if (!have_depth) {
      if (!ReadDepth(argument, options.depth))
        return "the depth must be a whole number from 0 to " + std::to_string(MAX_DEPTH) +
               ", not '" + std::string(argument) + "'";
      have_depth = true;
    } else {
      if (!options.fen.empty()) options.fen += ' ';
      options.fen += argument;
    }
  }
  if (!have_depth) return "no depth given";
  if (options.fen.empty()) options.fen = INITIAL_POSITION;
  return "";
}

std::uint64_t CountWithDivide(Board& board, int depth) {
  if (depth == 0) return 1;
  Move buffer[MOVE_BUFFER_SIZE];
  const Move* end = GenerateMoves(buffer, board, GEN_EVERY_MOVE);
  std::uint64_t total = 0;
  for (const Move* move = buffer; move != end; ++move) {
    board.MakeMove(*move);
    const std::uint64_t leaves = Perft::CountLeaves(board, depth - 1);
    board.UndoMove(*move);
    std::cout << Perft::CoordinateText(*move) << ": " << leaves << "\n";
    total += leaves;
  }
  return total;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (std::string error = ParseArguments(argc, argv, options); !error.empty()) return Fail(error);
  Board board;
  if (std::string error = SetupBoard(options.fen, board); !error.empty())
    return Fail("bad FEN: " + error);

  const auto start = std::chrono::steady_clock::now();
  const std::uint64_t leaves = options.divide ? CountWithDivide(board, options.depth)
                                              : Perft::CountLeaves(board, options.depth);
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;

  if (options.time) {
    const double seconds = elapsed.count();
    std::cout << "time: " << seconds << " s, nodes per second: "
              << (seconds > 0 ? std::uint64_t(double(leaves) / seconds) : 0) << "\n";
  }
  std::cout << leaves << std::endl;
  return 0;
}
