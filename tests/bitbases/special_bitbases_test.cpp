#include "bitbases/special_bitbases.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "bitbases/bitbase_test_support.h"
#include "chess/board.h"
#include "support/board_from_fen.h"
#include "support/terminal_capture.h"

using namespace BraskBitbases;

namespace {

// Two entries of kp_kp.bbb at offsets worked out by hand from the file's layout.
// Black on move, black pawn g6, black king h8, white pawn c2, white king a1: both flips apply
// (mask 63); the entry sits in the top two bits of its byte, where the sign is.
constexpr std::size_t BLACK_G_PAWN_OFFSET = 291855;
constexpr std::uint8_t WIN_IN_TOP_BITS = 0xC0;
// White on move, white pawn e4, white king e1, black pawn d7, black king e8: the file flip alone.
constexpr std::size_t WHITE_E_PAWN_OFFSET = 585787;
constexpr std::uint8_t LOSS_IN_TOP_BITS = 0x40;

// One entry of kpp_kp_ram.bbb: White pawns a2 and c4, black pawn c5, white king e1, black king h8.
constexpr std::size_t RAM_OFFSET = 983199;
constexpr std::uint8_t RAM_WIN_WITH_A_ON_MOVE = 3 << 4;
constexpr std::uint8_t RAM_D_WINS_WITH_D_ON_MOVE = 1 << 6;

class SpecialBitbasesTest : public BitbaseTest {
 protected:
  void WriteTwoPawnsFile(std::size_t size) {
    std::vector<std::uint8_t> bytes(size, 0);
    if (size == TWO_PAWNS_FILE_SIZE) {
      bytes[BLACK_G_PAWN_OFFSET] = WIN_IN_TOP_BITS;
      bytes[WHITE_E_PAWN_OFFSET] = LOSS_IN_TOP_BITS;
    }
    WriteBytes(directory_.File(TWO_PAWNS_FILE_NAME), bytes);
  }
  void WriteRammedPawnFile(std::size_t size) {
    std::vector<std::uint8_t> bytes(size, 0);
    if (size == RAMMED_PAWN_FILE_SIZE)
      bytes[RAM_OFFSET] = RAM_WIN_WITH_A_ON_MOVE | RAM_D_WINS_WITH_D_ON_MOVE;
    WriteBytes(directory_.File(RAMMED_PAWN_FILE_NAME), bytes);
  }

  TemporaryDirectory directory_;
};

}  // namespace

TEST_F(SpecialBitbasesTest, TwoPawnsEntriesAreReadAtTheirOffsetsAndSignExtensionIsMasked) {
  WriteTwoPawnsFile(TWO_PAWNS_FILE_SIZE);
  LoadTwoPawnsBitbases(directory_.File(TWO_PAWNS_FILE_NAME));
  ASSERT_NE(two_pawns_data, nullptr);
  EXPECT_EQ(ProbeTwoPawns(BLACK, A1, H8, C2, G6), SPECIAL_WIN);
  EXPECT_EQ(ProbeTwoPawns(WHITE, E1, E8, E4, D7), SPECIAL_LOSS);
  // The same positions from the other side, and their mirror images by file, lie elsewhere.
  EXPECT_EQ(ProbeTwoPawns(WHITE, A1, H8, C2, G6), SPECIAL_DRAW);
  EXPECT_EQ(ProbeTwoPawns(BLACK, E1, E8, E4, D7), SPECIAL_DRAW);
  EXPECT_EQ(ProbeTwoPawns(WHITE, D1, D8, D4, E7), SPECIAL_LOSS);
  EXPECT_EQ(ProbeTwoPawns(BLACK, H1, A8, F2, B6), SPECIAL_WIN);
}

