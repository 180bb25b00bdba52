// Generation and verification on small tablebases made by the retrograde solver.
#include <algorithm>
#include <filesystem>
#include <functional>

#include "bitbases/bitbase_test_support.h"
#include "bitbases/generate_special_bitbases.h"
#include "bitbases/job_description.h"
#include "bitbases/table_provider.h"
#include "bitbases/tablebases.h"
#include "bitbases/verify_bitbases.h"
#include "support/board_from_fen.h"
#include "support/terminal_capture.h"

using namespace BraskBitbases;
using namespace BraskGenerator;

namespace {

constexpr int WIN = GENERIC_WIN_SCORE;
constexpr std::uint64_t CACHE = 1 << 20;
// Legal positions of king and pawn against king, White's pawn, both sides on move.
constexpr std::uint64_t SINGLE_PAWN_POSITIONS = 331352;

PieceCounters Material(const std::string& name) {
  return GenericBitbaseJobDescription("generic[" + name + "]").endgames.at(0);
}

// Counts what it is told and goes on after wrong positions, so that a test sees them all.
class RecordingHandler : public VerificationHandler {
 public:
  void StartVerification(const std::string& name) override { started = name; }
  void FinishVerification(const std::string&, int status) override { finished = status; }
  void PositionVerified(const Board&) override { ++verified; }
  bool InvalidResult(const Board&) override { return ++invalid, true; }
  bool PositionNotFound(const Board&) override { return ++not_found, false; }

  std::string started;
  int finished = -1;
  std::uint64_t verified = 0, invalid = 0, not_found = 0;
};

// Tablebases of three pieces, made once for the suite.
struct Tablebases {
  TemporaryDirectory directory;
  Tablebases() {
    NalimovTablebases::TableProvider provider{directory.Path().string(), {2, nullptr}};
    for (const char* name : {"kqk", "kpk", "knk", "krk"}) provider.Provide(name);
  }
};

void LoadTablebases(bool on) {
  static Tablebases tablebases;
  TemporaryDirectory empty;
  FailureOf<BraskTablebases::TB_Exception>([&] {
    BraskTablebases::InitTablebases((on ? tablebases.directory : empty).Path().string(), CACHE);
  });
}

class GenerationTest : public BitbaseTest {
 protected:
  void SetUp() override {
    BitbaseTest::SetUp();
    LoadTablebases(true);
  }
  void TearDown() override {
    LoadTablebases(false);
    BitbaseTest::TearDown();
  }

  std::string Path(const std::string& name) const { return bitbases_.File(name + ".bgb"); }
  void Generate(const std::string& name) const { generator_.Generate(Material(name), Path(name)); }
  void Load() const { BuildHandlerTable(EnumerateEndgamesUpTo(4), 0, bitbases_.Path().string()); }
  int Verify(const std::string& name, VerificationHandler& handler) const {
    return VerifyGenericBitbaseHelper(Material(name), handler, bitbases_.Path().string());
  }
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(bitbases_.Path()))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

  TerminalCapture quiet_;  // the progress display
  TemporaryDirectory bitbases_;
  GenericBitbaseGenerator generator_;
};

}  // namespace

// The progress of the first piece's walk reaches the terminal, never the log; a damaged bitbase is
// reported with its position, in the log alone.
TEST_F(GenerationTest, GeneratedBitbasesAgreeWithTheTablebasesAndDamageIsReported) {
  LogRecorder log;
  {
    TerminalCapture capture;
    Generate("kq_k");
    const std::string terminal = capture.Text();
    EXPECT_EQ(terminal.rfind("0%  \b\b\b\b", 0), 0u) << terminal;
    EXPECT_NE(terminal.find("96% \b\b\b\b"), std::string::npos) << terminal;
    EXPECT_EQ(terminal.find("100%"), std::string::npos);
    EXPECT_LE(terminal.size(), 64u * 8u);  // one step per first square at most
  }
  EXPECT_EQ(log.Text().find_first_of("%\b"), std::string::npos);
  for (const char* name : {"kp_k", "kn_k", "kr_k"}) Generate(name);
  EXPECT_EQ(Files(), (std::vector<std::string>{"kn_k.bgb", "kp_k.bgb", "kq_k.bgb", "kr_k.bgb"}));
  Load();
  // k_kp is read from kp_k.bgb with the colours swapped.
  for (const char* name : {"kq_k", "kp_k", "k_kp", "kn_k", "kr_k"}) {
    RecordingHandler handler;
    EXPECT_EQ(Verify(name, handler), VERIFICATION_PASSED) << name;
    EXPECT_TRUE(handler.started == name && handler.finished == VERIFICATION_PASSED) << name;
    EXPECT_GT(handler.verified, 100000u);
    EXPECT_EQ(handler.invalid + handler.not_found, 0u);
  }
  const std::pair<const char*, int> probes[] = {
      {"8/8/8/8/8/2k5/8/K6Q b - - 0 1", -WIN},
      {"8/8/8/8/8/2K5/8/k6q b - - 0 1", WIN},    // colours exchanged
      {"4k3/8/8/8/8/8/8/4K2R w K - 0 1", WIN},  // castling rights play no part
      {"k7/8/8/8/8/8/2q5/K7 w - - 0 1", 0},     // stalemate
  };
  for (const auto& [fen, expected] : probes) {
    int score = 1;
    EXPECT_EQ(ProbeBitbases(BoardFromFen(fen), &score), BITBASE_FOUND) << fen;
    EXPECT_EQ(score, expected) << fen;
  }

  // An all-draw table under the name of a won ending: a well-formed file with wrong contents.
  std::filesystem::copy_file(Path("kn_k"), Path("kq_k"),
                             std::filesystem::copy_options::overwrite_existing);
  Load();
  RecordingHandler going_on;
  EXPECT_EQ(Verify("kq_k", going_on), VERIFICATION_FAILED);
  EXPECT_EQ(going_on.finished, VERIFICATION_FAILED);
  EXPECT_GT(going_on.invalid, 100000u);
  EXPECT_GT(going_on.verified, 0u);  // the draws are right
  SilentVerificationHandler silent;
  TerminalCapture capture;
  EXPECT_EQ(Verify("kq_k", silent), VERIFICATION_FAILED);
  EXPECT_NE(log.Text().find("Verification failed (reason: invalid result):\n"), std::string::npos);
  EXPECT_NE(log.Text().find("side on move: "), std::string::npos) << log.Text();
  EXPECT_EQ(capture.Text().find("Verification failed"), std::string::npos);
}

