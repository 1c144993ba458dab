#include "expression/functions/function_table.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

namespace kelvarin {
namespace {

TEST(FunctionTable, NamesAreUniqueAcrossThemesAndConstants) {
  std::set<std::string> names;
  for (const FunctionLine& line : functionTable()) {
    EXPECT_TRUE(names.insert(line.name).second) << line.name;
  }
  for (const ConstantLine& line : constantTable()) {
    EXPECT_TRUE(names.insert(line.name).second) << line.name;
  }
}

TEST(FunctionTable, KeepsTheOddSpellings) {
  std::set<std::string> native;
  std::set<std::string> helps;
  for (const FunctionLine& line : functionTable()) {
    if ((line.backends & kInNative) != 0) {
      native.insert(line.name);
    }
    helps.insert(line.help);
  }
  EXPECT_TRUE(native.count("isNuLL"));
  EXPECT_FALSE(native.count("isNull"));
  EXPECT_TRUE(helps.count("isMising(x) - test if x is missing"));
  EXPECT_TRUE(helps.count("nanvl2(a,b,c) -  if a is nan return c, otherwise return b"));
  EXPECT_TRUE(helps.count("sqr(x) - return x"));
}

TEST(FunctionTable, ReservedPatternsAreExact) {
  for (const ConstantLine& line : constantTable()) {
    const std::string name = line.name;
    const auto bits = std::bit_cast<std::uint64_t>(line.number);
    if (name == "_null") {
      EXPECT_EQ(bits, 0xFFFFFFFFFFFFFFFFull);
    } else if (name == "_nan") {
      EXPECT_EQ(bits, 0xFFF8000000000000ull);
    } else if (name == "_infinity") {
      EXPECT_EQ(bits, 0x7FF0000000000000ull);
    }
  }
}

}  // namespace
}  // namespace kelvarin
