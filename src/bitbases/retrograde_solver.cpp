#include "bitbases/retrograde_solver.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <exception>
#include <set>
#include <stdexcept>
#include <thread>

#include "bitbases/nalimov_index.h"
#include "bitbases/solver_geometry.h"
#include "bitbases/solver_moves.h"
#include "bitbases/solver_state_space.h"
#include "bitbases/tablebase_descriptors.h"

namespace NalimovTablebases {

namespace {

using namespace SolverGeometry;

constexpr std::int8_t UNDECIDED = INT8_MIN;
constexpr std::uint8_t DRAW_EXIT = 1;  // a capture or promotion holds the draw at least
constexpr std::uint8_t WIN_EXIT = 2;   // ... or wins: the position is won, at some distance
constexpr int NONE = NO_PIECE_INDEX;
// Two queens and a king of the side that moves back: 27 + 27 + 8 squares at most.
constexpr int MAX_PREDECESSORS = 64;
constexpr int QUEUE_PLIES = EntryByte::LONGEST_LOSS_PLIES + 2;

struct Cell {
  std::int8_t result = EntryByte::ILLEGAL;
  std::uint8_t moves_left = 0;  // moves inside the table not yet known to lose
  std::uint8_t flags = 0;
  std::uint8_t exit_plies = 0;  // the slowest loss by an exit; with WIN_EXIT the fastest win
};

// What the moves of a position come to before anything inside the table is known.
struct MoveSummary {
  int legal = 0;
  int inside = 0;
  int best_win = INT_MAX;
  int worst_loss = 0;
  bool draw_exit = false;

  // entry: the result after the move, for the other side.
  void AddExit(std::int8_t entry) {
    if (EntryByte::IsLoss(entry))
      best_win = std::min(best_win, EntryByte::Plies(entry) + 1);
    else if (EntryByte::IsWin(entry))
      worst_loss = std::max(worst_loss, EntryByte::Plies(entry) + 1);
    else
      draw_exit = true;
  }
};

// A position just after a double step that the other side may take en passant.
struct EpState {
  std::uint64_t key;
  std::uint32_t state;
  Cell cell;
};

// A state of the table in one word: its number, then the side on move in the lowest bit.
constexpr std::uint32_t StateWord(std::uint64_t index, int side) {
  return std::uint32_t(index << 1 | std::uint64_t(side));
}
// pawn: the piece that has just stepped two squares.
constexpr std::uint64_t EpKey(int side, std::uint64_t index, int pawn) {
  return index << 4 | std::uint64_t(side) << 3 | std::uint64_t(pawn);
}

class PlyQueues {
 public:
  PlyQueues() : at_(QUEUE_PLIES) {}
  void Push(int ply, std::uint32_t entry) {
    if (ply >= QUEUE_PLIES) throw std::runtime_error("a distance to mate beyond the file format");
    at_[std::size_t(ply)].push_back(entry);
  }
  std::vector<std::uint32_t>& At(int ply) { return at_[std::size_t(ply)]; }
  void Append(PlyQueues& other) {
    for (std::size_t ply = 0; ply < at_.size(); ++ply) {
      at_[ply].insert(at_[ply].end(), other.at_[ply].begin(), other.at_[ply].end());
      std::vector<std::uint32_t>().swap(other.at_[ply]);
    }
  }
  void Release(int ply) { std::vector<std::uint32_t>().swap(at_[std::size_t(ply)]); }

