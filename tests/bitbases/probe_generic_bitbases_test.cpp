#include "bitbases/probe_generic_bitbases.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "bitbases/bit_array.h"
#include "bitbases/bitbase_test_support.h"
#include "bitbases/generic_bitbase_index.h"
#include "support/board_from_fen.h"

using namespace BraskBitbases;

namespace {

constexpr int WIN = GENERIC_WIN_SCORE;
constexpr std::size_t NO_LIMIT = 0;

// Indices worked out by hand. kr_k: white king b1, black king a3, white rook h8.
constexpr std::uint32_t KRK_WHITE_ON_MOVE = (1 * 64 + 16) * 256 + (0 + 2 * 63) * 2;
constexpr std::uint32_t KRK_BLACK_ON_MOVE = KRK_WHITE_ON_MOVE + 2;
// kq_kr: white king b1, black king a3, black rook c3, white queen h8, White on move.
constexpr std::uint32_t KQKR_WHITE_ON_MOVE = ((1 * 64 + 16) * 64 + 18) * 256 + (0 + 2 * 63) * 2;

// kn_kp: black pawn b5, white king a1, black king h8, white knight d4, White on move.
constexpr std::uint32_t KNKP_WHITE_ON_MOVE = ((13 * 64 + 0) * 64 + 63) * 256 + (0 + 2 * 27) * 2;

struct ProbeCase {
  const char* fen;
  int result;
  int score;
};

class HandlerTableTest : public BitbaseTest {
 protected:
  void Save(const std::string& name, int pieces, int pawns,
            std::initializer_list<std::pair<std::uint32_t, int>> entries = {}) {
    BitArray array(ClassBits(pieces, pawns));
    for (auto [index, value] : entries) array.Set2(index, value);
    array.Save(directory_.File(name + ".bgb"));
  }
  void Build(std::size_t limit = NO_LIMIT) {
    BuildHandlerTable(EnumerateEndgamesUpTo(4), limit, directory_.Path());
  }
  static void ExpectProbes(const std::vector<ProbeCase>& cases) {
    for (const ProbeCase& c : cases) {
      int score = 12345;
      EXPECT_EQ(ProbeBitbases(BoardFromFen(c.fen), &score), c.result) << c.fen;
      if (c.result == BITBASE_FOUND) {
        EXPECT_EQ(score, c.score) << c.fen;
      }
    }
  }

  TemporaryDirectory directory_;
};

}  // namespace

TEST_F(HandlerTableTest, AnswersWithoutAnyFile) {
  Build();
  ExpectProbes({
      {"8/8/8/8/8/8/8/K6k w - - 0 1", BITBASE_FOUND, 0},
      {"8/4k3/8/4K3/4P3/8/8/8 w - - 0 1", BITBASE_FOUND, 0},
      {"8/4k3/8/4K3/4P3/8/8/8 b - - 0 1", BITBASE_FOUND, -(32687 + 4 * 3)},
      {"4k3/8/4K3/4P3/8/8/8/8 w - - 0 1", BITBASE_FOUND, 32687 + 4 * 4},
      {"k7/8/K7/P7/8/8/8/8 b - - 0 1", BITBASE_FOUND, 0},
      // The same with colours exchanged.
      {"8/8/8/4p3/4k3/8/4K3/8 b - - 0 1", BITBASE_FOUND, 0},
      {"8/8/8/4p3/4k3/8/4K3/8 w - - 0 1", BITBASE_FOUND, -(32687 + 4 * 3)},
      {"8/8/8/8/4p3/4k3/8/4K3 b - - 0 1", BITBASE_FOUND, 32687 + 4 * 4},
      // No file, or too many pieces.
      {"8/8/8/8/8/k7/8/1K5R w - - 0 1", BITBASE_NOT_FOUND, 0},
      {"4k3/8/8/8/8/8/PPPPPPPP/4K3 w - - 0 1", BITBASE_NOT_FOUND, 0},
      {"4k3/pp6/8/8/8/8/PP6/4K3 w - - 0 1", BITBASE_NOT_FOUND, 0},
  });
}

