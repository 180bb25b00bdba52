#include "search/optimize_data_types.h"

#include <gtest/gtest.h>

#include <functional>

namespace OptimizeInterface {
namespace {

std::string FailureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const DataType::DataTypeException& error) {
    return error.what();
  }
  return "no failure";
}

TEST(IntegerVariable, ReadsExactlyItsSizeOfValuesWithinItsRange) {
  Integer bonus("bonus", 4, -511, 511);
  bonus.SetFromText(" 0\t15  10 65\r\n");
  EXPECT_EQ(bonus.ToText(), "0 15 10 65");
  EXPECT_EQ(bonus.Element(3), 65);
  bonus.SetFromText("-511 511 007 -0");
  EXPECT_EQ(bonus.ToText(), "-511 511 7 0");
  EXPECT_EQ(bonus.TypeName(), "integer");
  EXPECT_EQ(bonus.MinimumText(), "-511");
  EXPECT_EQ(bonus.MaximumText(), "511");
}

TEST(IntegerVariable, EveryFailureLeavesTheOldValues) {
  Integer bonus("bonus", 4, -511, 511);
  bonus.SetFromText("1 2 3 4");
  EXPECT_EQ(FailureOf([&] { bonus.SetFromText("1 2 3"); }), "invalid size");
  EXPECT_EQ(FailureOf([&] { bonus.SetFromText("1 2 3 4 5"); }), "invalid size");
  EXPECT_EQ(FailureOf([&] { bonus.SetFromText(""); }), "invalid size");
  EXPECT_EQ(FailureOf([&] { bonus.SetFromText("9 9 x 9"); }), "could not parse integer: x");
  EXPECT_EQ(FailureOf([&] { bonus.SetFromText("9 9 +9 9"); }), "could not parse integer: +9");
  EXPECT_EQ(FailureOf([&] { bonus.SetFromText("9 9 9 512"); }), "value out of bounds");
  EXPECT_EQ(FailureOf([&] { bonus.SetFromText("-512 9 9 9"); }), "value out of bounds");
  EXPECT_EQ(bonus.ToText(), "1 2 3 4");
}

TEST(BooleanVariable, KnowsOnlyTrueAndFalse) {
  Boolean flag("flag", 1);
  flag.SetFromText("true");
  EXPECT_EQ(flag.ToText(), "true");
  EXPECT_EQ(flag.Element(0), 1);
  EXPECT_EQ(FailureOf([&] { flag.SetFromText("yes"); }), "could not parse boolean: yes");
  EXPECT_EQ(FailureOf([&] { flag.SetFromText("True"); }), "could not parse boolean: True");
  EXPECT_EQ(FailureOf([&] { flag.SetFromText("1"); }), "could not parse boolean: 1");
  EXPECT_EQ(FailureOf([&] { flag.SetFromText("true false"); }), "invalid size");
  EXPECT_EQ(flag.ToText(), "true");
  flag.SetFromText("false");
  EXPECT_EQ(flag.ToText(), "false");
  EXPECT_EQ(flag.TypeName(), "boolean");
  EXPECT_EQ(flag.MinimumText(), "false");
  EXPECT_EQ(flag.MaximumText(), "true");
}

TEST(DataTypeAccess, GuardsAgainstMissingValuesBadIndexesAndSizes) {
  Integer value("value", 2, 0, 10);
  EXPECT_FALSE(value.Initialized());
  EXPECT_EQ(FailureOf([&] { value.Element(0); }), "not initialized");
  EXPECT_EQ(FailureOf([&] { value.ToText(); }), "not initialized");
  EXPECT_EQ(FailureOf([&] { value.Assign({1, 2, 3}); }), "invalid size");
  EXPECT_FALSE(value.Initialized());
  value.Assign({4, 5});
  EXPECT_TRUE(value.Initialized());
  EXPECT_EQ(FailureOf([&] { value.Element(2); }), "index out of bounds");
  EXPECT_EQ(FailureOf([&] { value.Element(-1); }), "index out of bounds");
  EXPECT_EQ(value.Element(1), 5);
}

}  // namespace
}  // namespace OptimizeInterface
