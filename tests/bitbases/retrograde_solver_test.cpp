#include "bitbases/retrograde_solver.h"

#include <algorithm>
#include <filesystem>
#include <random>

#include "bitbases/bitbase_test_support.h"
#include "bitbases/portable_io.h"
#include "bitbases/single_pawn_bitbases_data.h"
#include "bitbases/table_provider.h"
#include "bitbases/tablebase_descriptors.h"
#include "bitbases/tablebases.h"
#include "chess/bitboard.h"
#include "chess/move_generator.h"
#include "support/board_from_fen.h"

using namespace NalimovTablebases;

namespace {

// One directory and one provider for the suite, so that each table is solved once.
struct SharedTables {
  TemporaryDirectory directory;
  TableProvider provider{directory.Path(), {2, nullptr}};
};

SharedTables& Shared() {
  static SharedTables shared;
  return shared;
}

std::shared_ptr<const TableFiles> Table(const std::string& name) {
  return Shared().provider.Provide(name);
}

std::int8_t SeenFromBefore(std::int8_t after) {
  if (EntryByte::IsWin(after)) return EntryByte::Loss(EntryByte::Plies(after) + 1);
  if (EntryByte::IsLoss(after)) return EntryByte::Win(EntryByte::Plies(after) + 1);
  return EntryByte::DRAW;
}

// Tables by id for the check below; a table may stand in for the real one.
using TableSet = std::vector<const TableFiles*>;

std::int8_t Lookup(const Board& board, const TableSet& tables) {
  int colour[MAX_TABLE_PIECES], type[MAX_TABLE_PIECES], square[MAX_TABLE_PIECES], count = 0;
  for (int sq = 0; sq < 64; ++sq)
    if (int piece = board.squares[sq]) {
      colour[count] = piece > 0 ? WHITE : BLACK;
      type[count] = piece > 0 ? piece : -piece;
      square[count++] = sq;
    }
  if (count == 2) return EntryByte::DRAW;
  TableOfMaterial table = FindTable(colour, type, count);
  TableEntry entry = EntryIn(table, colour, type, square, count, board.side_on_move);
  for (const TableFiles* files : tables)
    if (files->id == table.id) return files->At(entry.file_side, entry.index);
  ADD_FAILURE() << "no table for " << MaterialName(colour, type, count);
  return EntryByte::ILLEGAL;
}

// The value of the position by one move of the engine's own move generator and the tables
// behind it; a position with en-passant rights, which no table holds, is looked at one move
// further. A table that agrees with this everywhere is right, given its mates. The bytes order
// the results from the mover's view: quick wins highest, being mated now lowest.
std::int8_t OneMoveDeeper(Board& board, const TableSet& tables) {
  Move moves[MOVE_BUFFER_SIZE];
  Move* end = GenerateMoves(moves, board, GEN_ALL_MOVES | 127);
  if (end == moves) return board.InCheck() ? EntryByte::Loss(0) : EntryByte::DRAW;
  std::int8_t best = EntryByte::Loss(0);
  for (const Move* move = moves; move != end; ++move) {
    board.MakeMove(*move);
    std::int8_t after = board.EnPassant() ? OneMoveDeeper(board, tables) : Lookup(board, tables);
    board.UndoMove(*move);
    best = std::max(best, SeenFromBefore(after));
  }
  return best;
}

// A random legal position of the material without en-passant rights, its pieces on the squares
// from `lowest` up.
Board RandomBoard(const TableMaterial& m, std::mt19937_64& random, int lowest = 0) {
  for (;;) {
    std::int8_t cells[64] = {};
    bool placed = true;
    for (int i = 0; i < m.count && placed; ++i) {
      const int square = lowest + int(random() % std::uint64_t(64 - 2 * lowest));
      const int piece = m.type[std::size_t(i)];
      placed = cells[square] == 0 && !(piece == PAWN && (square < 8 || square >= 56));
      cells[square] = std::int8_t(m.colour[std::size_t(i)] == WHITE ? piece : -piece);
    }
    Board board;
    if (placed && board.Setup(cells, int(random() % 2), 0, 0) && !board.IsOpponentInCheck())
      return board;
  }
}

// Counts random positions of the table whose entry differs from one move deeper.
int Disagreements(const TableFiles& table, const TableSet& tables, int samples, int* decisive) {
  std::mt19937_64 random(table.id);
  int disagreements = 0;
  for (int n = 0; n < samples; ++n) {
    Board board = RandomBoard(*TableMaterial::Of(table.name), random);
    const std::int8_t stored = Lookup(board, tables), deeper = OneMoveDeeper(board, tables);
    *decisive += stored != EntryByte::DRAW;
    if (stored != deeper && ++disagreements <= 5)
      ADD_FAILURE() << table.name << ": stored " << int(stored) << ", one move deeper "
                    << int(deeper) << " at " << FenOf(board);
  }
  return disagreements;
}

// A stand-in for a table: every position in it is mated, so whoever leaves the smaller table
// by a capture or a promotion wins at once.
TableFiles MatedEverywhere(const std::string& name) {
  TableFiles table{name, TableIdOf(name), {}};
  for (int side = 0; side < 2; ++side)
    table.bytes[side].assign(Descriptors[table.id].entries[side], EntryByte::Loss(0));
  return table;
}

}  // namespace