TEST_F(HandlerTableTest, OneFileAnswersBothColourings) {
  Save("kr_k", 3, 0, {{KRK_WHITE_ON_MOVE, 3}, {KRK_BLACK_ON_MOVE, 1}});
  Build();
  ExpectProbes({
      {"7R/8/8/8/8/k7/8/1K6 w - - 0 1", BITBASE_FOUND, WIN},
      {"7R/8/8/8/8/k7/8/1K6 b - - 0 1", BITBASE_FOUND, WIN},  // the file says Black wins
      {"6K1/8/7k/8/8/8/8/R7 w - - 0 1", BITBASE_FOUND, WIN},  // both flips of the quadrant rule
      {"1k6/8/K7/8/8/8/8/7r b - - 0 1", BITBASE_FOUND, WIN},  // colours exchanged
      {"1k6/8/K7/8/8/8/8/7r w - - 0 1", BITBASE_FOUND, WIN},
      {"7R/8/8/8/k7/8/8/1K6 w - - 0 1", BITBASE_FOUND, 0},
  });
}

TEST_F(HandlerTableTest, UnknownEntriesAreNotFound) {
  Save("kr_k", 3, 0, {{KRK_WHITE_ON_MOVE, 2}});
  Build();
  ExpectProbes({{"7R/8/8/8/8/k7/8/1K6 w - - 0 1", BITBASE_NOT_FOUND, 0},
                {"1k6/8/K7/8/8/8/8/7r b - - 0 1", BITBASE_NOT_FOUND, 0}});
}

TEST_F(HandlerTableTest, MirroredMaterialReadsTheStoredOne) {
  Build();
  ExpectProbes({{"1k6/8/K1R5/8/8/8/8/7q b - - 0 1", BITBASE_NOT_FOUND, 0}});
  Save("kq_kr", 4, 0, {{KQKR_WHITE_ON_MOVE, 3}});
  Save("kn_kp", 4, 1, {{KNKP_WHITE_ON_MOVE, 3}});
  Build();
  ExpectProbes({
      {"7Q/8/8/8/8/k1r5/8/1K6 w - - 0 1", BITBASE_FOUND, WIN},
      {"1k6/8/K1R5/8/8/8/8/7q b - - 0 1", BITBASE_FOUND, WIN},
      {"1k6/8/K1R5/8/8/8/8/7q w - - 0 1", BITBASE_FOUND, 0},
      {"7k/8/8/1p6/3N4/8/8/K7 w - - 0 1", BITBASE_FOUND, WIN},
      {"k7/8/8/3n4/1P6/8/8/7K b - - 0 1", BITBASE_FOUND, WIN},  // colours exchanged
      {"7k/8/8/4n3/6P1/8/8/K7 b - - 0 1", BITBASE_FOUND, WIN},  // and mirrored by file
      {"k7/8/8/3n4/1P6/8/8/7K w - - 0 1", BITBASE_FOUND, 0},
  });
}

TEST_F(HandlerTableTest, BudgetGoesToTheFirstMaterials) {
  // Three-piece materials load in the order kn_k, kb_k, kr_k, kq_k.
  for (const char* name : {"kn_k", "kb_k", "kr_k"}) Save(name, 3, 0, {{KRK_WHITE_ON_MOVE, 3}});
  Build();
  const std::size_t each = GetTotalMemoryUsage() / 3;
  ASSERT_GT(each, 0u);
  LogRecorder log;
  Build(2 * each);
  EXPECT_LE(GetTotalMemoryUsage(), 2 * each);
  EXPECT_NE(log.Text().find("- loading 'kr_k.bgb'...skipped (memory limit reached)\n"),
            std::string::npos);
  ExpectProbes({{"7N/8/8/8/8/k7/8/1K6 w - - 0 1", BITBASE_FOUND, WIN},
                {"7B/8/8/8/8/k7/8/1K6 w - - 0 1", BITBASE_FOUND, WIN},
                {"7R/8/8/8/8/k7/8/1K6 w - - 0 1", BITBASE_NOT_FOUND, 0}});
}

TEST_F(HandlerTableTest, RebuildingGivesTheSameTable) {
  Save("kr_k", 3, 0, {{KRK_WHITE_ON_MOVE, 3}});
  Save("kq_kr", 4, 0, {{KQKR_WHITE_ON_MOVE, 3}});
  Build();
  const std::size_t total = GetTotalMemoryUsage();
  Build();
  EXPECT_EQ(GetTotalMemoryUsage(), total);
  ExpectProbes({{"7R/8/8/8/8/k7/8/1K6 w - - 0 1", BITBASE_FOUND, WIN},
                {"1k6/8/K1R5/8/8/8/8/7q b - - 0 1", BITBASE_FOUND, WIN}});
  ClearHandlerTable();
  EXPECT_EQ(GetTotalMemoryUsage(), 0u);
  ExpectProbes({{"8/8/8/8/8/8/8/K6k w - - 0 1", BITBASE_NOT_FOUND, 0}});
}

