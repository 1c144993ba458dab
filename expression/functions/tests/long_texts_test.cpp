// A text that functions double again and again ends as null, and a long one that does not grow
// stays.

#include <gtest/gtest.h>

#include "expression/functions/tests/table_calls.h"

namespace kelvarin {
namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;

TEST(LongTexts, GrowthEndsInNull) {
  TableCalls calls;
  const std::string quotes(40 * kMiB, '"');
  const FunctionArgument text = textArgument(quotes);
  EXPECT_EQ(calls.text("jsonEncode", {text}), "null");
  EXPECT_EQ(calls.text("urlEncode", {text}), "null");
  EXPECT_EQ(calls.text("replace", {text, textArgument("\""), textArgument("ab")}), "null");
}

TEST(LongTexts, WhatDoesNotGrowStays) {
  TableCalls calls;
  const std::string letters(65 * kMiB, 'a');
  const FunctionArgument text = textArgument(letters);
  EXPECT_EQ(calls.text("jsonEncode", {text}).size(), letters.size());
  EXPECT_EQ(calls.text("trim2", {text, textArgument("b")}).size(), letters.size());
  EXPECT_EQ(calls.text("replace", {text, textArgument("b"), textArgument("c")}).size(),
            letters.size());
  EXPECT_EQ(calls.text("atob64", {text}), "null");
}

}  // namespace
}  // namespace kelvarin