TEST_F(GenerationTest, MissingFilesOrTablebasesStopWithTheirTextsAndLeaveNoFileBehind) {
  const std::string kp_kp = bitbases_.File(TWO_PAWNS_FILE_NAME);
  const std::string ram = bitbases_.File(RAMMED_PAWN_FILE_NAME);
  PieceCounters six = Material("kqr_kq");
  ++six[CounterIndex(WHITE, PAWN)];
  RecordingHandler handler, single;
  const std::pair<std::function<void()>, std::string> loaded[] = {
      {[&] { Generate("kr_kn"); }, "Endgame 'kr_kn' not available"},
      {[&] { Generate("kq_kq"); }, "Endgame 'kq_kq' not available"},
      {[&] { GenerateTwoPawnsBitbases(kp_kp); }, "endgame king+pawn vs king+pawn not available"},
      {[&] { GenerateRammedPawnBitbases(ram); },
       "endgame king+pawn+pawn vs king+pawn not available"},
      {[&] { generator_.Generate(six, Path("kqrp_kq")); },
       "Endgame not supported. Increase the number of supported pieces "
       "(GENERIC_BITBASES_MAX_SUPPORTED_PIECES). Note that this requires a rebuild."},
  };
  for (const auto& [body, message] : loaded) EXPECT_EQ(FailureOf<GenerationFailed>(body), message);
  const std::pair<std::function<void()>, std::string> verifications[] = {
      {[&] { VerifyGenericBitbaseHelper(six, handler); },
       "Number of pieces exceeds the fixed limit (increasing the number requires a rebuild)"},
      {[&] { VerifyTwoPawnsBitbases(handler); }, "endgame king+pawn vs king+pawn not available"},
      {[&] { VerifyRammedPawnBitbases(handler); },
       "endgame king+pawn+pawn vs king+pawn not available"},
  };
  for (const auto& [body, message] : verifications)
    EXPECT_EQ(FailureOf<VerificationFailed>(body), message);
  Load();
  EXPECT_EQ(VerifySinglePawnBitbases(single), VERIFICATION_PASSED);
  EXPECT_EQ(single.verified, SINGLE_PAWN_POSITIONS);
  EXPECT_EQ(single.started, "single_pawn");

  // No file: stopped at once. A file that was not loaded: stopped at the first position, by the
  // handler's own answer.
  Generate("kq_k");
  RecordingHandler no_file, not_loaded;
  EXPECT_EQ(Verify("kr_k", no_file), VERIFICATION_STOPPED);
  EXPECT_TRUE(no_file.finished == VERIFICATION_STOPPED && no_file.verified == 0);
  EXPECT_EQ(Verify("kq_k", not_loaded), VERIFICATION_STOPPED);
  EXPECT_TRUE(not_loaded.not_found == 1 && not_loaded.finished == -1);
  std::filesystem::remove(Path("kq_k"));

  LoadTablebases(false);
  const std::pair<std::function<void()>, std::string> unloaded[] = {
      {[&] { Generate("kq_k"); }, "Tablebases are disabled"},
      {[&] { GenerateTwoPawnsBitbases(kp_kp); }, "tablebases not loaded"},
      {[&] { GenerateRammedPawnBitbases(ram); }, "tablebases not loaded"},
  };
  for (const auto& [body, message] : unloaded)
    EXPECT_EQ(FailureOf<GenerationFailed>(body), message);
  EXPECT_EQ(FailureOf<VerificationFailed>([&] { VerifySinglePawnBitbases(handler); }),
            "tablebases not loaded");
  EXPECT_TRUE(Files().empty());
}