 private:
  std::vector<std::vector<std::uint32_t>> at_;
};

// What one thread of the backward pass decides, for later plies.
struct BackwardOutput {
  PlyQueues states;
  PlyQueues ep_states;
};

// What one thread of the forward pass found that the backward pass starts from.
struct ForwardOutput {
  PlyQueues decided;     // mates, and losses with no move inside the table
  PlyQueues candidates;  // wins by an exit, unless a faster one inside comes first
  std::vector<EpState> ep_states;
};

// A way out of the table: which piece is captured, which moves, and what it promotes to.
struct ExitTable {
  TableOfMaterial table;
  const TableFiles* files = nullptr;
  int count = 0;
  int colour[MAX_TABLE_PIECES] = {};
  int type[MAX_TABLE_PIECES] = {};
  int source[MAX_TABLE_PIECES] = {};
};

// visit(captured, piece, promotion, exit) for every way a move of piece may leave the table:
// capturing another piece (or NONE), promoting (or 0), or both.
template <typename Visit>
void ForEachExit(const TableMaterial& m, Visit visit) {
  for (int captured = NONE; captured < m.count; ++captured)
    for (int piece = 0; piece < m.count; ++piece)
      for (int promotion : {0, QUEEN, ROOK, BISHOP, KNIGHT}) {
        bool captures = captured != NONE;
        if (captures && (m.type[std::size_t(captured)] == KING ||
                         m.colour[std::size_t(captured)] == m.colour[std::size_t(piece)]))
          continue;
        if ((promotion != 0 && m.type[std::size_t(piece)] != PAWN) || (!captures && promotion == 0))
          continue;
        ExitTable e;
        for (int k = 0; k < m.count; ++k) {
          if (k == captured) continue;
          e.colour[e.count] = m.colour[std::size_t(k)];
          e.type[e.count] = k == piece && promotion != 0 ? promotion : m.type[std::size_t(k)];
          e.source[e.count++] = k;
        }
        if (e.count > 2) e.table = FindTable(e.colour, e.type, e.count);
        visit(captured, piece, promotion, e);
      }
}

// Runs work(0) .. work(count - 1) on threads of their own but the first, and passes on the first
// exception any of them threw once all are done.
template <typename Work>
void RunThreads(std::size_t count, Work work) {
  std::vector<std::exception_ptr> failures(count);
  auto guarded = [&](std::size_t t) {
    try {
      work(t);
    } catch (...) {
      failures[t] = std::current_exception();
    }
  };
  std::vector<std::thread> helpers;
  for (std::size_t t = 1; t < count; ++t) helpers.emplace_back(guarded, t);
  guarded(0);
  for (std::thread& helper : helpers) helper.join();
  for (std::exception_ptr& failure : failures)
    if (failure) std::rethrow_exception(failure);
}

class Solver {
 public:
  Solver(const TableMaterial& material, const std::vector<const TableFiles*>& exits,
         const SolveOptions& options)
      : m_(material), n_(material.count), space_(material), moves_(material), options_(options) {
    BuildExits(exits);
  }

  TableFiles Run();

 private:
  // Forward.
  void BuildExits(const std::vector<const TableFiles*>& exits);
  void ForwardRange(int side, std::uint64_t begin, std::uint64_t end, ForwardOutput& out);
  void Forward(int side, std::uint64_t index, ForwardOutput& out);
  std::int8_t EntryAfterExit(int side, const int* squares, int piece, int to, int captured,
                             int promotion) const;
  Cell Finish(const MoveSummary& summary, bool in_check, std::uint32_t word, PlyQueues& decided,
              PlyQueues& candidates) const;

  // Backward.
  void Backward();
  void PropagatePly(int ply);
  void Propagate(std::uint32_t word, int ply, BackwardOutput& out);
  void PropagateEp(std::uint32_t id, int ply, BackwardOutput& out);
  void NotifyEpTwins(int side, std::uint64_t index, const int* squares, bool lost, int ply,
                     BackwardOutput& out);
  int FindEpState(int side, std::uint64_t index, int pawn) const;
  template <typename Push>
  static void Notify(Cell& cell, bool lost, int ply, Push push);

  TableFiles WriteFiles();
  void Report(const std::string& text) const {
    if (options_.progress) *options_.progress << text << std::endl;
  }

