#include "bitbases/retrograde_solver.h"

#include <algorithm>
#include <iostream>

#include "bitbases/nalimov_index.h"
#include "bitbases/portable_io.h"
#include "bitbases/tablebase_descriptors.h"
#include "chess/move_generator.h"

namespace NalimovTablebases {

namespace {

constexpr std::int16_t UNDECIDED = INT16_MAX;
constexpr int MAX_SOLVER_PIECES = 4;
constexpr std::string_view PIECE_LETTERS = " pnbrqk";

// Per position bookkeeping of the solver, besides the result.
constexpr std::uint8_t DRAW_EXIT = 1;   // a capture or promotion reaches a draw
constexpr std::uint8_t WIN_EXIT = 2;    // ... or a win: this position is won, at some distance
constexpr std::uint8_t PROPAGATED = 4;  // its predecessors have been told

int TableId(std::string_view name) {
  for (int id = 1; id <= TABLE_COUNT; ++id)
    if (Descriptors[id].name == name) return id;
  return 0;
}

std::string NameOf(const std::vector<int>& colours, const std::vector<int>& types, int white) {
  std::string side_letters[2];
  for (std::size_t i = 0; i < types.size(); ++i)
    if (types[i] != KING) side_letters[colours[i]] += PIECE_LETTERS[types[i]];
  for (std::string& letters : side_letters)
    std::sort(letters.begin(), letters.end(), [](char a, char b) {
      return PIECE_LETTERS.find(a) > PIECE_LETTERS.find(b);
    });
  return "k" + side_letters[white] + "k" + side_letters[white ^ 1];
}

struct Step {
  int file, rank;
};
constexpr Step KING_STEPS[8] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
constexpr Step KNIGHT_STEPS[8] = {{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};

// Squares a piece of the type could have come from to reach square without capturing: the
// same geometry as its moves, on empty squares. Pawns are handled by the caller.
template <typename Visit>
void ForEachOrigin(int type, int square, Bitboard occupied, Visit visit) {
  auto walk = [&](const Step* steps, int count, bool slide) {
    for (int d = 0; d < count; ++d) {
      int file = File(square), rank = Rank(square);
      for (;;) {
        file += steps[d].file, rank += steps[d].rank;
        if (file < 0 || file > 7 || rank < 0 || rank > 7) break;
        int origin = MakeSquare(file, rank);
        if (occupied & SquareBit(origin)) break;
        visit(origin);
        if (!slide) break;
      }
    }
  };
  switch (type) {
    case KNIGHT: walk(KNIGHT_STEPS, 8, false); break;
    case BISHOP: walk(KING_STEPS + 4, 4, true); break;
    case ROOK: walk(KING_STEPS, 4, true); break;
    case QUEEN: walk(KING_STEPS, 8, true); break;
    case KING: walk(KING_STEPS, 8, false); break;
    default: break;
  }
}

}  // namespace

std::uint8_t PlyResult::FileByte() const {
  if (IsIllegal()) return 127;
  if (IsDraw()) return 0;
  return std::uint8_t(IsWin() ? 127 - Moves() : Moves() - 126);
}

SolverMaterial SolverMaterial::FromName(const std::string& name) {
  SolverMaterial m{name, {WHITE, BLACK}, {KING, KING}};
  int colour = WHITE;
  for (std::size_t i = 1; i < name.size(); ++i) {
    if (name[i] == 'k') {
      colour = BLACK;
      continue;
    }
    m.colour.push_back(colour);
    m.type.push_back(int(PIECE_LETTERS.find(name[i])));
  }
  return m;
}

std::uint64_t SolvedEndgame::DenseIndex(const int* squares, int side) const {
  std::uint64_t index = std::uint64_t(side);
  for (int i = material.Count() - 1; i >= 0; --i) index = index << 6 | std::uint64_t(squares[i]);
  return index;
}

void SolvedEndgame::SquaresOf(std::uint64_t dense, int* squares, int* side) const {
  for (int i = 0; i < material.Count(); ++i, dense >>= 6) squares[i] = int(dense & 63);
  *side = int(dense);
}

const SolvedEndgame& RetrogradeSolver::Solve(const std::string& name) {
  auto found = solved_.find(name);
  if (found != solved_.end()) return *found->second;
  auto endgame = std::make_unique<SolvedEndgame>();
  endgame->material = SolverMaterial::FromName(name);
  SolveInto(*endgame);
  return *(solved_[name] = std::move(endgame));
}

PlyResult RetrogradeSolver::ResultAfterExit(const std::vector<int>& colours,
                                            const std::vector<int>& types,
                                            const std::vector<int>& squares, int side) {
  if (types.size() == 2) return PlyResult::Draw();
  // The smaller endgame as the table list has it, with the colours reversed if need be.
  int white = WHITE;
  std::string name = NameOf(colours, types, WHITE);
  if (TableId(name) == 0 && TableId(NameOf(colours, types, BLACK)) != 0) {
    white = BLACK;
    name = NameOf(colours, types, BLACK);
  }
  const SolvedEndgame& smaller = Solve(name);
  const SolverMaterial& m = smaller.material;
  int placed[MAX_SOLVER_PIECES];
  std::vector<bool> used(types.size(), false);
  for (int j = 0; j < m.Count(); ++j)
    for (std::size_t i = 0; i < types.size(); ++i)
      if (!used[i] && types[i] == m.type[j] && (colours[i] ^ white) == m.colour[j]) {
        used[i] = true;
        placed[j] = squares[i] ^ (white == BLACK ? 56 : 0);
        break;
      }
  return smaller.At(placed, side ^ white);
}

void RetrogradeSolver::SolveInto(SolvedEndgame& endgame) {
  const SolverMaterial& m = endgame.material;
  const int n = m.Count();
  const std::uint64_t states = std::uint64_t(2) << (6 * n);
  endgame.results.assign(states, UNDECIDED);
  std::vector<std::uint8_t> moves_left(states, 0), flags(states, 0), loss_exit(states, 0);
  std::vector<std::vector<std::uint32_t>> queue(2);
  auto push = [&](int ply, std::uint64_t state) {
    if (std::size_t(ply) >= queue.size()) queue.resize(std::size_t(ply) + 1);
    queue[std::size_t(ply)].push_back(std::uint32_t(state));
  };
  if (verbose_) std::cout << "Solving " << m.name << "..." << std::endl;

  // Forward: legality, the moves that stay in this endgame, and the results of those that leave.
  Board board;
  Move buffer[MOVE_BUFFER_SIZE];
  int squares[MAX_SOLVER_PIECES], side;
  for (std::uint64_t state = 0; state < states; ++state) {
    endgame.SquaresOf(state, squares, &side);
    std::int8_t cells[64] = {};
    bool overlap = false;
    for (int i = 0; i < n; ++i) {
      overlap |= cells[squares[i]] != 0;
      cells[squares[i]] = std::int8_t(m.colour[i] == WHITE ? m.type[i] : -m.type[i]);
    }
    if (overlap || !board.Setup(cells, side, 0, 0)) {
      endgame.results[state] = PlyResult::ILLEGAL;
      continue;
    }
    Move* end = GenerateMoves(buffer, board, GEN_ALL_MOVES | 127);
    int best_win = INT16_MAX, worst_loss = 0, inside = 0;
    for (const Move* move = buffer; move != end; ++move) {
      if (!IsCapture(*move) && !IsPromotion(*move)) {
        ++inside;
        continue;
      }
      std::vector<int> colours, types, places;
      for (int i = 0; i < n; ++i) {
        if (squares[i] == To(*move) && IsCapture(*move)) continue;
        colours.push_back(m.colour[i]);
        bool moved = squares[i] == From(*move);
        types.push_back(moved && IsPromotion(*move) ? PromotionType(*move) : m.type[i]);
        places.push_back(moved ? To(*move) : squares[i]);
      }
      PlyResult after = ResultAfterExit(colours, types, places, side ^ 1);
      if (after.IsLoss()) best_win = std::min(best_win, after.Plies() + 1);
      else if (after.IsWin()) worst_loss = std::max(worst_loss, after.Plies() + 1);
      else flags[state] |= DRAW_EXIT;
    }
    moves_left[state] = std::uint8_t(inside);
    loss_exit[state] = std::uint8_t(worst_loss);
    if (best_win != INT16_MAX) {
      flags[state] |= WIN_EXIT;
      push(best_win, state);  // a candidate: a faster win inside may come first
    } else if (end == buffer) {
      endgame.results[state] = board.InCheck() ? PlyResult::LossIn(0).Code() : 0;
      if (board.InCheck()) push(0, state);
    } else if (inside == 0) {
      endgame.results[state] = (flags[state] & DRAW_EXIT) ? 0 : PlyResult::LossIn(worst_loss).Code();
      if (!(flags[state] & DRAW_EXIT)) push(worst_loss, state);
    }
  }

  // Backward, one ply at a time: a loss makes every predecessor a win one ply later; a win
  // takes one way out from each predecessor, and the last way out makes it a loss.
  for (std::size_t ply = 0; ply < queue.size(); ++ply)
    for (std::size_t k = 0; k < queue[ply].size(); ++k) {
      std::uint32_t state = queue[ply][k];
      std::int16_t& result = endgame.results[state];
      if (result == UNDECIDED) result = PlyResult::WinIn(int(ply)).Code();
      if ((flags[state] & PROPAGATED) || PlyResult(result).Plies() != int(ply)) continue;
      flags[state] |= PROPAGATED;
      bool lost = PlyResult(result).IsLoss();

      endgame.SquaresOf(state, squares, &side);
      int mover = side ^ 1;
      Bitboard occupied = 0;
      for (int i = 0; i < n; ++i) occupied |= SquareBit(squares[i]);
      auto visit_predecessor = [&](int piece, int origin) {
        int before[MAX_SOLVER_PIECES];
        std::copy(squares, squares + n, before);
        before[piece] = origin;
        std::uint64_t t = endgame.DenseIndex(before, mover);
        std::int16_t& r = endgame.results[t];
        if (r != UNDECIDED) return;
        if (lost) {
          r = PlyResult::WinIn(int(ply) + 1).Code();
          push(int(ply) + 1, t);
        } else if (!(flags[t] & WIN_EXIT) && --moves_left[t] == 0 && !(flags[t] & DRAW_EXIT)) {
          int at = std::max(int(ply) + 1, int(loss_exit[t]));
          r = PlyResult::LossIn(at).Code();
          push(at, t);
        }
      };
      for (int i = 0; i < n; ++i) {
        if (m.colour[i] != mover) continue;
        if (m.type[i] != PAWN) {
          ForEachOrigin(m.type[i], squares[i], occupied,
                        [&](int origin) { visit_predecessor(i, origin); });
          continue;
        }
        int back = mover == WHITE ? -8 : 8;
        int one = squares[i] + back;
        if (one < A2 || one > H7 || (occupied & SquareBit(one))) continue;
        visit_predecessor(i, one);
        int two = one + back;
        bool from_home = mover == WHITE ? Rank(two) == 1 : Rank(two) == 6;
        if (from_home && !(occupied & SquareBit(two))) visit_predecessor(i, two);
      }
    }
  for (std::int16_t& result : endgame.results)
    if (result == UNDECIDED) result = 0;
}

bool RetrogradeSolver::WriteTables(const std::string& name, const std::string& directory) {
  int id = TableId(name);
  if (id == 0) return false;
  const SolvedEndgame& endgame = Solve(name);
  const int n = endgame.material.Count();
  const int sides = Descriptors[id].IsSymmetric() ? 1 : 2;
  for (int file_side = 0; file_side < sides; ++file_side) {
    std::vector<std::uint8_t> bytes(Descriptors[id].entries[file_side], 127);
    IndexFunction index_of = GetIndexFunction(id, file_side);
    int squares[MAX_SOLVER_PIECES], side;
    for (std::uint64_t state = 0; state < endgame.results.size(); ++state) {
      PlyResult result(endgame.results[state]);
      endgame.SquaresOf(state, squares, &side);
      if (side != file_side || result.IsIllegal()) continue;
      int lists[2][SQUARE_LIST_SIZE] = {};
      int used[2][6] = {};
      // Like pieces stand in the dense index in both orders; write the position once, sorted.
      bool sorted = true;
      for (int i = 0; i < n; ++i) {
        int c = endgame.material.colour[i], t = endgame.material.type[i];
        if (t == KING) {
          lists[c][KING_SLOT] = squares[i];
          continue;
        }
        int slot = FirstSlot(t) + used[c][t]++;
        if (used[c][t] > 1 && lists[c][slot - 1] > squares[i]) sorted = false;
        lists[c][slot] = squares[i];
      }
      if (!sorted) continue;
      std::uint64_t index = index_of(lists[WHITE], lists[BLACK], NO_EN_PASSANT, false);
      if (index < bytes.size()) bytes[index] = result.FileByte();
    }
    std::string path = directory;
    if (!path.empty() && path.back() != '/') path += '/';
    path += name + (file_side == 0 ? ".nbw" : ".nbb");
    try {
      BraskPortableIO::WriteFile(path, bytes.data(), bytes.size());
    } catch (const BraskPortableIO::IOException&) {
      return false;
    }
    if (verbose_) std::cout << "Wrote " << path << std::endl;
  }
  return true;
}

}  // namespace NalimovTablebases
