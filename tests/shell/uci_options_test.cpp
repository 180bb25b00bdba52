#include "shell/uci_options.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "search/optimize_interface.h"
#include "search/search_settings.h"
#include "search/setting_bindings.h"
#include "shell/error_command.h"
#include "shell/game_state.h"
#include "shell/uci_protocol.h"

namespace BraskInterfaces {
namespace {

TEST(UciOptionLine, EachKindInTheWordsOfTheProtocol) {
  const auto none = [](GameState&, UciProtocol&, const std::string&, const std::string&) {};
  using Kind = UciOption::Kind;
  const struct {
    UciOption option;
    const char* line;
  } cases[] = {
      {{"Hash", Kind::spin, "32", 1, 64, {}, none},
       "option name Hash type spin default 32 min 1 max 64"},
      {{"Ponder", Kind::check, "false", 0, 0, {}, none},
       "option name Ponder type check default false"},
      {{"Clear Hash", Kind::button, "", 0, 0, {}, none}, "option name Clear Hash type button"},
      {{"Style", Kind::combo, "B", 0, 0, {"A", "B"}, none},
       "option name Style type combo default B var A var B"},
      {{"Path", Kind::string, "<empty>", 0, 0, {}, none},
       "option name Path type string default <empty>"},
  };
  for (const auto& c : cases) EXPECT_EQ(UciOptionLine(c.option), c.line);
}

TEST(UciOptions, EverySearchSettingWithItsRangeAndPresentValue) {
  const std::vector<UciOption> options = UciOptions();
  std::size_t settings = 0;
  for (const OptimizeInterface::SettingBinding& setting :
       OptimizeInterface::SearchSettingBindings()) {
    for (std::int32_t i = 0; i < setting.size; ++i, ++settings) {
      const std::string name = setting.size == 1
                                   ? std::string(setting.name)
                                   : std::string(setting.name) + "[" + std::to_string(i) + "]";
      const auto found = std::find_if(options.begin(), options.end(),
                                      [&](const UciOption& o) { return o.name == name; });
      ASSERT_NE(found, options.end()) << name;
      if (setting.booleans != nullptr) {
        EXPECT_EQ(found->default_value, *setting.booleans ? "true" : "false") << name;
      } else {
        EXPECT_EQ(found->default_value, std::to_string(setting.integers[i])) << name;
        EXPECT_EQ(found->minimum, setting.minimum) << name;
        EXPECT_EQ(found->maximum, setting.maximum) << name;
      }
    }
  }
  EXPECT_EQ(options.size(), settings + 8);
}

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