  const TableMaterial& m_;
  const int n_;
  SolverStateSpace space_;
  SolverMoves moves_;
  SolveOptions options_;
  bool ep_possible_ = false;
  // [captured + 1][moving piece][promotion type]
  std::array<std::array<std::array<ExitTable, KING>, MAX_TABLE_PIECES>, MAX_TABLE_PIECES + 1>
      exits_;
  std::vector<Cell> cells_[2];
  std::vector<EpState> ep_;
  std::vector<std::uint64_t> ep_keys_;
  PlyQueues queue_, candidates_, ep_queue_, ep_candidates_;
};

void Solver::BuildExits(const std::vector<const TableFiles*>& exits) {
  ep_possible_ = m_.PawnsOnBothSides();
  ForEachExit(m_, [&](int captured, int piece, int promotion, const ExitTable& found) {
    ExitTable& e = exits_[std::size_t(captured + 1)][std::size_t(piece)][std::size_t(promotion)];
    e = found;
    if (e.count == 2) return;
    for (const TableFiles* files : exits)
      if (files->id == e.table.id) e.files = files;
    if (e.files == nullptr)
      throw std::runtime_error(m_.name + " needs " + std::string(Descriptors[e.table.id].name) +
                               " first");
  });
}

std::int8_t Solver::EntryAfterExit(int side, const int* squares, int piece, int to, int captured,
                                   int promotion) const {
  const ExitTable& e =
      exits_[std::size_t(captured + 1)][std::size_t(piece)][std::size_t(promotion)];
  if (e.count == 2) return EntryByte::DRAW;
  int after[MAX_TABLE_PIECES];
  for (int k = 0; k < e.count; ++k) after[k] = e.source[k] == piece ? to : squares[e.source[k]];
  TableEntry entry = EntryIn(e.table, e.colour, e.type, after, e.count, side ^ 1);
  std::int8_t result = e.files->At(entry.file_side, entry.index);
  if (result == EntryByte::ILLEGAL)
    throw std::runtime_error(e.files->name + " has no result for a position that " + m_.name +
                             " reaches");
  return result;
}

Cell Solver::Finish(const MoveSummary& s, bool in_check, std::uint32_t word, PlyQueues& decided,
                    PlyQueues& candidates) const {
  Cell cell;
  cell.result = UNDECIDED;
  if (s.best_win != INT_MAX) {
    cell.flags = WIN_EXIT;
    cell.exit_plies = std::uint8_t(s.best_win);
    candidates.Push(s.best_win, word);
  } else if (s.legal == 0) {
    cell.result = in_check ? EntryByte::Loss(0) : EntryByte::DRAW;
    if (in_check) decided.Push(0, word);
  } else if (s.inside == 0) {
    cell.result = s.draw_exit ? EntryByte::DRAW : EntryByte::Loss(s.worst_loss);
    if (!s.draw_exit) decided.Push(s.worst_loss, word);
  } else {
    cell.moves_left = std::uint8_t(s.inside);
    cell.flags = s.draw_exit ? DRAW_EXIT : 0;
    cell.exit_plies = std::uint8_t(s.worst_loss);
  }
  return cell;
}

void Solver::Forward(int side, std::uint64_t index, ForwardOutput& out) {
  int squares[MAX_TABLE_PIECES];
  space_.Decode(index, squares);
  Bitboard occupied = 0;
  for (int i = 0; i < n_; ++i) {
    if (occupied & SquareBit(squares[i])) return;  // stays illegal
    occupied |= SquareBit(squares[i]);
  }
  if (moves_.Attacked(squares[side ^ 1], side, squares, occupied, NONE)) return;
  bool in_check = moves_.Attacked(squares[side], side ^ 1, squares, occupied, NONE);

  MoveSummary summary;
  moves_.ForEachLegalMove(
      side, squares, occupied, in_check, [&](int piece, int to, int captured, int promotion) {
        ++summary.legal;
        if (captured == NONE && promotion == 0)
          ++summary.inside;
        else
          summary.AddExit(EntryAfterExit(side, squares, piece, to, captured, promotion));
      });
  std::uint32_t word = StateWord(index, side);
  cells_[side][index] = Finish(summary, in_check, word, out.decided, out.candidates);

  if (!ep_possible_) return;
  moves_.ForEachEpPawn(side, squares, occupied, [&](int pawn) {
    MoveSummary with_ep = summary;
    moves_.ForEachEpCapture(side, squares, occupied, pawn, [&](int capturer, int to) {
      ++with_ep.legal;
      with_ep.AddExit(EntryAfterExit(side, squares, capturer, to, pawn, 0));
    });
    if (with_ep.legal == summary.legal) return;  // no capture is legal: no rights to keep
    // Queued once the states are sorted and numbered.
    PlyQueues none;
    EpState state{EpKey(side, index, pawn), word, {}};
    state.cell = Finish(with_ep, in_check, word, none, none);
    out.ep_states.push_back(state);
  });
}

void Solver::ForwardRange(int side, std::uint64_t begin, std::uint64_t end, ForwardOutput& out) {
  for (std::uint64_t index = begin; index < end; ++index) Forward(side, index, out);
}

int Solver::FindEpState(int side, std::uint64_t index, int pawn) const {
  std::uint64_t key = EpKey(side, index, pawn);
  auto found = std::lower_bound(ep_keys_.begin(), ep_keys_.end(), key);
  return found != ep_keys_.end() && *found == key ? int(found - ep_keys_.begin()) : NONE;
}

// Threads of the backward pass may reach one cell together: its result is set only by the one
// that finds it undecided, and the count of its moves is taken down one at a time.
template <typename Push>
void Solver::Notify(Cell& cell, bool lost, int ply, Push push) {
  std::atomic_ref<std::int8_t> result(cell.result);
  if (result.load(std::memory_order_relaxed) != UNDECIDED) return;
  std::int8_t undecided = UNDECIDED;
  if (lost) {
    if (result.compare_exchange_strong(undecided, EntryByte::Win(ply + 1))) push(ply + 1);
    return;
  }
  if (cell.flags & WIN_EXIT) return;
  if (std::atomic_ref<std::uint8_t>(cell.moves_left).fetch_sub(1) != 1 || (cell.flags & DRAW_EXIT))
    return;
  int at = std::max(ply + 1, int(cell.exit_plies));
  if (at > EntryByte::LONGEST_LOSS_PLIES)
    throw std::runtime_error("a distance to mate beyond the file format");
  if (result.compare_exchange_strong(undecided, EntryByte::Loss(at))) push(at);
}

// The en-passant twins of a predecessor (side on move, squares in the frame) share its moves.
void Solver::NotifyEpTwins(int side, std::uint64_t index, const int* squares, bool lost, int ply,
                           BackwardOutput& out) {
  Bitboard occupied = 0;
  for (int i = 0; i < n_; ++i) occupied |= SquareBit(squares[i]);
  moves_.ForEachEpPawn(side, squares, occupied, [&](int pawn) {
    int id = FindEpState(side, index, pawn);
    if (id == NONE) return;
    Notify(ep_[std::size_t(id)].cell, lost, ply,
           [&](int at) { out.ep_states.Push(at, std::uint32_t(id)); });
  });
}

void Solver::Propagate(std::uint32_t word, int ply, BackwardOutput& out) {
  int side = int(word & 1);
  std::uint64_t index = word >> 1;
  int squares[MAX_TABLE_PIECES];
  space_.Decode(index, squares);
  bool lost = EntryByte::IsLoss(cells_[side][index].result);
  int mover = side ^ 1;
  Bitboard occupied = 0;
  for (int i = 0; i < n_; ++i) occupied |= SquareBit(squares[i]);

  // The predecessors are gathered first and their cells fetched all together: they lie far
  // apart in a large table, and waiting for each in turn would cost most of the time.
  std::uint64_t found[MAX_PREDECESSORS];
  int count = 0;
  auto retract = [&](int piece, int origin) {
    std::uint64_t before_index;
    int before[MAX_TABLE_PIECES];
    std::copy(squares, squares + n_, before);
    before[piece] = origin;
    // Only White's king decides the frame: any other piece moves the number by its weight.
    if (piece == 0)
      before_index = space_.Encode(before);
    else
      before_index = index + std::uint64_t(space_.Weight(piece) * (origin - squares[piece]));
    found[count++] = before_index;
    if (ep_possible_) NotifyEpTwins(mover, before_index, before, lost, ply, out);
  };
  for (int piece = 0; piece < n_; ++piece) {
    if (m_.colour[std::size_t(piece)] != mover) continue;
    int type = m_.type[std::size_t(piece)];
    if (type != PAWN) {
      for (Bitboard origins = Attacks(type, squares[piece], occupied) & ~occupied; origins;
           origins &= origins - 1)
        retract(piece, std::countr_zero(origins));
      continue;
    }
    int one = squares[piece] - PawnForward(mover);
    if (IsLastRank(one) || (occupied & SquareBit(one))) continue;
    retract(piece, one);
    int two = one - PawnForward(mover);
    // A double step that the other side may answer en passant leads to the twin, not here.
    if (Rank(squares[piece]) == DoubleStepRank(mover) && !(occupied & SquareBit(two)) &&
        (!ep_possible_ || FindEpState(side, index, piece) == NONE))
      retract(piece, two);
  }
  std::vector<Cell>& cells = cells_[mover];
  for (int k = 0; k < count; ++k) __builtin_prefetch(&cells[found[k]]);
  for (int k = 0; k < count; ++k)
    Notify(cells[found[k]], lost, ply,
           [&](int at) { out.states.Push(at, StateWord(found[k], mover)); });
}

void Solver::PropagateEp(std::uint32_t id, int ply, BackwardOutput& out) {
  const EpState& state = ep_[id];
  int side = int(state.state & 1);
  int pawn = int(state.key & 7);
  int squares[MAX_TABLE_PIECES];
  space_.Decode(state.state >> 1, squares);
  squares[pawn] -= 2 * PawnForward(side ^ 1);
  int mover = side ^ 1;
  bool lost = EntryByte::IsLoss(state.cell.result);
  std::uint64_t index = space_.Encode(squares);
  Notify(cells_[mover][index], lost, ply,
         [&](int at) { out.states.Push(at, StateWord(index, mover)); });
  NotifyEpTwins(mover, index, squares, lost, ply, out);
}

void Solver::Backward() {
  for (int ply = 0; ply < QUEUE_PLIES; ++ply) {
    for (std::uint32_t word : candidates_.At(ply)) {
      std::int8_t& result = cells_[word & 1][word >> 1].result;
      if (result != UNDECIDED) continue;
      result = EntryByte::Win(ply);
      queue_.Push(ply, word);
    }
    candidates_.Release(ply);
    for (std::uint32_t id : ep_candidates_.At(ply)) {
      std::int8_t& result = ep_[id].cell.result;
      if (result != UNDECIDED) continue;
      result = EntryByte::Win(ply);
      ep_queue_.Push(ply, id);
    }
    ep_candidates_.Release(ply);
    PropagatePly(ply);
  }
}

// Pushes go to later plies only, so the queues of this ply do not grow while they are read.
void Solver::PropagatePly(int ply) {
  std::vector<std::uint32_t>& states = queue_.At(ply);
  std::vector<std::uint32_t>& ep_states = ep_queue_.At(ply);
  constexpr std::size_t WORTH_A_THREAD = 1 << 16;
  std::size_t threads = std::min<std::size_t>(std::size_t(std::max(1, options_.threads)),
                                              1 + states.size() / WORTH_A_THREAD);
  std::vector<BackwardOutput> outputs(threads);
  auto work = [&](std::size_t t) {
    for (std::size_t k = t; k < states.size(); k += threads) Propagate(states[k], ply, outputs[t]);
    for (std::size_t k = t; k < ep_states.size(); k += threads)
      PropagateEp(ep_states[k], ply, outputs[t]);
  };
  RunThreads(threads, work);
  queue_.Release(ply);
  ep_queue_.Release(ply);
  for (BackwardOutput& out : outputs) {
    queue_.Append(out.states);
    ep_queue_.Append(out.ep_states);
  }
}

TableFiles Solver::WriteFiles() {
  TableFiles files{m_.name, m_.id, {}};
  int sides = m_.Symmetric() ? 1 : 2;
  auto write_side = [&](int side) {
    std::vector<std::int8_t>& bytes = files.bytes[side];
    bytes.assign(Descriptors[m_.id].entries[side], EntryByte::ILLEGAL);
    int squares[MAX_TABLE_PIECES];
    for (std::uint64_t index = 0; index < cells_[side].size(); ++index) {
      std::int8_t result = cells_[side][index].result;
      if (result == EntryByte::ILLEGAL) continue;
      space_.Decode(index, squares);
      TableEntry entry =
          EntryIn({m_.id, false}, m_.colour.data(), m_.type.data(), squares, n_, side);
      if (entry.index != NO_INDEX && entry.file_side == side)
        bytes[entry.index] = result == UNDECIDED ? EntryByte::DRAW : result;
    }
  };
  // The two files have nothing in common, so each may have a thread of its own.
  if (sides == 2 && options_.threads > 1) {
    RunThreads(2, [&](std::size_t side) { write_side(int(side)); });
  } else {
    for (int side = 0; side < sides; ++side) write_side(side);
  }
  return files;
}

TableFiles Solver::Run() {
  using Clock = std::chrono::steady_clock;
  auto start = Clock::now();
  auto seconds = [&] {
    return std::to_string(std::chrono::duration<double>(Clock::now() - start).count());
  };
  std::uint64_t size = space_.Size();
  for (int side : {WHITE, BLACK}) cells_[side].assign(size, Cell{});
  Report("Solving " + m_.name + ": " + std::to_string(2 * size) + " states");

  int thread_count = std::max(1, options_.threads);
  std::vector<ForwardOutput> outputs(static_cast<std::size_t>(thread_count));
  for (int side : {WHITE, BLACK}) {
    // Chunks taken in turn keep the threads busy as long as each other.
    constexpr std::uint64_t CHUNK = 1 << 16;
    RunThreads(std::size_t(thread_count), [&](std::size_t t) {
      for (std::uint64_t begin = t * CHUNK; begin < size;
           begin += std::uint64_t(thread_count) * CHUNK)
        ForwardRange(side, begin, std::min(size, begin + CHUNK), outputs[t]);
    });
  }
  for (ForwardOutput& out : outputs) {
    queue_.Append(out.decided);
    candidates_.Append(out.candidates);
    ep_.insert(ep_.end(), out.ep_states.begin(), out.ep_states.end());
    std::vector<EpState>().swap(out.ep_states);
  }
  std::sort(ep_.begin(), ep_.end(),
            [](const EpState& a, const EpState& b) { return a.key < b.key; });
  ep_keys_.reserve(ep_.size());
  for (std::size_t id = 0; id < ep_.size(); ++id) {
    ep_keys_.push_back(ep_[id].key);
    const Cell& cell = ep_[id].cell;
    if (cell.flags & WIN_EXIT)
      ep_candidates_.Push(cell.exit_plies, std::uint32_t(id));
    else if (EntryByte::IsLoss(cell.result))
      ep_queue_.Push(EntryByte::Plies(cell.result), std::uint32_t(id));
  }
  Report("  forward pass done after " + seconds() + " s, " + std::to_string(ep_.size()) +
         " en-passant states");
  Backward();
  Report("  backward pass done after " + seconds() + " s");
  TableFiles files = WriteFiles();
  Report("  " + m_.name + " solved in " + seconds() + " s");
  return files;
}

}  // namespace

std::vector<std::string> TablesAfterExits(const TableMaterial& material) {
  std::set<std::string> names;
  ForEachExit(material, [&](int, int, int, const ExitTable& e) {
    if (e.count > 2 && e.table.id != 0) names.insert(std::string(Descriptors[e.table.id].name));
  });
  return {names.begin(), names.end()};
}

TableFiles SolveTable(const TableMaterial& material, const std::vector<const TableFiles*>& exits,
                      const SolveOptions& options) {
  Solver solver(material, exits, options);
  return solver.Run();
}

}  // namespace NalimovTablebases
