#include "bitbases/probe_generic_bitbases.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "bitbases/bit_array.h"
#include "bitbases/bitbase_test_support.h"
#include "bitbases/generic_bitbase_index.h"
#include "support/board_from_fen.h"
#include "support/terminal_capture.h"

using namespace BraskBitbases;

namespace {

constexpr int WIN = GENERIC_WIN_SCORE;
constexpr std::size_t NO_LIMIT = 0;

// Indices worked out by hand. kr_k: white king b1, black king a3, white rook h8 (g8).
constexpr std::uint32_t KRK_WHITE_ON_MOVE = (1 * 64 + 16) * 256 + (0 + 2 * 63) * 2;
constexpr std::uint32_t KRK_BLACK_ON_MOVE = KRK_WHITE_ON_MOVE + 2;
constexpr std::uint32_t KRK_G8_WHITE_ON_MOVE = (1 * 64 + 16) * 256 + (0 + 2 * 62) * 2;
// kq_kr: white king b1, black king a3, black rook c3, white queen h8, White on move.
constexpr std::uint32_t KQKR_WHITE_ON_MOVE = ((1 * 64 + 16) * 64 + 18) * 256 + (0 + 2 * 63) * 2;
// kn_kp: black pawn b5, white king a1, black king h8, white knight d4, White on move.
constexpr std::uint32_t KNKP_WHITE_ON_MOVE = ((13 * 64 + 0) * 64 + 63) * 256 + (0 + 2 * 27) * 2;

// kp_kp.bbb, offsets worked out by hand from the file's layout. Black on move, black pawn g6,
// black king h8, white pawn c2, white king a1: both flips apply (mask 63); the entry sits in the
// top two bits of its byte, where the sign is. White on move, white pawn e4, white king e1, black
// pawn d7, black king e8: the file flip alone.
constexpr std::size_t BLACK_G_PAWN_OFFSET = 291855;
constexpr std::size_t WHITE_E_PAWN_OFFSET = 585787;
// kpp_kp_ram.bbb: white pawns a2 and c4, black pawn c5, white king e1, black king h8; a win with
// the a pawn's side on move, and with the other on move a win for the d side.
constexpr std::size_t RAM_OFFSET = 983199;
constexpr std::uint8_t RAM_ENTRY = 3 << 4 | 1 << 6;

struct ProbeCase {
  const char* fen;
  int result;
  int score;
};

int MappingsOf(const std::string& path) {
  std::ifstream maps("/proc/self/maps");
  int count = 0;
  for (std::string line; std::getline(maps, line);) count += line.find(path) != std::string::npos;
  return count;
}

class ProbeTest : public BitbaseTest {
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
  // The special files, of their own size with the entries above, or of another size.
  void WriteSpecialFiles(std::size_t two_pawns, std::size_t rammed_pawn) {
    std::vector<std::uint8_t> bytes(two_pawns, 0);
    if (two_pawns == TWO_PAWNS_FILE_SIZE) bytes[BLACK_G_PAWN_OFFSET] = 0xC0;  // win
    if (two_pawns == TWO_PAWNS_FILE_SIZE) bytes[WHITE_E_PAWN_OFFSET] = 0x40;  // loss
    WriteBytes(directory_.File(TWO_PAWNS_FILE_NAME), bytes);
    bytes.assign(rammed_pawn, 0);
    if (rammed_pawn == RAMMED_PAWN_FILE_SIZE) bytes[RAM_OFFSET] = RAM_ENTRY;
    WriteBytes(directory_.File(RAMMED_PAWN_FILE_NAME), bytes);
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

TEST_F(ProbeTest, AnswersWithoutAnyFile) {
  Build();
  ExpectProbes({
      {"8/8/8/8/8/8/8/K6k w - - 0 1", BITBASE_FOUND, 0},
      {"8/4k3/8/4K3/4P3/8/8/8 w - - 0 1", BITBASE_FOUND, 0},
      {"8/4k3/8/4K3/4P3/8/8/8 b - - 0 1", BITBASE_FOUND, -(32687 + 4 * 3)},
      {"4k3/8/4K3/4P3/8/8/8/8 w - - 0 1", BITBASE_FOUND, 32687 + 4 * 4},
      {"k7/8/K7/P7/8/8/8/8 b - - 0 1", BITBASE_FOUND, 0},
      {"8/8/8/4p3/4k3/8/4K3/8 w - - 0 1", BITBASE_FOUND, -(32687 + 4 * 3)},  // colours exchanged
      // No file, or too many pieces.
      {"8/8/8/8/8/k7/8/1K5R w - - 0 1", BITBASE_NOT_FOUND, 0},
      {"1k6/8/K1R5/8/8/8/8/7q b - - 0 1", BITBASE_NOT_FOUND, 0},
      {"4k3/8/8/8/8/8/PPPPPPPP/4K3 w - - 0 1", BITBASE_NOT_FOUND, 0},
      {"4k3/pp6/8/8/8/8/PP6/4K3 w - - 0 1", BITBASE_NOT_FOUND, 0},
  });
}

TEST_F(ProbeTest, OneFileAnswersBothColouringsAndTheMirroredMaterial) {
  Save("kr_k", 3, 0, {{KRK_WHITE_ON_MOVE, 3}, {KRK_BLACK_ON_MOVE, 1}, {KRK_G8_WHITE_ON_MOVE, 2}});
  Save("kq_kr", 4, 0, {{KQKR_WHITE_ON_MOVE, 3}});
  Save("kn_kp", 4, 1, {{KNKP_WHITE_ON_MOVE, 3}});
  const std::vector<ProbeCase> cases = {
      {"7R/8/8/8/8/k7/8/1K6 w - - 0 1", BITBASE_FOUND, WIN},
      {"7R/8/8/8/8/k7/8/1K6 b - - 0 1", BITBASE_FOUND, WIN},  // the file says Black wins
      {"6K1/8/7k/8/8/8/8/R7 w - - 0 1", BITBASE_FOUND, WIN},  // both flips of the quadrant rule
      {"1k6/8/K7/8/8/8/8/7r b - - 0 1", BITBASE_FOUND, WIN},  // colours exchanged
      {"7R/8/8/8/k7/8/8/1K6 w - - 0 1", BITBASE_FOUND, 0},
      {"6R1/8/8/8/8/k7/8/1K6 w - - 0 1", BITBASE_NOT_FOUND, 0},  // an unknown entry
      {"7Q/8/8/8/8/k1r5/8/1K6 w - - 0 1", BITBASE_FOUND, WIN},
      {"1k6/8/K1R5/8/8/8/8/7q b - - 0 1", BITBASE_FOUND, WIN},
      {"1k6/8/K1R5/8/8/8/8/7q w - - 0 1", BITBASE_FOUND, 0},
      {"7k/8/8/1p6/3N4/8/8/K7 w - - 0 1", BITBASE_FOUND, WIN},
      {"k7/8/8/3n4/1P6/8/8/7K b - - 0 1", BITBASE_FOUND, WIN},  // colours exchanged
      {"7k/8/8/4n3/6P1/8/8/K7 b - - 0 1", BITBASE_FOUND, WIN},  // and mirrored by file
  };
  Build();
  ExpectProbes(cases);
  const std::size_t total = GetTotalMemoryUsage();
  Build();  // rebuilding gives the same table
  EXPECT_EQ(GetTotalMemoryUsage(), total);
  ExpectProbes(cases);
  ClearHandlerTable();
  EXPECT_EQ(GetTotalMemoryUsage(), 0u);
  ExpectProbes({{"8/8/8/8/8/8/8/K6k w - - 0 1", BITBASE_NOT_FOUND, 0}});
}

TEST_F(ProbeTest, BudgetGoesToTheFirstMaterials) {
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

TEST_F(ProbeTest, SpecialFilesAreReadAtTheirOffsets) {
  EXPECT_EQ(ProbeRammedPawn(BoardFromFen("7k/8/8/2p5/2P5/8/P7/4K3 w - - 0 1")), 0);  // no file
  WriteSpecialFiles(TWO_PAWNS_FILE_SIZE, RAMMED_PAWN_FILE_SIZE);
  LoadTwoPawnsBitbases(directory_.File(TWO_PAWNS_FILE_NAME));
  LoadRammedPawnBitbases(directory_.File(RAMMED_PAWN_FILE_NAME));
  EXPECT_EQ(ProbeTwoPawns(BLACK, A1, H8, C2, G6), SPECIAL_WIN);
  EXPECT_EQ(ProbeTwoPawns(WHITE, E1, E8, E4, D7), SPECIAL_LOSS);
  // The same positions from the other side, and their mirror images by file, lie elsewhere.
  EXPECT_EQ(ProbeTwoPawns(WHITE, A1, H8, C2, G6), SPECIAL_DRAW);
  EXPECT_EQ(ProbeTwoPawns(BLACK, E1, E8, E4, D7), SPECIAL_DRAW);
  EXPECT_EQ(ProbeTwoPawns(WHITE, D1, D8, D4, E7), SPECIAL_LOSS);
  EXPECT_EQ(ProbeTwoPawns(BLACK, H1, A8, F2, B6), SPECIAL_WIN);

  // Two pawns: a winner's score ranks by how far the white pawn has come, a loser's by the black
  // pawn. Rammed pawn: a win is 32667 + 4 * the rank of the other pawn, a loss -32637 + 4 * the
  // king's distance to the ram pawn.
  // The handler is called directly: the table serves kp_kp from it only when the file was loaded
  // before the process's first build.
  for (auto [fen, score] : {std::pair{"7k/8/6p1/8/8/8/2P5/K7 b - - 0 1", 32667 + 4 * 1},
                            {"4k3/3p4/8/8/4P3/8/8/4K3 w - - 0 1", -(32667 + 4 * 1)},
                            {"4k3/3p4/8/8/4P3/8/8/4K3 b - - 0 1", 0}}) {
    const Board board = BoardFromFen(fen);
    PositionList list;
    BuildMaterialAndList(board, list);
    int found = 12345;
    EXPECT_EQ(FixedHandlers::KingAndPawnAgainstKingAndPawn(nullptr, board, list, &found),
              BITBASE_FOUND);
    EXPECT_EQ(found, score) << fen;
  }
  const std::pair<const char*, int> rammed[] = {
      {"7k/8/8/2p5/2P5/8/P7/4K3 w - - 0 1", 32671},
      {"7k/8/8/2p5/2P5/8/P7/4K3 b - - 0 1", 32617},
      {"4k3/p7/8/2p5/2P5/8/8/7K b - - 0 1", 32671},  // colours exchanged
      {"4k3/p7/8/2p5/2P5/8/8/7K w - - 0 1", 32617},
      {"k7/8/8/5p2/5P2/8/7P/3K4 w - - 0 1", 32671},  // mirrored by file
      {"7k/8/8/2p5/2P5/8/1P6/4K3 w - - 0 1", 0},     // another pawn, another entry
      {"7k/8/8/2p5/8/2P5/P7/4K3 w - - 0 1", 0},      // no ram
  };
  for (const auto& [fen, score] : rammed)
    EXPECT_EQ(ProbeRammedPawn(BoardFromFen(fen)), score) << fen;
}

TEST_F(ProbeTest, LoadingReportsToTheLogAlone) {
  Save("kr_k", 3, 0);
  WriteSpecialFiles(TWO_PAWNS_FILE_SIZE, 0);
  std::filesystem::remove(directory_.File(RAMMED_PAWN_FILE_NAME));
  LogRecorder log;
  TerminalCapture terminal;
  LoadBitbases(directory_.Path().string());
  EXPECT_EQ(terminal.Text(), "");
  const std::string text = log.Text();
  for (const std::string& line :
       {"Loading bitbases (executables directory='" + directory_.Path().string() + "'):\n" +
            "- two pawns bitbases found\n- rammed pawn bitbases not found ('" +
            directory_.File(RAMMED_PAWN_FILE_NAME) + "').\n",
        std::string("- max pieces to load by default: 4\n"),
        std::string("Total memory usage (all loaded generic bitbases combined): "),
        std::string("\nLoading generic bitbases: (not sent to xboard)\n"),
        std::string("- loading 'kr_k.bgb'...done\n"), std::string("- 'kq_k.bgb' not available\n")})
    EXPECT_NE(text.find(line), std::string::npos) << line << "\nin\n" << text;
  EXPECT_EQ(text.find("kr_kq"), std::string::npos);  // mirrored materials look at no file
  EXPECT_NE(two_pawns_data, nullptr);
  EXPECT_EQ(rammed_pawn_data, nullptr);
}

TEST_F(ProbeTest, FuzzDamagedFilesCostOnlyTheirOwnMaterial) {
  Save("kq_k", 3, 0, {{KRK_WHITE_ON_MOVE, 3}});
  WriteBytes(directory_.File("kr_k.bgb"), {0x3a, 0x30, 0, 0, 0xff, 0xff, 0xff, 0xff, 1, 2, 3});
  WriteBytes(directory_.File("kb_k.bgb"), {});
  std::filesystem::create_directory(directory_.File("kp_k.bgb"));  // served without a file
  std::filesystem::create_directory(directory_.File("k_kq.bgb"));  // never looked at
  std::filesystem::create_directory(directory_.File("kqp_k.bgb"));
  Save("kn_k", 4, 0, {{ClassBits(4, 0) - 2, 3}});  // an array of another size class
  for (std::size_t size : {std::size_t(0), TWO_PAWNS_FILE_SIZE - 1, TWO_PAWNS_FILE_SIZE + 1}) {
    SCOPED_TRACE(size);
    WriteSpecialFiles(size, size == 0 ? 0 : RAMMED_PAWN_FILE_SIZE + 7);
    LogRecorder log;
    LoadBitbases(directory_.Path().string());
    const std::string text = log.Text();
    for (const char* line : {"Warning: Failed to open two pawns bitbases.\n",
                             "Warning: Failed to open rammed pawn bitbases\n",
                             "- loading 'kr_k.bgb'...failed\n",
                             "Warning: Failed to load generic bitbase 'kn_k'"})
      EXPECT_NE(text.find(line), std::string::npos) << line;
    EXPECT_EQ(two_pawns_data, nullptr);
    EXPECT_EQ(rammed_pawn_data, nullptr);
    ExpectProbes({{"7Q/8/8/8/8/k7/8/1K6 w - - 0 1", BITBASE_FOUND, WIN},
                  {"7R/8/8/8/8/k7/8/1K6 w - - 0 1", BITBASE_NOT_FOUND, 0},
                  {"7B/8/8/8/8/k7/8/1K6 w - - 0 1", BITBASE_NOT_FOUND, 0},
                  {"7N/8/8/8/8/k7/8/1K6 w - - 0 1", BITBASE_NOT_FOUND, 0},
                  {"4k3/8/4K3/4P3/8/8/8/7Q w - - 0 1", BITBASE_NOT_FOUND, 0},
                  {"4k3/8/4K3/4P3/8/8/8/8 w - - 0 1", BITBASE_FOUND, 32687 + 4 * 4}});
  }
  EXPECT_THROW(LoadTwoPawnsBitbases(directory_.File("missing")), CouldNotOpenFileException);
  std::filesystem::remove(directory_.File(TWO_PAWNS_FILE_NAME));
  std::filesystem::create_directory(directory_.File(TWO_PAWNS_FILE_NAME));
  LogRecorder log;
  LoadBitbases(directory_.Path().string());
  EXPECT_EQ(two_pawns_data, nullptr);
}

TEST_F(ProbeTest, ReloadingLeavesOneMappingPerFileAndAFailedReloadKeepsTheFormer) {
  WriteSpecialFiles(TWO_PAWNS_FILE_SIZE, RAMMED_PAWN_FILE_SIZE);
  LoadBitbases(directory_.Path().string());
  LoadBitbases(directory_.Path().string());
  EXPECT_EQ(MappingsOf(directory_.File(TWO_PAWNS_FILE_NAME)), 1);
  EXPECT_EQ(MappingsOf(directory_.File(RAMMED_PAWN_FILE_NAME)), 1);
  const std::uint8_t* former = two_pawns_data;
  TemporaryDirectory broken;
  WriteBytes(broken.File(TWO_PAWNS_FILE_NAME), std::vector<std::uint8_t>(100));
  LoadBitbases(broken.Path().string());
  EXPECT_EQ(two_pawns_data, former);
  EXPECT_EQ(ProbeTwoPawns(BLACK, A1, H8, C2, G6), SPECIAL_WIN);
  ReleaseSpecialBitbases();
  EXPECT_EQ(MappingsOf(directory_.File(TWO_PAWNS_FILE_NAME)), 0);
}