TEST_F(HandlerTableTest, LoadingIsReportedInTheLog) {
  Save("kr_k", 3, 0);
  LogRecorder log;
  Build();
  const std::string text = log.Text();
  for (const char* line : {"\nLoading generic bitbases: (not sent to xboard)\n",
                           "- loading 'kr_k.bgb'...done\n", "- 'kq_k.bgb' not available\n"})
    EXPECT_NE(text.find(line), std::string::npos) << line;
  EXPECT_EQ(text.find("kr_kq"), std::string::npos);  // mirrored materials look at no file
}

TEST_F(HandlerTableTest, FuzzDamagedFilesCostOnlyTheirOwnMaterial) {
  Save("kq_k", 3, 0, {{KRK_WHITE_ON_MOVE, 3}});
  WriteBytes(directory_.File("kr_k.bgb"), {0x3a, 0x30, 0, 0, 0xff, 0xff, 0xff, 0xff, 1, 2, 3});
  WriteBytes(directory_.File("kb_k.bgb"), {});
  std::filesystem::create_directory(directory_.File("kp_k.bgb"));  // served without a file
  std::filesystem::create_directory(directory_.File("k_kq.bgb"));  // never looked at
  std::filesystem::create_directory(directory_.File("kqp_k.bgb"));
  Save("kn_k", 4, 0, {{ClassBits(4, 0) - 2, 3}});  // an array of another size class
  LogRecorder log;
  Build();
  EXPECT_NE(log.Text().find("- loading 'kr_k.bgb'...failed\n"), std::string::npos);
  EXPECT_NE(log.Text().find("Warning: Failed to load generic bitbase 'kn_k'"), std::string::npos);
  ExpectProbes({{"7Q/8/8/8/8/k7/8/1K6 w - - 0 1", BITBASE_FOUND, WIN},
                {"7R/8/8/8/8/k7/8/1K6 w - - 0 1", BITBASE_NOT_FOUND, 0},
                {"7B/8/8/8/8/k7/8/1K6 w - - 0 1", BITBASE_NOT_FOUND, 0},
                {"7N/8/8/8/8/k7/8/1K6 w - - 0 1", BITBASE_NOT_FOUND, 0},
                {"4k3/8/4K3/4P3/8/8/8/7Q w - - 0 1", BITBASE_NOT_FOUND, 0},
                {"4k3/8/4K3/4P3/8/8/8/8 w - - 0 1", BITBASE_FOUND, 32687 + 4 * 4}});
}

TEST_F(HandlerTableTest, PawnAgainstPawnScoresFromTheSpecialFile) {
  std::vector<std::uint8_t> bytes(TWO_PAWNS_FILE_SIZE, 0);
  bytes[291855] = 0xC0;  // Black on move wins: black pawn g6, king h8; white pawn c2, king a1
  bytes[585787] = 0x40;  // White on move loses: white pawn e4, king e1; black pawn d7, king e8
  WriteBytes(directory_.File(TWO_PAWNS_FILE_NAME), bytes);
  LoadTwoPawnsBitbases(directory_.File(TWO_PAWNS_FILE_NAME));
  struct Case {
    const char* fen;
    int score;
  };
  // Winner's scores rank by how far the white pawn has come, a loser's by the black pawn.
  const Case cases[] = {{"7k/8/6p1/8/8/8/2P5/K7 b - - 0 1", 32667 + 4 * 1},
                        {"4k3/3p4/8/8/4P3/8/8/4K3 w - - 0 1", -(32667 + 4 * 1)},
                        {"4k3/3p4/8/8/4P3/8/8/4K3 b - - 0 1", 0}};
  for (const Case& c : cases) {
    const Board board = BoardFromFen(c.fen);
    PositionList list;
    BuildMaterialAndList(board, list);
    int score = 12345;
    EXPECT_EQ(FixedHandlers::KingAndPawnAgainstKingAndPawn(nullptr, board, list, &score),
              BITBASE_FOUND);
    EXPECT_EQ(score, c.score) << c.fen;
  }
}