// The built-in single pawn table is made from the rules alone; the solver reaches its results by
// another road (distance to mate over all material), so agreement on every position checks both.
TEST(RetrogradeSolver, KingAndPawnAgainstKingOverEveryPlacementAndTheBuiltInTable) {
  using BraskBitbases::SinglePawnBitbases;
  const SolvedEndgame kpk{*TableMaterial::Of("kpk"), Table("kpk")};
  int legal = 0, pawn_side_wins = 0, mismatches = 0;
  for (int side : {WHITE, BLACK})
    for (int wk = 0; wk < 64; ++wk)
      for (int bk = 0; bk < 64; ++bk)
        for (int pawn = 0; pawn < 64; ++pawn) {
          const int squares[3] = {wk, bk, pawn};
          const bool edge = pawn < A2 || pawn > H7;  // the built-in table holds no draw there
          const PlyResult result = edge ? PlyResult(EntryByte::ILLEGAL) : kpk.At(squares, side);
          const bool draw = (SinglePawnBitbases[side][pawn][wk] & SquareBit(bk)) != 0;
          mismatches += draw != (!result.IsIllegal() && result.IsDraw());
          if (result.IsIllegal()) continue;
          ++legal;
          pawn_side_wins += side == WHITE ? result.IsWin() : result.IsLoss();
        }
  // The counts of an earlier solver that numbered positions without any symmetry.
  EXPECT_EQ(legal, 331352);
  EXPECT_EQ(pawn_side_wins, 222564);
  EXPECT_EQ(mismatches, 0);
}

TEST(RetrogradeSolver, TablesAgreeWithOneMoveDeeperByTheEngineMoveGenerator) {
  // Making one table may let the provider drop another: the test keeps its own.
  std::vector<std::shared_ptr<const TableFiles>> held;
  TableSet tables;
  for (std::string name : {"kqk", "krk", "kbk", "knk", "kpk", "kqkr"}) {
    held.push_back(Table(name));
    tables.push_back(held.back().get());
  }
  // The longest mates are the published ones (none in kbk and knk).
  const int longest_mate[] = {10, 16, 0, 0, 28, 35};
  for (std::size_t t = 0; t < tables.size(); ++t) {
    int decisive = 0, longest = 0;
    EXPECT_EQ(Disagreements(*tables[t], tables, 3000, &decisive), 0) << tables[t]->name;
    EXPECT_EQ(decisive > 0, longest_mate[t] > 0) << tables[t]->name;
    for (const std::vector<std::int8_t>& file : tables[t]->bytes)
      for (std::int8_t entry : file)
        if (EntryByte::IsWin(entry)) longest = std::max(longest, EntryByte::Moves(entry));
    EXPECT_EQ(longest, longest_mate[t]) << tables[t]->name;
  }
}

TEST(RetrogradeSolver, PawnsOnBothSidesWithEnPassantAndPromotions) {
  // With every capture and promotion winning at once, the race of the pawns decides nearly
  // everything, and a double step beside an enemy pawn loses to the capture en passant.
  std::vector<TableFiles> stand_ins;
  for (std::string name : TablesAfterExits(*TableMaterial::Of("kpkp")))
    stand_ins.push_back(MatedEverywhere(name));
  TableSet exits;
  for (const TableFiles& table : stand_ins) exits.push_back(&table);
  TableFiles kpkp = SolveTable(*TableMaterial::Of("kpkp"), exits, {2, nullptr});
  TableSet tables = exits;
  tables.push_back(&kpkp);
  int decisive = 0;
  EXPECT_EQ(Disagreements(kpkp, tables, 8000, &decisive), 0);
  EXPECT_GT(decisive, 4000);

  // White Kh1, pawn e2, Black Ka8, pawn d4: the double step loses at once to the capture en
  // passant, and the table knows it.
  std::int8_t cells[64] = {};
  cells[H1] = KING, cells[E2] = PAWN, cells[A8] = -KING, cells[D4] = -PAWN;
  Board board;
  ASSERT_TRUE(board.Setup(cells, WHITE, 0, 0));
  EXPECT_EQ(Lookup(board, tables), OneMoveDeeper(board, tables));
}

