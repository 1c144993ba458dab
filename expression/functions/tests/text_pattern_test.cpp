// Regular expressions: the library's own results, bounds on time and memory whatever the pattern
// is, and one compiled pattern for all rows and threads.

#include "expression/functions/text_pattern.h"

#include <gtest/gtest.h>

#include <random>
#include <thread>

#include <sys/resource.h>

#include <re2/re2.h>

#include "expression/functions/recent_patterns.h"
#include "expression/functions/sequence_pattern.h"
#include "expression/functions/tests/table_calls.h"
#include "expression/functions/utf8_units.h"

namespace kelvarin {
namespace {

long long peakBytes() {
  struct rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss * 1024ll;
}

std::string repeated(std::string_view piece, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    text += piece;
  }
  return text;
}

bool isUtf8(std::string_view text) {
  return sizeOfValidPart(text) == text.size();
}

class TextPatterns : public ::testing::Test {
 protected:
  std::string extract(std::string_view text, std::string_view pattern, double group = 0) {
    return m_calls.text("regexExtract",
                        {textArgument(text), textArgument(pattern), numberArgument(group)});
  }
  std::string replace(std::string_view text, std::string_view pattern, std::string_view by) {
    return m_calls.text("regexReplace",
                        {textArgument(text), textArgument(pattern), textArgument(by)});
  }
  std::string_view oneOf(std::span<const std::string_view> pieces) {
    return pieces[m_random() % pieces.size()];
  }
  std::string randomOf(std::span<const std::string_view> pieces, unsigned count) {
    std::string text;
    for (unsigned left = m_random() % count; left > 0; --left) {
      text += oneOf(pieces);
    }
    return text;
  }
  void expectAsByTheLibrary(const std::string& pattern, const std::string& text,
                            const std::string& by);

