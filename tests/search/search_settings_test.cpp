// The search settings: their values as text, the list they come from, and the settings file.
#include <gtest/gtest.h>

#include <string>

#include "chess/string_helpers.h"
#include "search/optimize_data_types.h"
#include "search/optimize_interface.h"
#include "search/search_settings.h"
#include "search/setting_bindings.h"
#include "settings_guard.h"
#include "support/temporary_directory.h"
#include "support/terminal_capture.h"

namespace OptimizeInterface {
namespace {

template <typename Exception = BraskException, typename Action>
std::string FailureOf(Action action) {
  try {
    action();
  } catch (const Exception& error) {
    return error.what();
  }
  return "no failure";
}

// Every row starts from an integer variable holding "1 2 3 4" or a boolean holding "true": the
// text is taken, or it fails and the old value stays.
TEST(SettingValues, ExactlyTheirSizeOfValuesWithinTheirRangeOrTheOldValuesStay) {
  const struct {
    bool boolean;
    const char* text;
    const char* result;  // the value as text, or the failure
  } cases[] = {
      {false, " 0\t15  10 65\r\n", "0 15 10 65"},
      {false, "-511 511 007 -0", "-511 511 7 0"},
      {false, "1 2 3", "invalid size"},
      {false, "1 2 3 4 5", "invalid size"},
      {false, "", "invalid size"},
      {false, "9 9 x 9", "could not parse integer: x"},
      {false, "9 9 +9 9", "could not parse integer: +9"},
      {false, "9 9 9 512", "value out of bounds"},
      {false, "-512 9 9 9", "value out of bounds"},
      {true, "false", "false"},
      {true, "yes", "could not parse boolean: yes"},
      {true, "True", "could not parse boolean: True"},
      {true, "1", "could not parse boolean: 1"},
      {true, "true false", "invalid size"},
  };
  for (const auto& c : cases) {
    Integer integer("bonus", 4, -511, 511);
    integer.SetFromText("1 2 3 4");
    Boolean boolean("flag", 1);
    boolean.SetFromText("true");
    DataType& variable = c.boolean ? static_cast<DataType&>(boolean) : integer;
    const std::string before = variable.ToText();
    const std::string failure =
        FailureOf<DataType::DataTypeException>([&] { variable.SetFromText(c.text); });
    const bool failed = failure != "no failure";
    EXPECT_EQ(failed ? failure : variable.ToText(), c.result) << c.text;
    EXPECT_EQ(variable.ToText(), failed ? before : c.result) << c.text;
  }
  const Integer integer("bonus", 4, -511, 511);
  EXPECT_EQ(integer.TypeName() + " " + integer.MinimumText() + " " + integer.MaximumText(),
            "integer -511 511");
}

TEST(SettingValues, GuardAgainstMissingValuesAndBadIndexes) {
  Integer value("value", 2, 0, 10);
  EXPECT_EQ(FailureOf([&] { value.Element(0); }), "not initialized");
  EXPECT_EQ(FailureOf([&] { value.Assign({1, 2, 3}); }), "invalid size");
  value.Assign({4, 5});
  EXPECT_EQ(FailureOf([&] { value.Element(2); }), "index out of bounds");
  EXPECT_EQ(FailureOf([&] { value.Element(-1); }), "index out of bounds");
}

// Tests that change settings give them back, so the globals hold their starting values here.
TEST(SettingList, EveryGlobalStartsAtItsDefaultTextWithinItsRange) {
  for (const SettingBinding& binding : SearchSettingBindings()) {
    SCOPED_TRACE(std::string(binding.name));
    EXPECT_EQ(binding.Snapshot()->ToText(), binding.default_text);
    EXPECT_NO_THROW(binding.MakeEmpty()->SetFromText(binding.default_text));
    EXPECT_FALSE(binding.description.empty());
    EXPECT_LE(binding.description.size(), 60u) << "a description is a few words";
  }
}

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
    TerminalCapture terminal;
    return FailureOf<Exception>([&] { Settings settings(file_); });
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

  std::string DefaultsWith(const std::string& old_part, const std::string& new_part) const {
    std::string text = Defaults();
    return text.replace(text.find(old_part), old_part.size(), new_part);
  }

  SettingsGuard guard_;
  TemporaryDirectory directory_;
  std::string file_ = directory_.File("settings.txt");
};

TEST_F(SettingsFileTest, AWrittenFileReadsBackSilentlyAndAppliesOnlyWhenAsked) {
  Settings settings;
  settings.Set("enable_ettc", "true");
  settings.Write(file_);
  Settings read;
  EXPECT_EQ(Read(ReadWholeFile(file_), &read), "");
  EXPECT_FALSE(enable_ettc);
  read.Apply();
  EXPECT_TRUE(enable_ettc);
  // Windows line ends, and anything behind the last variable, read silently too.
  std::string text;
  for (char c : Defaults()) text += c == '\n' ? std::string("\r\n") : std::string(1, c);
  EXPECT_EQ(Read(text), "");
  EXPECT_EQ(Read(Defaults() + "garbage without separator\n"), "");
}

// The warnings of an empty file give each variable its present value, which need not be the
// default.
TEST_F(SettingsFileTest, AnEmptyFileGivesEveryVariableItsPresentValue) {
  enable_ettc = true;
  Settings read;
  const std::string report = Read("", &read);
  EXPECT_NE(report.find(Warning("enable_ettc", "true")), std::string::npos);
  EXPECT_NE(report.find(Warning("capture_move_sorting_bonus", "0 4 5 5 6 10")), std::string::npos);
  EXPECT_EQ(read.Get("enable_ettc"), "true");
}

TEST_F(SettingsFileTest, FailuresNameTheLineTheFileOrTheVariable) {
  // Line numbers count from the first line; a parse error of the value is given with them.
  EXPECT_EQ(ReadFailure<Settings::InvalidData>(DefaultsWith(
                "capture_move_sorting_bonus=0 4 5 5 6 10", "capture_move_sorting_bonus=0 4 5 5 6")),
            "Parse error in line #144 (invalid size)");
  EXPECT_EQ(ReadFailure<Settings::IO_Exception>(DefaultsWith("enable_ettc=false", "enable_ettc")),
            "seperator missing ('=')");
  EXPECT_EQ(ReadFailure<Settings::IO_Exception>(" \t\r\n"), "no failure");

  EXPECT_EQ(FailureOf<Settings::IO_Exception>([] { Settings().Write("/dev/full"); }),
            "could not write file: /dev/full");
  // Changing a snapshot changes no global.
  Settings settings;
  settings.Set("min_ply_for_null_move", "7");
  EXPECT_EQ(min_ply_for_null_move, 4);
  EXPECT_THROW(settings.Set("no_such_variable", "1"), Settings::UnknownVariable);
  EXPECT_EQ(settings.Get("min_ply_for_null_move"), "7");
}

}  // namespace
}  // namespace OptimizeInterface
