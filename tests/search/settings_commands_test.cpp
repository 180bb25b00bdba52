#include "search/settings_commands.h"

#include <gtest/gtest.h>

#include <functional>

#include "search/search_settings.h"
#include "search/settings_guard.h"
#include "support/temporary_directory.h"
#include "support/terminal_capture.h"

namespace OptimizeInterface {
namespace {

std::string ErrorOf(const std::function<void()>& command) {
  try {
    command();
  } catch (const SettingsCommandError& error) {
    return error.what();
  }
  return "no error";
}

class SettingsCommandTest : public ::testing::Test {
 protected:
  SettingsGuard guard_;
  TemporaryDirectory directory_;
  std::string file_ = directory_.File("settings.txt");
};

TEST_F(SettingsCommandTest, WriteAndReadSettings) {
  WriteSearchSettings(file_);
  EXPECT_EQ(ReadWholeFile(file_), SearchSettingsText("all"));
  WriteWholeFile(file_, "root_distance_multiplier=32\n");
  TerminalCapture terminal;
  ReadSearchSettings(file_);
  EXPECT_EQ(root_distance_multiplier, 32);
  EXPECT_NE(
      terminal.Text().find("Warning: Initialized missing variable <enable_search_extensions>"),
      std::string::npos);
}

TEST_F(SettingsCommandTest, ErrorsOfWriteAndRead) {
  const std::string missing = directory_.File("no/such/file");
  EXPECT_EQ(ErrorOf([&] { WriteSearchSettings(missing); }),
            "could not write search settings file could not open file: " + missing);
  EXPECT_EQ(ErrorOf([&] { ReadSearchSettings(missing); }), "could not open file: " + missing);
  WriteWholeFile(file_, "root_distance_multiplier=32\nenable_search_extensions=maybe\n");
  EXPECT_EQ(
      ErrorOf([&] { ReadSearchSettings(file_); }),
      "file contained invalid data:\nParse error in line #2 (could not parse boolean: maybe)");
  EXPECT_EQ(root_distance_multiplier, 64);
  WriteWholeFile(file_, "root_distance_multiplier 32\n");
  EXPECT_EQ(ErrorOf([&] { ReadSearchSettings(file_); }), "seperator missing ('=')");
}

TEST_F(SettingsCommandTest, ModifySettingsChangesAllAtOnce) {
  ModifySearchSettings(
      " capture_move_sorting_bonus = 1 2 3 4 5 6 ;enable_ettc=true;"
      "min_ply_for_null_move=\"7\"");
  EXPECT_EQ(capture_move_sorting_bonus[0], 1);
  EXPECT_EQ(capture_move_sorting_bonus[5], 6);
  EXPECT_TRUE(enable_ettc);
  EXPECT_EQ(min_ply_for_null_move, 7);
}

TEST_F(SettingsCommandTest, ModifySettingsChangesNothingOnAnyError) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"enable_ettc=true;b=2", "unknown variable: b"},
      {"enable_ettc=true;min_ply_for_null_move=-1",
       "could not parse new value: value out of bounds"},
      {"enable_ettc=true;capture_move_sorting_bonus=1 2",
       "could not parse new value: invalid size"},
      {"enable_ettc=true;min_ply_for_null_move", "seperator missing (';')"},
      {"enable_ettc=true;=5", "seperator missing (';')"},
      {"enable_ettc=true;min_ply_for_null_move= ", "seperator missing (';')"},
      {"enable_ettc=true;min_ply_for_null_move=\"5", "could not tokenize the input string"},
  };
  for (const auto& [text, error] : cases) {
    EXPECT_EQ(ErrorOf([&] { ModifySearchSettings(text); }), error) << text;
    EXPECT_FALSE(enable_ettc) << text;
    EXPECT_EQ(capture_move_sorting_bonus[1], 4) << text;
  }
}

TEST_F(SettingsCommandTest, DisplaySettingsByNameOrAll) {
  EXPECT_EQ(SearchSettingsText("enable_ettc;checking_move_sorting_bonus_if_playing_for_mate"),
            "enable_ettc=false\nchecking_move_sorting_bonus_if_playing_for_mate=0 70 50 75\n");
  EXPECT_EQ(SearchSettingsText(" root_distance_multiplier ; enable_ettc "),
            "root_distance_multiplier=64\nenable_ettc=false\n");
  EXPECT_EQ(SearchSettingsText(""), SearchSettingsText("all"));
  EXPECT_EQ(SearchSettingsText("all").rfind("root_distance_multiplier=64\n", 0), 0u);
  TerminalCapture terminal;
  EXPECT_EQ(ErrorOf([] { DisplaySearchSettings("enable_ettc;enable_etc"); }),
            "unknown variable: enable_etc");
  DisplaySearchSettings("root_distance_multiplier");
  EXPECT_EQ(terminal.Text(), "root_distance_multiplier=64\n");
}

}  // namespace
}  // namespace OptimizeInterface
