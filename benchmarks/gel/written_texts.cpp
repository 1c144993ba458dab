#include "benchmarks/gel/written_texts.h"

#include <algorithm>
#include <array>
#include <cctype>

#include <fmt/format.h>

namespace kelvarin {

namespace {

const std::vector<std::string> kFrequentWords = {
    "the",    "of",    "and",    "to",     "a",      "in",     "is",     "that",    "it",
    "was",    "for",   "on",     "with",   "as",     "be",     "at",     "by",      "this",
    "had",    "not",   "are",    "but",    "from",   "or",     "have",   "an",      "they",
    "which",  "one",   "you",    "were",   "all",    "her",    "she",    "there",   "would",
    "their",  "we",    "him",    "been",   "has",    "when",   "who",    "will",    "no",
    "more",   "if",    "out",    "so",     "up",     "said",   "what",   "about",   "than",
    "into",   "them",  "can",    "only",   "other",  "time",   "new",    "some",    "could",
    "these",  "two",   "may",    "first",  "then",   "do",     "any",    "like",    "my",
    "now",    "over",  "such",   "our",    "man",    "me",     "even",   "most",    "made",
    "after",  "also",  "did",    "many",   "off",    "must",   "well",   "back",    "through",
    "years",  "much",  "where",  "your",   "way",    "down",   "should", "because", "long",
    "each",   "order", "price",  "report", "market", "water",  "house",  "people",  "city",
    "number", "table", "price",  "letter", "garden", "street", "train",  "paper",   "winter",
    "answer", "river", "company"};

const std::vector<std::string> kFrequentIdentifiers = {
    "row",   "column", "value", "index",  "size",  "text",    "name",  "count",   "result", "file",
    "begin", "end",    "data",  "type",   "block", "bytes",   "error", "options", "item",   "key",
    "path",  "number", "table", "list",   "state", "reader",  "line",  "found",   "first",  "last",
    "node",  "graph",  "input", "output", "batch", "message", "test",  "field",   "writer", "code"};

struct Piece {
  const char* text;
  double weight;
};

// $v a name, $t a type, $f a function, $m a member, $e an expression, $n a number, $w words.
constexpr Piece kStatements[] = {
    {"}", 14},
    {"return $e;", 8},
    {"if ($e) {", 7},
    {"const $t $v = $e;", 9},
    {"const auto $v = $v.$f($e);", 6},
    {"$m = $e;", 4},
    {"$v.$f($e);", 9},
    {"$f($e, $e);", 6},
    {"for (const $t& $v : $v) {", 3},
    {"// $w.", 8},
    {"#include \"$v/$v.h\"", 3},
    {"$t $v;", 4},
    {"break;", 1},
    {"case $t::$v:", 2},
    {"};", 2},
    {"$t $f(const $t& $v, $t $v) const;", 4},
    {"EXPECT_EQ($e, $e);", 5},
    {"} else {", 1},
    {"std::vector<$t> $v;", 2},
    {"static_cast<$t>($e),", 2},
};

constexpr Piece kExpressions[] = {
    {"$v", 30},      {"$m", 12},        {"$n", 10},    {"$v.$f()", 14}, {"$f($e)", 10},
    {"nullptr", 3},  {"true", 2},       {"$v[$e]", 5}, {"$v.$v", 6},    {"$e + $e", 4},
    {"$e == $e", 4}, {"$v->$f($e)", 4}, {"\"$w\"", 4},
};

constexpr const char* kTypes[] = {"int",         "double", "bool",          "std::size_t",
                                  "std::string", "char",   "std::uint64_t", "auto"};
constexpr int kDeepest = 3;

template <std::size_t count>
WeightedChoice choiceOf(const Piece (&pieces)[count]) {
  std::vector<double> weights;
  for (const Piece& piece : pieces) {
    weights.push_back(piece.weight);
  }
  return WeightedChoice(std::move(weights));
}

std::string capitalized(std::string word) {
  word[0] = static_cast<char>(std::toupper(word[0]));
  return word;
}

}  // namespace

WrittenTexts::WrittenTexts()
    : m_words(kFrequentWords, 2500, 1),
      m_identifiers(kFrequentIdentifiers, 1500, 2),
      m_statements(choiceOf(kStatements)),
      m_expressions(choiceOf(kExpressions)),
      m_indents({3, 6, 6, 3, 1}) {}

std::string WrittenTexts::sentence(Chance& chance) const {
  const std::uint64_t words = 5 + chance.below(7);
  std::size_t word = m_words.draw(chance);
  std::string text = capitalized(m_words.word(word));
  for (std::uint64_t i = 1; i < words; ++i) {
    word = m_words.drawAfter(word, chance);
    text += chance.below(16) == 0 ? ", " : " ";
    text += m_words.word(word);
  }
  return text + ".";
}

std::string WrittenTexts::identifier(Chance& chance) const {
  std::size_t word = m_identifiers.draw(chance);
  std::string name = m_identifiers.word(word);
  if (chance.below(2) == 0) {
    word = m_identifiers.drawAfter(word, chance);
    name += capitalized(m_identifiers.word(word));
  }
  return name;
}

void WrittenTexts::appendDrawn(char kind, Chance& chance, int depth, std::string& line) const {
  switch (kind) {
    case 'v':
    case 'f':
      line += identifier(chance);
      return;
    case 'm':
      line += "m_" + identifier(chance);
      return;
    case 't':
      line += chance.below(2) == 0 ? kTypes[chance.below(std::size(kTypes))]
                                   : capitalized(identifier(chance));
      return;
    case 'n':
      line += std::to_string(chance.below(4) > 0 ? chance.below(10) : 10 + chance.below(1000));
      return;
    case 'w': {
      std::size_t word = m_words.draw(chance);
      line += m_words.word(word);
      for (std::uint64_t left = chance.below(9); left > 0; --left) {
        word = m_words.drawAfter(word, chance);
        line += " " + m_words.word(word);
      }
      return;
    }
    default:
      // What is nested too deeply ends in a name.
      appendCode(depth < kDeepest ? kExpressions[m_expressions.draw(chance)].text : "$v", chance,
                 depth + 1, line);
  }
}

void WrittenTexts::appendCode(std::string_view piece, Chance& chance, int depth,
                              std::string& line) const {
  for (std::size_t i = 0; i < piece.size(); ++i) {
    if (piece[i] == '$') {
      appendDrawn(piece[++i], chance, depth, line);
    } else {
      line += piece[i];
    }
  }
}

std::string WrittenTexts::lineOfCode(Chance& chance) const {
  std::string line(2 * m_indents.draw(chance), ' ');
  appendCode(kStatements[m_statements.draw(chance)].text, chance, 0, line);
  return line;
}

const std::string& WrittenTexts::firstWordOf(std::uint64_t limit, Chance& chance) const {
  constexpr std::size_t kFirstMadeWord = 200;  // those before are no names
  return m_words.word(kFirstMadeWord + chance.below(limit));
}

std::string WrittenTexts::url(Chance& chance) const {
  const std::string& host = firstWordOf(40, chance);
  const std::string& section = firstWordOf(60, chance);
  const std::string& page = m_words.word(m_words.draw(chance));
  const std::uint64_t number = chance.below(100'000);
  return fmt::format("{}://www.{}.com/{}/{}?id={}", "https", host, section, page, number);
}

std::string WrittenTexts::email(Chance& chance) const {
  constexpr const char* kHosts[] = {"example.com", "mail.example.org", "post.example.net",
                                    "example.de"};
  const std::string& first = firstWordOf(100, chance);
  const std::string& last = firstWordOf(400, chance);
  const std::uint64_t number = chance.below(50);
  return fmt::format("{}.{}{}@{}", first, last, number, kHosts[chance.below(std::size(kHosts))]);
}

}  // namespace kelvarin
