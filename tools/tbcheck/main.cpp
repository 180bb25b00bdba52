// brask-tbcheck DIR TABLE [COUNT] [ENGINE]: holds a generated table against a UCI engine
// (Stockfish by default). Positions are drawn at random from the table: wins and losses with a
// short mate, and draws. The engine is asked "go mate N"; a mate it proves shorter than the table
// says, or a mate in a position the table calls drawn, is an error of the table. A mate of the
// same length is an agreement; anything else the search did not settle.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <random>
#include <sstream>
#include <string>

#include "bitbases/table_files.h"
#include "bitbases/table_material.h"
#include "chess/basic.h"

using namespace NalimovTablebases;

namespace {

constexpr int LONGEST_CHECKED_MATE = 6;  // moves: deeper ones the engine may not prove in time
constexpr char DEFAULT_ENGINE[] = "/usr/games/stockfish";
constexpr int DRAW_DEPTH = 14;
constexpr int MOVE_TIME_MS = 5000;

class UciEngine {
 public:
  explicit UciEngine(const std::string& path) {
    int to_engine[2], from_engine[2];
    if (pipe(to_engine) != 0 || pipe(from_engine) != 0) return;
    pid_ = fork();
    if (pid_ == 0) {
      dup2(to_engine[0], 0);
      dup2(from_engine[1], 1);
      close(to_engine[1]);
      close(from_engine[0]);
      execl(path.c_str(), path.c_str(), static_cast<char*>(nullptr));
      _exit(127);
    }
    close(to_engine[0]);
    close(from_engine[1]);
    in_ = fdopen(to_engine[1], "w");
    out_ = fdopen(from_engine[0], "r");
    Send("uci");
    ready_ = WaitFor("uciok");
  }
  ~UciEngine() {
    if (in_) {
      Send("quit");
      fclose(in_);
    }
    if (out_) fclose(out_);
    if (pid_ > 0) waitpid(pid_, nullptr, 0);
  }
  bool Ready() const { return ready_; }

  // The last mate score of the search, in moves (negative when the side on move is mated), or
  // NO_MATE.
  static constexpr int NO_MATE = 1000;
  // moves 0: no mate expected; a search of fixed depth looks for one all the same.
  int MateScore(const std::string& fen, int moves) {
    Send("position fen " + fen);
    Send(moves == 0
             ? "go depth " + std::to_string(DRAW_DEPTH)
             : "go mate " + std::to_string(moves) + " movetime " + std::to_string(MOVE_TIME_MS));
    int mate = NO_MATE;
    std::string line;
    while (ReadLine(line) && line.rfind("bestmove", 0) != 0) {
      std::size_t at = line.find(" score mate ");
      if (at != std::string::npos)
        mate = std::stoi(line.substr(at + 12));
      else if (line.find(" score cp ") != std::string::npos)
        mate = NO_MATE;
    }
    return mate;
  }

 private:
  void Send(const std::string& command) {
    std::fputs((command + "\n").c_str(), in_);
    std::fflush(in_);
  }
  bool ReadLine(std::string& line) {
    char buffer[4096];
    if (!std::fgets(buffer, sizeof buffer, out_)) return false;
    line = buffer;
    return true;
  }
  bool WaitFor(const std::string& word) {
    std::string line;
    while (ReadLine(line))
      if (line.rfind(word, 0) == 0) return true;
    return false;
  }

