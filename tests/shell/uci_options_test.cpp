#include "shell/uci_options.h"

#include <gtest/gtest.h>

#include <memory>

#include "search/optimize_interface.h"
#include "search/search_settings.h"
#include "shell/error_command.h"
#include "shell/game_state.h"
#include "shell/uci_protocol.h"

namespace BraskInterfaces {
namespace {

class SetUciOptionTest : public ::testing::Test {
 protected:
  SetUciOptionTest() : game(std::make_unique<UciProtocol>()) {}
  ~SetUciOptionTest() override { saved.Apply(); }

  UciProtocol& Protocol() { return static_cast<UciProtocol&>(game.Protocol()); }
  void Set(const std::string& name, const std::string& value) {
    SetUciOption(game, Protocol(), name, value, "setoption name " + name + " value " + value);
  }

  OptimizeInterface::Settings saved;  // the globals as they were, restored at the end
  GameState game;
};

TEST_F(SetUciOptionTest, SettingsTakeTheirValueWhateverTheCaseOfTheName) {
  Set("ENABLE_ETTC", "true");
  EXPECT_TRUE(enable_ettc);
  Set("checking_move_sorting_bonus_if_not_playing_for_mate[3]", "-7");
  EXPECT_EQ(checking_move_sorting_bonus_if_not_playing_for_mate[3], -7);
  EXPECT_EQ(checking_move_sorting_bonus_if_not_playing_for_mate[2], 10);
}

TEST_F(SetUciOptionTest, EngineOptionsReachTheSearchAndTheProtocol) {
  Set("Contempt", "-25");
  EXPECT_EQ(game.search.contempt, -25);
  EXPECT_EQ(game.draw_handler.contempt, -25);
  Set("personality", "vessimar");
  EXPECT_EQ(Protocol().personality, -1000);
  EXPECT_EQ(game.search.personality, -1000);
  Set("NalimovCache", "16");
  EXPECT_EQ(Protocol().nalimov_cache_mib, 16);
}

TEST_F(SetUciOptionTest, RefusalsChangeNothing) {
  const bool ettc = enable_ettc;
  const std::int32_t bonus = capture_move_sorting_bonus[5];
  const struct {
    const char* name;
    const char* value;
    const char* message;
  } cases[] = {
      {"No Such Option", "1", "unknown option"},
      {"enable_ettc", "yes", "could not parse boolean: yes"},
      {"enable_ettc", "", "could not parse boolean: "},
      {"capture_move_sorting_bonus[5]", "512", "value out of bounds"},
      {"capture_move_sorting_bonus[5]", "12a", "integer argument expected"},
      {"capture_move_sorting_bonus[6]", "1", "unknown option"},
      {"capture_move_sorting_bonus", "1", "unknown option"},
      {"Contempt", "40000", "value out of bounds"},
      {"Personality", "Nobody", "invalid argument(s)"},
      {"Hash", "0", "value out of bounds"},
  };
  for (const auto& c : cases) {
    const std::string line = std::string("setoption name ") + c.name + " value " + c.value;
    try {
      Set(c.name, c.value);
      ADD_FAILURE() << line;
    } catch (const ErrorCommand& error) {
      EXPECT_EQ(error.what(), std::string("Error (") + c.message + "): " + line);
    }
  }
  EXPECT_EQ(enable_ettc, ettc);
  EXPECT_EQ(capture_move_sorting_bonus[5], bonus);
  EXPECT_EQ(game.search.contempt, 0);
  EXPECT_EQ(Protocol().personality, 0);
}

}  // namespace
}  // namespace BraskInterfaces