TEST_F(SpecialBitbasesTest, RammedPawnScoresForBothOwnersOfTheTwoPawns) {
  EXPECT_EQ(ProbeRammedPawn(BoardFromFen("7k/8/8/2p5/2P5/8/P7/4K3 w - - 0 1")), 0);  // no file
  WriteRammedPawnFile(RAMMED_PAWN_FILE_SIZE);
  LoadRammedPawnBitbases(directory_.File(RAMMED_PAWN_FILE_NAME));
  struct Case {
    const char* fen;
    int score;
  };
  // Win: 32667 + 4 * rank of the other pawn; loss: -32637 + 4 * king distance to the ram pawn.
  const Case cases[] = {
      {"7k/8/8/2p5/2P5/8/P7/4K3 w - - 0 1", 32671},
      {"7k/8/8/2p5/2P5/8/P7/4K3 b - - 0 1", 32617},
      {"4k3/p7/8/2p5/2P5/8/8/7K b - - 0 1", 32671},  // colours exchanged
      {"4k3/p7/8/2p5/2P5/8/8/7K w - - 0 1", 32617},
      {"k7/8/8/5p2/5P2/8/7P/3K4 w - - 0 1", 32671},  // mirrored by file
      {"7k/8/8/2p5/2P5/8/1P6/4K3 w - - 0 1", 0},     // another pawn, another entry
      {"7k/8/8/2p5/8/2P5/P7/4K3 w - - 0 1", 0},      // no ram
  };
  for (const Case& c : cases) EXPECT_EQ(ProbeRammedPawn(BoardFromFen(c.fen)), c.score) << c.fen;
}

TEST_F(SpecialBitbasesTest, LoadingReportsToTheLogAlone) {
  WriteTwoPawnsFile(TWO_PAWNS_FILE_SIZE);
  LogRecorder log;
  TerminalCapture terminal;
  LoadBitbases(directory_.Path().string());
  EXPECT_EQ(terminal.Text(), "");
  const std::string text = log.Text();
  EXPECT_NE(text.find("Loading bitbases (executables directory='" + directory_.Path().string() +
                      "'):\n"
                      "- two pawns bitbases found\n"
                      "- rammed pawn bitbases not found ('" +
                      directory_.File(RAMMED_PAWN_FILE_NAME) + "').\n"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("- max pieces to load by default: 4\n"), std::string::npos);
  EXPECT_NE(text.find("Total memory usage (all loaded generic bitbases combined): "),
            std::string::npos);
  EXPECT_NE(two_pawns_data, nullptr);
  EXPECT_EQ(rammed_pawn_data, nullptr);
}

TEST_F(SpecialBitbasesTest, FuzzFilesOfAWrongSizeAreRefusedWithAWarning) {
  for (std::size_t size : {std::size_t(0), TWO_PAWNS_FILE_SIZE - 1, TWO_PAWNS_FILE_SIZE + 1}) {
    WriteTwoPawnsFile(size);
    WriteRammedPawnFile(size == 0 ? 0 : RAMMED_PAWN_FILE_SIZE + 7);
    LogRecorder log;
    LoadBitbases(directory_.Path().string());
    const std::string text = log.Text();
    EXPECT_NE(text.find("Warning: Failed to open two pawns bitbases.\n"), std::string::npos)
        << size;
    EXPECT_NE(text.find("Warning: Failed to open rammed pawn bitbases\n"), std::string::npos);
    EXPECT_EQ(two_pawns_data, nullptr);
    EXPECT_EQ(rammed_pawn_data, nullptr);
  }
  EXPECT_THROW(LoadTwoPawnsBitbases(directory_.File("missing")), CouldNotOpenFileException);
  std::filesystem::remove(directory_.File(TWO_PAWNS_FILE_NAME));
  std::filesystem::create_directory(directory_.File(TWO_PAWNS_FILE_NAME));
  LogRecorder log;
  LoadBitbases(directory_.Path().string());
  EXPECT_EQ(two_pawns_data, nullptr);
}

TEST_F(SpecialBitbasesTest, ReloadingLeavesOneMappingPerFileAndAFailedReloadKeepsTheFormer) {
  WriteTwoPawnsFile(TWO_PAWNS_FILE_SIZE);
  WriteRammedPawnFile(RAMMED_PAWN_FILE_SIZE);
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
