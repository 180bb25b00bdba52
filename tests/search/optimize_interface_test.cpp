#include "search/optimize_interface.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "chess/string_helpers.h"
#include "search/search_settings.h"
#include "search/setting_bindings.h"
#include "search/settings_guard.h"
#include "support/temporary_directory.h"
#include "support/terminal_capture.h"

namespace OptimizeInterface {
namespace {

class SettingsFileTest : public ::testing::Test {
 protected:
  // Reads `text` as a settings file; gives what was reported on the way.
  std::string Read(const std::string& text, Settings* result = nullptr) {
    WriteWholeFile(file_, text);
    TerminalCapture terminal;
    Settings settings(file_);
    if (result) *result = std::move(settings);
    return terminal.Text();
  }

  template <typename Exception>
  std::string ReadFailure(const std::string& text) {
    WriteWholeFile(file_, text);
    try {
      TerminalCapture terminal;
      Settings settings(file_);
    } catch (const Exception& error) {
      return error.what();
    }
    return "no failure";
  }

  static std::string Warning(const std::string& name, const std::string& value) {
    return "Warning: Initialized missing variable <" + name + "> with default value ('" + value +
           "')\n";
  }

  std::string Defaults() const {
    const std::string name = directory_.File("defaults.txt");
    Settings().Write(name);
    return ReadWholeFile(name);
  }

  static std::string Replaced(std::string text, const std::string& old_part,
                              const std::string& new_part) {
    return text.replace(text.find(old_part), old_part.size(), new_part);
  }

  std::string DefaultsWith(const std::string& old_part, const std::string& new_part) {
    return Replaced(Defaults(), old_part, new_part);
  }

