#include "expression/tokens/tokenizer.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

#include "expression/tokens/expression_tokens.h"

namespace kelvarin {
namespace {

// A letter for each kind, in front of the token's text.
QString shown(const QString& expression) {
  constexpr QStringView kLetters = u"ndtou()s_#?";
  const ExpressionTokens tokens(expression);
  QString all;
  for (const Token& token : tokens) {
    all += kLetters[static_cast<qsizetype>(token.kind)];
    all += tokens.text(token);
    all += QLatin1String(token.fault == TokenFault::none ? " " : "! ");
  }
  return all.trimmed();
}

TEST(Tokenizer, CutsWhatTheLanguageKnows) {
  const struct {
    const char* expression;
    const char* tokens;
  } cases[] = {
      {"a+_b1*größe", "na o+ n_b1 o* ngröße"},
      {"min (x,\t2)", "nmin _  (( nx s, _\t d2 ))"},
      {"1.5e-3+.5-5.", "d1.5e-3 o+ d.5 o- d5."},
      {"0x1e+5 0xG", "d0x1e o+ d5 _  d0 nxG"},
      {"3k 2e+x 1.2.3", "d3 nk _  d2 ne o+ nx _  d1.2 d.3"},
      {"3{k}+x {mu}*(1){G}", "d3 u{k} o+ nx _  u{mu} o* (( d1 )) u{G}"},
      {"{k}+\"a\"{k}+2{q}", "({ nk )} o+ t\"a\" ({ nk )} o+ d2 ({ nq )}"},
      {"a<=b<<c!=!d", "na o<= nb o<< nc o!= o! nd"},
      {"a&&&b|c//=d", "na o&& o& nb o| nc o// o= nd"},
      {"\"a\\\"b\\\\\"//\"\"", "t\"a\\\"b\\\\\" o// t\"\""},
      {"\"\\x\"+\"a\\", "t\"\\x\"! o+ t\"a\\!"},
      {"x # \"a", "nx _  ## \"a"},
      {"@.\v", "?@ ?. ?\v"},
      {"", ""},
  };
  for (const auto& [expression, tokens] : cases) {
    EXPECT_EQ(shown(expression), QString(tokens).trimmed()) << expression;
  }
}

TEST(Tokenizer, LosesNoCharacterWhateverTheText) {
  const QString characters = QStringLiteral("ae01.x\"\\#{}k()[],;<>=!&|/+-^ \t\n'?:~@é€𝄞");
  std::mt19937 random(7);
  for (int round = 0; round < 20'000; ++round) {
    QString expression;
    for (auto left = random() % 14; left > 0; --left) {
      expression += characters[static_cast<qsizetype>(random() % characters.size())];
    }
    const ExpressionTokens tokens(expression);
    QString joined;
    for (const Token& token : tokens) {
      ASSERT_GT(token.size, 0u);
      ASSERT_EQ(positionOf(token), joined.size());
      joined += tokens.text(token);
    }
    ASSERT_EQ(joined, expression);
  }
}

// A sanitizer sees a character that is read behind the end.
TEST(Tokenizer, ReadsNothingBehindTheEnd) {
  const std::u16string whole = u"0x1f+1.5e-3{mu}<=\"a\\\"b\"//c&&d";
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const std::vector<char16_t> exact(whole.begin(), whole.begin() + static_cast<long>(size));
    const Tokens tokens = tokensOf(std::u16string_view(exact.data(), exact.size()));
    EXPECT_EQ(tokens.empty() ? 0 : tokens.back().end(), size);
  }
}

TEST(Tokenizer, Latin1BytesAreCutAsTheSameCharacters) {
  const std::string bytes = "\xE9t\xE9 + 2{k} // \"\xE9\\n\"";
  const std::u16string units = u"été + 2{k} // \"é\\n\"";
  const Tokens ofBytes = tokensOf(std::string_view(bytes));
  const Tokens ofUnits = tokensOf(std::u16string_view(units));
  ASSERT_EQ(ofBytes.size(), ofUnits.size());
  for (std::size_t i = 0; i < ofBytes.size(); ++i) {
    EXPECT_EQ(ofBytes[i].kind, ofUnits[i].kind);
    EXPECT_EQ(ofBytes[i].end(), ofUnits[i].end());
  }
}

TEST(Tokenizer, BracketsHavePartners) {
  const ExpressionTokens tokens("f(a[1], {2}) + (b] + ((c)");
  const auto partner = [&](std::size_t index) { return partnerOf(tokens.all(), index); };
  EXPECT_EQ(partner(1), 11u);
  EXPECT_EQ(partner(11), 1u);
  EXPECT_EQ(partner(3), 5u);
  EXPECT_EQ(partner(8), 10u);
  EXPECT_EQ(partner(0), kNoToken) << "a name";
  EXPECT_EQ(partner(15), kNoToken) << "closed by another kind";
  EXPECT_EQ(partner(17), kNoToken);
  EXPECT_EQ(partner(21), kNoToken) << "never closed";
  EXPECT_EQ(tokens.textAt(partner(22)), u")");
}

TEST(Tokenizer, CallsAndFreeNames) {
  const ExpressionTokens tokens("sin (x) + 3k(2)");
  EXPECT_TRUE(isCall(tokens.all(), 0));
  EXPECT_FALSE(isCall(tokens.all(), 3));
  EXPECT_TRUE(isFreeName(tokens.all(), 3));
  EXPECT_EQ(tokens.textAt(9), u"k");
  EXPECT_FALSE(isFreeName(tokens.all(), 9) || isCall(tokens.all(), 9));
  EXPECT_EQ(tokenBefore(tokens.all(), 6), 4u);
  EXPECT_EQ(tokenBefore(tokens.all(), 0), kNoToken);
  EXPECT_EQ(tokenAfter(tokens.all(), tokens.size() - 1), kNoToken);
}

TEST(Literals, NamesBeginWithNoDigit) {
  EXPECT_TRUE(isVariableName("_größe1"));
  EXPECT_FALSE(isVariableName("1a"));
  EXPECT_FALSE(isVariableName("net price"));
  EXPECT_FALSE(isVariableName(""));
}

TEST(Literals, EscapesStandForCharacters) {
  EXPECT_EQ(textOfLiteral(std::u16string_view(u"\"a\\n\\r\\t\\\"\\\\é\"")), u"a\n\r\t\"\\é");
  EXPECT_EQ(textOfLiteral(std::string_view("\"\"")), "");
  EXPECT_EQ(textOfLiteral(std::string_view("\"\\x\"")), std::nullopt);
  EXPECT_EQ(textOfLiteral(std::string_view("\"a")), std::nullopt);
}

}  // namespace
}  // namespace kelvarin
