#include "bitbases/retrograde_solver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "bitbases/nalimov_index.h"
#include "bitbases/portable_io.h"
#include "bitbases/table_provider.h"
#include "bitbases/tablebase_descriptors.h"
#include "bitbases/tablebases.h"
#include "chess/board.h"
#include "chess/move_generator.h"
#include "support/datacomp_writer.h"
#include "support/temporary_directory.h"

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

int LongestWin(const TableFiles& table) {
  int longest = 0;
  for (const std::vector<std::int8_t>& file : table.bytes)
    for (std::int8_t entry : file)
      if (EntryByte::IsWin(entry)) longest = std::max(longest, EntryByte::Moves(entry));
  return longest;
}

// Results ordered from the mover's view: quick wins first, slow losses before quick ones.
int Goodness(std::int8_t entry) {
  if (EntryByte::IsWin(entry)) return 1000 - EntryByte::Plies(entry);
  if (EntryByte::IsLoss(entry)) return -1000 + EntryByte::Plies(entry);
  return 0;
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
// further. A table that agrees with this everywhere is right, given its mates.
std::int8_t OneMoveDeeper(Board& board, const TableSet& tables) {
  Move moves[MOVE_BUFFER_SIZE];
  Move* end = GenerateMoves(moves, board, GEN_ALL_MOVES | 127);
  if (end == moves) return board.InCheck() ? EntryByte::Loss(0) : EntryByte::DRAW;
  std::int8_t best = EntryByte::Loss(0);
  for (const Move* move = moves; move != end; ++move) {
    board.MakeMove(*move);
    std::int8_t after = board.EnPassant() ? OneMoveDeeper(board, tables) : Lookup(board, tables);
    board.UndoMove(*move);
    std::int8_t seen = SeenFromBefore(after);
    if (Goodness(seen) > Goodness(best)) best = seen;
  }
  return best;
}

std::string Placement(const Board& board) {
  std::string text;
  for (int sq = 0; sq < 64; ++sq)
    if (int piece = board.squares[sq])
      text += std::string(1, SignedPieceLetters[piece + 6]) + char('a' + File(sq)) +
              char('1' + Rank(sq)) + " ";
  return text + (board.side_on_move == WHITE ? "w" : "b");
}

// Counts random positions of the table whose entry differs from one move deeper.
int Disagreements(const TableFiles& table, const TableSet& tables, int samples, int* decisive) {
  TableMaterial m = *TableMaterial::Of(table.name);
  std::mt19937_64 random(table.id);
  int disagreements = 0;
  for (int n = 0; n < samples;) {
    std::int8_t cells[64] = {};
    int square[MAX_TABLE_PIECES];
    bool placed = true;
    for (int i = 0; i < m.count && placed; ++i) {
      square[i] = int(random() % 64);
      bool pawn = m.type[std::size_t(i)] == PAWN;
      placed = cells[square[i]] == 0 && !(pawn && (square[i] < 8 || square[i] >= 56));
      int piece = m.type[std::size_t(i)];
      cells[square[i]] = std::int8_t(m.colour[std::size_t(i)] == WHITE ? piece : -piece);
    }
    int side = int(random() % 2);
    Board board;
    if (!placed || !board.Setup(cells, side, 0, 0) || board.IsOpponentInCheck()) continue;
    ++n;
    std::int8_t stored = Lookup(board, tables);
    std::int8_t deeper = OneMoveDeeper(board, tables);
    *decisive += stored != EntryByte::DRAW;
    if (stored != deeper) {
      if (++disagreements <= 5)
        ADD_FAILURE() << table.name << " side " << side << ": stored " << int(stored)
                      << ", one move deeper " << int(deeper) << " at " << Placement(board);
    }
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

std::vector<std::uint8_t> ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace

TEST(RetrogradeSolver, EntryBytesOfTheFileFormat) {
  struct Case {
    std::int8_t entry;
    int plies;
    int moves;
  };
  // Win in one move is the highest byte, being mated now the lowest.
  for (Case c : {Case{126, 1, 1}, Case{117, 19, 10}, Case{1, 251, 126}, Case{-126, 0, 0},
                 Case{-117, 18, 9}, Case{-1, 250, 125}}) {
    EXPECT_EQ(EntryByte::Plies(c.entry), c.plies) << int(c.entry);
    EXPECT_EQ(EntryByte::Moves(c.entry), c.moves) << int(c.entry);
    EXPECT_EQ(c.plies % 2 ? EntryByte::Win(c.plies) : EntryByte::Loss(c.plies), c.entry);
  }
  EXPECT_FALSE(EntryByte::IsWin(EntryByte::ILLEGAL));
  EXPECT_FALSE(EntryByte::IsLoss(EntryByte::DRAW));
}

TEST(RetrogradeSolver, LongestMatesAreThePublishedOnes) {
  for (auto [name, moves] : {std::pair{"kqk", 10}, {"krk", 16}, {"kpk", 28}, {"kqkr", 35}})
    EXPECT_EQ(LongestWin(*Table(name)), moves) << name;
}

TEST(RetrogradeSolver, KingAndPawnAgainstKingCountedOverEveryPlacement) {
  // Every placement, both mirror images of each: the counts of an earlier solver that numbered
  // positions without any symmetry.
  const TableFiles& kpk = *Table("kpk");
  int colour[3] = {WHITE, BLACK, WHITE}, type[3] = {KING, KING, PAWN};
  int legal = 0, pawn_side_wins = 0;
  for (int side : {WHITE, BLACK})
    for (int wk = 0; wk < 64; ++wk)
      for (int bk = 0; bk < 64; ++bk)
        for (int pawn = A2; pawn <= H7; ++pawn) {
          if (wk == bk || pawn == wk || pawn == bk) continue;
          int square[3] = {wk, bk, pawn};
          TableEntry entry = EntryIn({kpk.id, false}, colour, type, square, 3, side);
          std::int8_t result = kpk.At(entry.file_side, entry.index);
          if (result == EntryByte::ILLEGAL) continue;
          ++legal;
          pawn_side_wins += side == WHITE ? EntryByte::IsWin(result) : EntryByte::IsLoss(result);
        }
  EXPECT_EQ(legal, 331352);
  EXPECT_EQ(pawn_side_wins, 222564);
}

TEST(RetrogradeSolver, TablesAgreeWithOneMoveDeeperByTheEngineMoveGenerator) {
  // Making one table may let the provider drop another: the test keeps its own.
  std::vector<std::shared_ptr<const TableFiles>> held;
  TableSet tables;
  for (std::string name : {"kqk", "krk", "kbk", "knk", "kpk", "kqkr"}) {
    held.push_back(Table(name));
    tables.push_back(held.back().get());
  }
  for (const TableFiles* table : tables) {
    int decisive = 0;
    EXPECT_EQ(Disagreements(*table, tables, 3000, &decisive), 0) << table->name;
    if (table->name != "kbk" && table->name != "knk") {
      EXPECT_GT(decisive, 0) << table->name;
    }
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

  // White Kh1, pawn e4 (just from e2), Black Ka8, pawn d4, Black on move: with the right to take
  // en passant Black wins at once; without it there is no capture at all.
  std::int8_t cells[64] = {};
  cells[H1] = KING, cells[E4] = PAWN, cells[A8] = -KING, cells[D4] = -PAWN;
  Board board;
  ASSERT_TRUE(board.Setup(cells, BLACK, E3, 0));
  EXPECT_EQ(OneMoveDeeper(board, tables), EntryByte::Win(1));
  ASSERT_TRUE(board.Setup(cells, BLACK, 0, 0));
  EXPECT_NE(Lookup(board, tables), EntryByte::Win(1));
  // So from e2 the double step loses at once, and the table knows it.
  cells[E4] = 0, cells[E2] = PAWN;
  ASSERT_TRUE(board.Setup(cells, WHITE, 0, 0));
  EXPECT_EQ(Lookup(board, tables), OneMoveDeeper(board, tables));
}

TEST(RetrogradeSolver, ReaderAnswersWhatTheSolverFoundFromPlainAndCompressedFiles) {
  TemporaryDirectory compressed;
  for (std::string name : {"kqk", "krk", "kpk", "kqkr"}) {
    Table(name);
    for (std::string ext : {".nbw", ".nbb"})
      WriteBytes(compressed.File(name + ext + ".emd"),
                 CompressTablebase(ReadAll(Shared().directory.File(name + ext))));
  }
  std::mt19937_64 random(5);
  for (std::string path : {Shared().directory.Path(), compressed.Path()}) {
    ASSERT_GE(BraskTablebases::InitTablebases(path, 1 << 20), 4);
    for (std::string name : {"kqk", "krk", "kpk", "kqkr"}) {
      std::shared_ptr<const TableFiles> table = Table(name);
      TableMaterial m = *TableMaterial::Of(name);
      int mismatches = 0;
      for (int n = 0; n < 2000; ++n) {
        std::int8_t cells[64] = {};
        bool placed = true;
        for (int i = 0; i < m.count && placed; ++i) {
          int square = int(random() % 48) + 8;
          placed = cells[square] == 0;
          cells[square] = std::int8_t(m.colour[std::size_t(i)] == WHITE ? m.type[std::size_t(i)]
                                                                        : -m.type[std::size_t(i)]);
        }
        Board board;
        if (!placed || !board.Setup(cells, int(random() % 2), 0, 0) || board.IsOpponentInCheck())
          continue;
        std::int8_t entry = Lookup(board, {table.get()});
        int score = 1;
        ASSERT_EQ(BraskTablebases::ProbeTablebase(board, &score), BraskTablebases::TB_FOUND);
        int expected = entry == 0  ? 0
                       : entry > 0 ? 2 * (entry + 32640) - 32767
                                   : 2 * (entry - 32640) + 32765;
        mismatches += score != expected;
      }
      EXPECT_EQ(mismatches, 0) << name << " in " << path;
    }
  }
}

TEST(RetrogradeSolver, ProviderReadsTablesItFindsAndRefusesUnknownNames) {
  TemporaryDirectory directory;
  TableProvider provider(directory.Path(), {1, nullptr});
  EXPECT_THROW(provider.Provide("kqqqk"), std::invalid_argument);
  EXPECT_THROW(provider.Provide("nonsense"), std::invalid_argument);
  // A file cut short is no table: it is made again.
  std::shared_ptr<const TableFiles> made = provider.Provide("kqk");
  std::filesystem::resize_file(directory.File("kqk.nbw"), 1000);
  EXPECT_FALSE(LoadTableFiles(directory.Path(), "kqk").has_value());
  TableProvider again(directory.Path(), {1, nullptr});
  EXPECT_EQ(again.Provide("kqk")->bytes[0], made->bytes[0]);
  EXPECT_EQ(std::filesystem::file_size(directory.File("kqk.nbw")), Descriptors[5].entries[0]);
}

TEST(RetrogradeSolver, AFailedWriteLeavesNoFileUnderTheFinalName) {
  TemporaryDirectory directory;
  const TableFiles& kqk = *Table("kqk");
  // The Black file's final name is taken by a directory, so that its rename fails.
  std::filesystem::create_directories(directory.File("kqk.nbb") + "/x");
  EXPECT_THROW(WriteTableFiles(directory.Path(), kqk), BraskPortableIO::IOException);
  EXPECT_TRUE(std::filesystem::is_directory(directory.File("kqk.nbb")));
  for (const auto& entry : std::filesystem::directory_iterator(directory.Path()))
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