  pid_t pid_ = -1;
  FILE* in_ = nullptr;
  FILE* out_ = nullptr;
  bool ready_ = false;
};

std::string Fen(const TableMaterial& m, const int* squares, int side) {
  char board[64] = {};
  for (int i = 0; i < m.count; ++i) {
    char letter = " PNBRQK"[m.type[std::size_t(i)]];
    board[squares[i]] = m.colour[std::size_t(i)] == WHITE ? letter : char(letter - 'A' + 'a');
  }
  std::string fen;
  for (int rank = 7; rank >= 0; --rank) {
    int empty = 0;
    for (int file = 0; file < 8; ++file) {
      char piece = board[8 * rank + file];
      if (!piece) {
        ++empty;
        continue;
      }
      if (empty) fen += char('0' + empty);
      empty = 0;
      fen += piece;
    }
    if (empty) fen += char('0' + empty);
    if (rank) fen += '/';
  }
  return fen + (side == WHITE ? " w" : " b") + " - - 0 1";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "usage: brask-tbcheck DIR TABLE [COUNT] [ENGINE]\n";
    return 2;
  }
  std::string directory = argv[1], name = argv[2];
  int count = argc > 3 ? std::atoi(argv[3]) : 200;
  std::string engine_path = argc > 4 ? argv[4] : DEFAULT_ENGINE;
  std::optional<TableMaterial> material = TableMaterial::Of(name);
  std::optional<TableFiles> table = LoadTableFiles(directory, name);
  if (!material || !table) {
    std::cerr << name << ": no such table in " << directory << "\n";
    return 2;
  }
  if (access(engine_path.c_str(), X_OK) != 0) {
    std::cout << "skipped: no engine at " << engine_path << "\n";
    return 0;
  }
  UciEngine engine(engine_path);
  if (!engine.Ready()) {
    std::cout << "skipped: " << engine_path << " does not answer uci\n";
    return 0;
  }

  std::mt19937_64 random(std::random_device{}());
  int agreed = 0, unsettled = 0, errors = 0, drawn = 0;
  for (int n = 0; n < count;) {
    int squares[MAX_TABLE_PIECES];
    for (int i = 0; i < material->count; ++i)
      squares[i] =
          material->type[std::size_t(i)] == PAWN ? 8 + int(random() % 48) : int(random() % 64);
    bool distinct = true;
    for (int i = 0; i < material->count; ++i)
      for (int j = 0; j < i; ++j) distinct &= squares[i] != squares[j];
    if (!distinct) continue;
    int side = int(random() % 2);
    TableEntry entry = EntryIn({material->id, false}, material->colour.data(),
                               material->type.data(), squares, material->count, side);
    if (entry.index == ~std::uint64_t{0}) continue;
    std::int8_t result = table->At(entry.file_side, entry.index);
    if (result == EntryByte::ILLEGAL) continue;
    bool draw = result == EntryByte::DRAW;
    int moves = EntryByte::Moves(result);
    // Draws only now and then: the engine cannot prove them, only fail to find a mate.
    if (draw ? random() % 8 != 0 : moves > LONGEST_CHECKED_MATE) continue;
    ++n;
    std::string fen = Fen(*material, squares, side);
    int expected = draw ? UciEngine::NO_MATE : EntryByte::IsWin(result) ? moves : -moves;
    int found = engine.MateScore(fen, draw ? 0 : std::max(1, moves));
    if (draw) {
      ++drawn;
      if (found != UciEngine::NO_MATE) {
        ++errors;
        std::cout << "ERROR " << fen << ": table draw, engine mate " << found << "\n";
      }
    } else if (found == expected) {
      ++agreed;
    } else if (found != UciEngine::NO_MATE && (found > 0) == (expected > 0) &&
               std::abs(found) < std::abs(expected)) {
      ++errors;
      std::cout << "ERROR " << fen << ": table mate " << expected << ", engine mate " << found
                << "\n";
    } else if (found != UciEngine::NO_MATE && (found > 0) != (expected > 0)) {
      ++errors;
      std::cout << "ERROR " << fen << ": table mate " << expected << ", engine mate " << found
                << "\n";
    } else {
      ++unsettled;
      std::cout << "unsettled " << fen << ": table mate " << expected << ", engine "
                << (found == UciEngine::NO_MATE ? std::string("no mate")
                                                : "mate " + std::to_string(found))
                << "\n";
    }
  }
  std::cout << name << ": " << agreed << " mates agreed, " << drawn << " draws without a mate, "
            << unsettled << " unsettled, " << errors << " errors\n";
  return errors == 0 ? 0 : 1;
}