TEST(RetrogradeSolver, ReaderAnswersWhatTheSolverFoundFromPlainAndCompressedFiles) {
  TemporaryDirectory compressed;
  for (std::string name : {"kqk", "krk", "kpk", "kqkr"}) {
    Table(name);
    for (std::string ext : {".nbw", ".nbb"})
      WriteBytes(compressed.File(name + ext + ".emd"),
                 CompressTablebase(ReadBytes(Shared().directory.File(name + ext))));
  }
  std::mt19937_64 random(5);
  for (std::string path : {Shared().directory.Path(), compressed.Path()}) {
    ASSERT_GE(BraskTablebases::InitTablebases(path, 1 << 20), 4);
    for (std::string name : {"kqk", "krk", "kpk", "kqkr"}) {
      std::shared_ptr<const TableFiles> table = Table(name);
      int mismatches = 0;
      for (int n = 0; n < 2000; ++n) {
        const Board board = RandomBoard(*TableMaterial::Of(name), random, 8);
        const std::int8_t entry = Lookup(board, {table.get()});
        int score = 1;
        ASSERT_EQ(BraskTablebases::ProbeTablebase(board, &score), BraskTablebases::TB_FOUND);
        mismatches += score != (entry == 0  ? 0
                                : entry > 0 ? 2 * (entry + 32640) - 32767
                                            : 2 * (entry - 32640) + 32765);
      }
      EXPECT_EQ(mismatches, 0) << name << " in " << path;
    }
  }
}

// The provider refuses unknown names and makes a table again whose file was cut short; a failed
// write leaves no file under the final name, nor a part file.
TEST(RetrogradeSolver, TablesOnDiskAreCheckedAndWrittenWhole) {
  TemporaryDirectory directory;
  TableProvider provider(directory.Path(), {1, nullptr});
  EXPECT_THROW(provider.Provide("kqqqk"), std::invalid_argument);
  EXPECT_THROW(provider.Provide("nonsense"), std::invalid_argument);
  std::shared_ptr<const TableFiles> made = provider.Provide("kqk");
  std::filesystem::resize_file(directory.File("kqk.nbw"), 1000);
  EXPECT_FALSE(LoadTableFiles(directory.Path(), "kqk").has_value());
  EXPECT_EQ(TableProvider(directory.Path(), {1, nullptr}).Provide("kqk")->bytes[0], made->bytes[0]);
  EXPECT_EQ(std::filesystem::file_size(directory.File("kqk.nbw")), made->bytes[0].size());

  TemporaryDirectory blocked;
  std::filesystem::create_directories(blocked.File("kqk.nbb") + "/x");  // the rename must fail
  EXPECT_THROW(WriteTableFiles(blocked.Path(), *made), BraskPortableIO::IOException);
  EXPECT_TRUE(std::filesystem::is_directory(blocked.File("kqk.nbb")));
  for (const auto& entry : std::filesystem::directory_iterator(blocked.Path()))
    EXPECT_EQ(entry.path().string().find(".part"), std::string::npos) << entry.path();
}

TEST(RetrogradeSolver, MissingOrBrokenTablesToLeadIntoAreErrors) {
  TableMaterial kqkr = *TableMaterial::Of("kqkr");
  EXPECT_EQ(TablesAfterExits(kqkr), (std::vector<std::string>{"kqk", "krk"}));
  TableFiles kqk = MatedEverywhere("kqk");
  EXPECT_THROW(SolveTable(kqkr, {&kqk}, {2, nullptr}), std::runtime_error);
  // A table that has no result for positions a capture reaches is no table to build on.
  TableFiles broken = MatedEverywhere("krk");
  for (std::vector<std::int8_t>& file : broken.bytes)
    std::fill(file.begin(), file.end(), EntryByte::ILLEGAL);
  EXPECT_THROW(SolveTable(kqkr, {&kqk, &broken}, {2, nullptr}), std::runtime_error);
}