  SettingsGuard guard_;
  TemporaryDirectory directory_;
  std::string file_ = directory_.File("settings.txt");
};

// Settings files of every version rely on the order of the lines: that of the table.
TEST_F(SettingsFileTest, DefaultsAreWrittenInTheFixedOrderOf173DistinctNames) {
  std::istringstream lines(Defaults());
  std::string line;
  std::set<std::string_view> names;
  for (const SettingBinding& binding : SearchSettingBindings()) {
    ASSERT_TRUE(std::getline(lines, line));
    EXPECT_EQ(line.substr(0, line.find('=')), binding.name);
    names.insert(binding.name);
  }
  EXPECT_FALSE(std::getline(lines, line));
  EXPECT_EQ(names.size(), 173u);
  EXPECT_EQ(Settings().Variables().size(), 173u);
  EXPECT_EQ(Defaults().substr(0, 28), "root_distance_multiplier=64\n");
}

TEST_F(SettingsFileTest, WrittenFileReadsBackSilentlyAndApplies) {
  Settings settings;
  settings.Set("capture_move_sorting_bonus", "1 2 3 4 5 6");
  settings.Set("enable_ettc", "true");
  settings.Set("root_distance_multiplier", "6400");
  settings.Write(file_);
  Settings read;
  EXPECT_EQ(Read(ReadWholeFile(file_), &read), "");
  EXPECT_EQ(read.Get("capture_move_sorting_bonus"), "1 2 3 4 5 6");
  EXPECT_EQ(enable_ettc, false);  // reading alone changes nothing
  read.Apply();
  EXPECT_EQ(enable_ettc, true);
  EXPECT_EQ(root_distance_multiplier, 6400);
  EXPECT_EQ(capture_move_sorting_bonus[5], 6);
  EXPECT_EQ(checking_move_sorting_bonus_if_not_playing_for_mate[3], 65);
}

TEST_F(SettingsFileTest, WindowsLineEndsAndLinesBehindTheLastVariableReadSilently) {
  std::string text;
  for (char c : Defaults()) text += c == '\n' ? std::string("\r\n") : std::string(1, c);
  EXPECT_EQ(Read(text), "");
  EXPECT_EQ(Read(Defaults() + "garbage without separator\n"), "");  // nothing read behind the last
}

TEST_F(SettingsFileTest, EmptyFileGivesEveryVariableItsPresentValue) {
  enable_ettc = true;
  Settings read;
  const std::string report = Read("", &read);
  EXPECT_TRUE(BraskUtils::StartsWith(report,
                                     "Expected variable: root_distance_multiplier;\n"
                                     "Received variable: invalid\n" +
                                         Warning("root_distance_multiplier", "64")));
  std::size_t warnings = 0;
  for (std::size_t at = 0; (at = report.find("Warning:", at)) != std::string::npos; ++at)
    ++warnings;
  EXPECT_EQ(warnings, 173u);
  EXPECT_NE(report.find(Warning("enable_ettc", "true")), std::string::npos);
  EXPECT_NE(report.find(Warning("capture_move_sorting_bonus", "0 4 5 5 6 10")), std::string::npos);
  EXPECT_EQ(report.find("Expected variable", 1), std::string::npos);
  EXPECT_EQ(read.Get("enable_ettc"), "true");
}

TEST_F(SettingsFileTest, MissingVariableTakesItsPresentValueAndTheRestIsRead) {
  std::string text = Replaced(Defaults(), "enable_search_extensions=true\n", "");
  text = Replaced(text, "root_distance_multiplier=64", "root_distance_multiplier=65");
  text = Replaced(text, "enable_ettc=false", "enable_ettc=true");
  Settings read;
  EXPECT_EQ(Read(text, &read),
            "Expected variable: enable_search_extensions;\n"
            "Received variable: min_depth_for_search_extensions_if_searching_pv_move\n" +
                Warning("enable_search_extensions", "true"));
  EXPECT_EQ(read.Get("root_distance_multiplier"), "65");
  EXPECT_EQ(read.Get("enable_ettc"), "true");
}

TEST_F(SettingsFileTest, MisspelledVariableMakesEverythingBehindItTakeDefaults) {
  std::string text =
      Replaced(Defaults(), "randomize_move_ordering_of", "randomise_move_ordering_of");
  text =
      Replaced(text, "neglect_trade_knight_vs_bishop=true", "neglect_trade_knight_vs_bishop=false");
  Settings read;
  EXPECT_EQ(Read(text, &read),
            "Expected variable: randomize_move_ordering_of_remaining_moves;\n"
            "Received variable: randomise_move_ordering_of_remaining_moves\n" +
                Warning("randomize_move_ordering_of_remaining_moves", "5") +
                Warning("randomize_quiescence_move_ordering", "8") +
                Warning("score_checking_move_should_neglect_trade_knight_vs_bishop", "true"));
  EXPECT_EQ(read.Get("score_checking_move_should_neglect_trade_knight_vs_bishop"), "true");
}

TEST_F(SettingsFileTest, BlankLineMakesEverythingBehindItTakeDefaults) {
  std::string text = Defaults();
  text.insert(text.find("capture_move_sorting_bonus="), "\n");
  const std::string report = Read(text);
  EXPECT_TRUE(BraskUtils::StartsWith(report,
                                     "Expected variable: capture_move_sorting_bonus;\n"
                                     "Received variable: invalid\n"));
  EXPECT_NE(
      report.find(Warning("score_checking_move_should_neglect_trade_knight_vs_bishop", "true")),
      std::string::npos);
}

TEST_F(SettingsFileTest, InvalidValuesNameTheLine) {
  EXPECT_EQ(ReadFailure<Settings::InvalidData>(
                DefaultsWith("root_distance_multiplier=64", "root_distance_multiplier=0")),
            "Parse error in line #1 (value out of bounds)");
  EXPECT_EQ(
      ReadFailure<Settings::InvalidData>(DefaultsWith("enable_ettc=false", "enable_ettc=yes")),
      "Parse error in line #79 (could not parse boolean: yes)");
  EXPECT_EQ(ReadFailure<Settings::InvalidData>(DefaultsWith(
                "capture_move_sorting_bonus=0 4 5 5 6 10", "capture_move_sorting_bonus=0 4 5 5 6")),
            "Parse error in line #144 (invalid size)");
}

TEST_F(SettingsFileTest, LineWithoutSeparatorIsRefused) {
  EXPECT_EQ(ReadFailure<Settings::IO_Exception>(DefaultsWith("enable_ettc=false", "enable_ettc")),
            "seperator missing ('=')");
  EXPECT_EQ(ReadFailure<Settings::IO_Exception>(" \t\r\n"), "no failure");
}

TEST_F(SettingsFileTest, FilesThatCannotBeOpenedOrWritten) {
  const std::string missing = directory_.File("no/such/file");
  const auto failure = [](auto action) -> std::string {
    try {
      action();
    } catch (const Settings::IO_Exception& error) {
      return error.what();
    }
    return "no failure";
  };
  EXPECT_EQ(failure([&] { Settings settings(missing); }), "could not open file: " + missing);
  EXPECT_EQ(failure([&] { Settings().Write(missing); }), "could not open file: " + missing);
  EXPECT_EQ(failure([] { Settings().Write("/dev/full"); }), "could not write file: /dev/full");
}

TEST(SettingsSnapshot, SetAndGetByName) {
  Settings settings;
  settings.Set("min_ply_for_null_move", "7");
  EXPECT_EQ(settings.Get("min_ply_for_null_move"), "7");
  EXPECT_EQ(min_ply_for_null_move, 4);
  try {
    settings.Set("min_ply_for_null_move", "-1");
    FAIL();
  } catch (const Settings::InvalidData& error) {
    EXPECT_STREQ(error.what(), "could not parse new value: value out of bounds");
  }
  try {
    settings.Get("no_such_variable");
    FAIL();
  } catch (const Settings::UnknownVariable& error) {
    EXPECT_STREQ(error.what(), "unknown variable: no_such_variable");
  }
  EXPECT_THROW(settings.Set("no_such_variable", "1"), Settings::UnknownVariable);
  EXPECT_EQ(settings.Get("min_ply_for_null_move"), "7");
}

}  // namespace
}  // namespace OptimizeInterface