  TableCalls m_calls;
  std::mt19937 m_random{5};
};

// Of all groups.
std::vector<std::string> groupsByTheLibrary(const re2::RE2& judge, std::string_view text) {
  std::vector<re2::StringPiece> pieces(static_cast<std::size_t>(judge.NumberOfCapturingGroups()) +
                                       1);
  std::vector<std::string> groups;
  const bool isFound = judge.Match(text, 0, text.size(), re2::RE2::UNANCHORED, pieces.data(),
                                   static_cast<int>(pieces.size()));
  for (const re2::StringPiece& piece : pieces) {
    groups.push_back(isFound && piece.data() != nullptr ? piece.as_string() : "null");
  }
  return groups;
}

// Matches, groups and replacements. `pattern` is one that the library compiles.
void TextPatterns::expectAsByTheLibrary(const std::string& pattern, const std::string& text,
                                        const std::string& by) {
  SCOPED_TRACE(pattern + " in " + text + " by " + by);
  const re2::RE2 judge(pattern, re2::RE2::Quiet);
  ASSERT_EQ(TextPattern(pattern).isIn(text), re2::RE2::PartialMatch(text, judge));
  const std::vector<std::string> groups = groupsByTheLibrary(judge, text);
  for (std::size_t group = 0; group < groups.size(); ++group) {
    ASSERT_EQ(extract(text, pattern, static_cast<double>(group)), groups[group]) << group;
  }
  std::string error;
  if (!judge.CheckRewriteString(by, &error)) {
    ASSERT_EQ(replace(text, pattern, by), "null");  // a failure
    return;
  }
  std::string expected = text;
  re2::RE2::GlobalReplace(&expected, judge, by);
  ASSERT_EQ(replace(text, pattern, by), expected);
}

constexpr std::string_view kReplacements[] = {"", "-", "\\0", "\\1", "\\\\", "ü"};

TEST_F(TextPatterns, ResultsAreThoseOfTheLibrary) {
  constexpr std::string_view patternPieces[] = {"a", "b", "ab", ".",   "*",   "+",   "?",
                                                "|", "(", ")",  "^",   "$",   "\\b", "[b",
                                                "]", "-", "é",  "\\d", "{2}", "x",   "(?i)"};
  constexpr std::string_view textPieces[] = {"a", "b", "ab", "é", "-", "7", "A", "x\n", "日", "😀"};
  int valid = 0;
  for (int i = 0; i < 60'000 && !HasFailure(); ++i) {
    const std::string pattern = randomOf(patternPieces, 8);
    const std::string text = randomOf(textPieces, 12);
    const std::string by = randomOf(kReplacements, 4);
    const bool isValid = re2::RE2(pattern, re2::RE2::Quiet).ok();
    ASSERT_EQ(TextPattern(pattern).fault().has_value(), !isValid) << pattern;
    if (isValid) {
      ++valid;
      expectAsByTheLibrary(pattern, text, by);
    }
  }
  EXPECT_GT(valid, 15'000);
}

// Sets of characters with counts, in and between groups, most of which the library only compiles.
TEST_F(TextPatterns, SequencesAreMatchedAsByTheLibrary) {
  constexpr std::string_view sets[] = {"a",      "[a-c]",  "[^,]", "[^a-c7]", "[-b]", "[b-]",
                                       "[\\d-]", "[\\w.]", ".",    "\\d",     "\\D",  "\\w",
                                       "\\W",    "\\s",    "\\S",  "\\.",     ",",    "é"};
  constexpr std::string_view counts[] = {"",  "",    "",      "",     "*",     "+",
                                         "?", "{2}", "{1,2}", "{2,}", "{0,1}", "{0}"};
  constexpr std::string_view textPieces[] = {"a", "b", "c", "7", "42", ",",
                                             ",", ".", "-", " ", "\n", "é"};
  int sequences = 0;
  for (int i = 0; i < 30'000 && !HasFailure(); ++i) {
    std::string pattern = m_random() % 8 == 0 ? "^" : "";
    bool isInGroup = false;
    for (unsigned left = 1 + m_random() % 5; left > 0; --left) {
      if (m_random() % 3 == 0) {
        pattern += isInGroup ? ")" : "(";
        isInGroup = !isInGroup;
      }
      pattern += oneOf(sets);
      pattern += oneOf(counts);
    }
    pattern += isInGroup ? ")" : "";
    pattern += m_random() % 8 == 0 ? "$" : "";
    sequences += SequencePattern::of(pattern).has_value() ? 1 : 0;
    expectAsByTheLibrary(pattern, randomOf(textPieces, 20), randomOf(kReplacements, 4));
  }
  EXPECT_GT(sequences, 10'000);
}

// Such bytes match nothing and stay; what is taken out of a text is always valid.
TEST_F(TextPatterns, BytesThatAreNoUtf8AreLeftAlone) {
  EXPECT_EQ(extract("a\xFF"
                    "b",
                    "a(.*)", 0),
            "a");
  EXPECT_EQ(extract("\xE2\x82", ".", 0), "null");
  EXPECT_EQ(extract("a\xED\xA0\x80z", "[^a]", 0), "\xED\xA0\x80");  // half a pair is a character
  EXPECT_EQ(replace("a\xFF\xC3z", ".", "<\\0>"), "<a>\xFF\xC3<z>");
  EXPECT_EQ(replace("a\xC3z", "z", "\xA9"), "a\xC3\xA9");
  constexpr std::string_view pieces[] = {"a",  "é",        "\xFF",        "\x80",
                                         "日", "\xE2\x82", "\xEF\xBB\xBF"};
  for (int i = 0; i < 5'000; ++i) {
    const std::string text = randomOf(pieces, 8);
    for (const char* pattern : {".*", "[^a]+", "\\B", "(?s).", "\\W*", "(?:)", "\\pL?"}) {
      ASSERT_TRUE(isUtf8(extract(text, pattern))) << text << pattern;
      ASSERT_TRUE(!isUtf8(text) || isUtf8(replace(text, pattern, "-"))) << text << pattern;
    }
  }
  EXPECT_TRUE(TextPattern("a\xFF").fault().has_value());
  EXPECT_EQ(TextPattern("é\xFF").fault()->position, 1u);
}

// Nested repetitions, alternatives that overlap, and programs that are as large as they may be: all
// over ten million characters.
TEST_F(TextPatterns, HostileOnesAreBounded) {
  const std::string letters(10'000'000, 'a');
  const long long before = peakBytes();
  for (const char* pattern : {"(a+)+$", "(a*)*b", "(a|aa)+$", "(.*)(.*)(.*)(.*)(.*)b", "(x+x+)+y",
                              "(a|b)*a(a|b){20}$", "((a{0,30}){0,30})*b"}) {
    const TextPattern tested(pattern);
    ASSERT_FALSE(tested.fault()) << pattern;
    tested.isIn(letters);
  }
  EXPECT_EQ(extract(letters, "^(a)(a*)$", 2).size(), letters.size() - 1);
  EXPECT_EQ(replace(letters, "a", "b"), std::string(letters.size(), 'b'));
  EXPECT_EQ(replace(letters, "a", std::string(7, 'b')), "null");  // beyond 64 MiB
  EXPECT_EQ(replace(letters, "a+", repeated("\\0", 7)), "null");
  EXPECT_LT(peakBytes() - before, 400ll << 20);
}

TEST_F(TextPatterns, LargeOnesAreRefused) {
  const std::string groups = repeated("(a)", TextPattern::kMaxGroups);
  EXPECT_FALSE(TextPattern(groups).fault());
  EXPECT_EQ(extract(repeated("a", 99) + "a", groups, 100), "a");
  for (const std::string& pattern :
       {groups + "(a)", repeated("a", TextPattern::kMaxBytes + 1), repeated("(", 60'000),
        repeated("(?:", 20'000) + repeated(")", 20'000), std::string("((a{1,100}){1,100}){1,100}"),
        repeated("[^\\pL\\pN]{0,9}", 1000)}) {
    EXPECT_TRUE(TextPattern(pattern).fault().has_value()) << pattern.substr(0, 50);
  }
}

TEST(RecentPatterns, AreCompiledOnceForAllCopies) {
  RecentPatterns patterns;
  const TextPattern* const compiled = &patterns.of("a+");
  RecentPatterns copy = patterns;
  EXPECT_EQ(&copy.of("a+"), compiled);
  EXPECT_NE(&copy.of("b+"), compiled);
  EXPECT_EQ(&copy.of("a+"), compiled);
  const std::string tooLong(TextPattern::kMaxBytes + 5, 'a');
  EXPECT_TRUE(copy.of(tooLong).fault().has_value());
  EXPECT_FALSE(copy.of("").fault().has_value());
}

TEST(RecentPatterns, ServeThreadsWithMorePatternsThanAreKept) {
  const RecentPatterns patterns;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([own = patterns]() mutable {
      for (int i = 0; i < 2'000; ++i) {
        const std::string digits = std::to_string(i % 20);
        ASSERT_TRUE(own.of("^" + digits + "$").isIn(digits));
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

}  // namespace
}  // namespace kelvarin
