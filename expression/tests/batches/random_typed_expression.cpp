#include "expression/tests/batches/random_typed_expression.h"

#include "base/null_number.h"
#include "expression/functions/function_table.h"

namespace kelvarin {

namespace {

constexpr const char* kOperators[] = {"+", "-", "*", "/", "%", "^", "&", "|", "<<", ">>"};
constexpr const char* kComparisons[] = {"<", "<=", ">", ">=", "==", "!="};
constexpr const char* kJoins[] = {"&&", "||", " and ", " or "};
constexpr const char* kPrefixes[] = {"-", "(int)", "(float)", "(int)-"};
constexpr const char* kLibraryFunctions[] = {"sin",  "cos",  "tan",   "asin", "acos",
                                             "atan", "sinh", "cosh",  "tanh", "exp",
                                             "ln",   "log",  "log10", "sqrt"};
constexpr const char* kNumberLeaves[] = {"0",  "1",     "2",  "3",      "-1",   "0.5", "1e3",
                                         "12", "_null", "pi", "_nan",   "0x1F", "_n",  "7{k}",
                                         "-3", "1.25",  "6",  "100{m}", "4"};
constexpr const char* kTextLiterals[] = {
    "",           " ",   "a",       "abc",       "e",    "-",    "12",   "3.5",         "ß",
    "Größe",      "😀",  "日本",    "\\n",       "\\\"", "\\\\", "0xff", "192.168.1.7", "yyyy",
    "2024-02-29", "AbC", "e\u0301", "dd.MM.yyyy"};
// As they stand in a literal.
constexpr const char* kPatterns[] = {"a",
                                     "[a-z]+",
                                     "(\\\\w+)-(\\\\d+)",
                                     "^\\\\s*|\\\\s*$",
                                     "(?i)ab|Größe",
                                     ".",
                                     "\\\\B",
                                     "",
                                     "(a)|(b)?",
                                     "\\\\pL*",
                                     "[^a]",
                                     "(.*)(\\\\d)",
                                     "😀|日+",
                                     "x(",
                                     "\\\\1",
                                     "$"};
constexpr const char* kReplacements[] = {"", "-", "<\\\\0>", "\\\\1", "\\\\\\\\ü", "\\\\2"};
constexpr std::string_view kPieces[] = {"a",
                                        "B",
                                        "abc",
                                        " ",
                                        "\t",
                                        "-",
                                        "12",
                                        "3.5e2",
                                        "ü",
                                        "Größe",
                                        "İ",
                                        "日本語",
                                        "😀",
                                        "e\xCC\x81",
                                        "\xFF",
                                        "\xE2\x82",
                                        "\xF0\x9F",
                                        "&<>\"",
                                        "%20",
                                        "\xC3",
                                        "192.168.0.1/24",
                                        "QUJD",
                                        ",",
                                        "\xED\xA0\x80",
                                        "\xC2\xA0",
                                        "ﬁ",
                                        "ΑΣ",
                                        "n/a",
                                        "\xE2\x80\xA8",
                                        "0x7f",
                                        "\\",
                                        "\xEF\xBB\xBF",
                                        "(",
                                        "[a"};
constexpr std::string_view kDates[] = {"2024-02-29", "1999-12-31", "2024-13-01",  "31.12.2020",
                                       "2024-1-1",   "0001-01-01", "2024-02-29 ", "9999-12-31"};
constexpr double kSpecialNumbers[] = {
    0.0,        -0.0,        1.0,         -1.0,        2.5,         3.0,  1e300,
    1e-300,     -1e9,        7.0,         1e15,        0.1,         -2.0, kInfinity,
    -kInfinity, kNotANumber, kNullNumber, kNullNumber, 4294967295.0};

std::string quoted(const char* literal) {
  return '"' + std::string(literal) + '"';
}

}  // namespace

RandomTypedExpression::RandomTypedExpression(unsigned seed) : m_random(seed) {
  for (const FunctionLine& line : functionTable()) {
    if ((line.backends & kInString) == 0) {
      continue;
    }
    switch (line.result) {
      case ResultKind::text:
        m_texts.push_back(&line);
        if (line.checkOfConstants != nullptr) {
          m_fallibleTexts.push_back(&line);
        }
        break;
      case ResultKind::number:
        m_numbers.push_back(&line);
        break;
      case ResultKind::test:
        m_tests.push_back(&line);
        if (line.checkOfConstants != nullptr) {
          m_fallibleTests.push_back(&line);
        }
        break;
      case ResultKind::argument:
        m_choices.push_back(&line);
        break;
    }
  }
}

std::string RandomTypedExpression::expression() {
  return valueOf(1 + static_cast<int>(below(4)));
}

std::string RandomTypedExpression::valueOf(int depth) {
  const unsigned kind = below(10);
  return kind < 5 ? textOf(depth) : kind < 8 ? numberOf(depth) : conditionOf(depth);
}

std::string RandomTypedExpression::textOf(int depth) {
  if (depth <= 0 || isChance(15)) {
    return isChance(60) ? oneOf(kTexts) : textLiteral();
  }
  switch (below(10)) {
    case 0:
    case 1:
    case 2:
      return textOf(depth - 1) + "//" + textOf(depth - 1);
    case 3:
      return "(" + textOf(depth - 1) + "//" + textOf(depth - 1) + ")";
    case 4:
      return choice(depth, textOf(depth - 1), textOf(depth - 1));
    case 5:
      return choice(depth, textOf(depth - 1), call(*oneOf(m_fallibleTexts), depth - 1));
    case 6:
      return call(*oneOf(m_choices), depth - 1);
    default:
      return call(*oneOf(m_texts), depth - 1);
  }
}

std::string RandomTypedExpression::choice(int depth, const std::string& first,
                                          const std::string& second) {
  const bool isInOrder = isChance(50);
  return "(" + conditionOf(depth - 1) + "?" + (isInOrder ? first : second) + ":" +
         (isInOrder ? second : first) + ")";
}

std::string RandomTypedExpression::numberOf(int depth) {
  if (isChance(3)) {
    return valueOf(depth - 1);
  }
  if (depth <= 0 || isChance(15)) {
    return isChance(60) ? oneOf(kNumbers) : oneOf(kNumberLeaves);
  }
  switch (below(12)) {
    case 0:
    case 1:
    case 2:
      return numberOf(depth - 1) + oneOf(kOperators) + numberOf(depth - 1);
    case 3:
      return "(" + numberOf(depth - 1) + " " + oneOf(kOperators) + " " + numberOf(depth - 1) + ")";
    case 4:
      return oneOf(kPrefixes) + numberOf(depth - 1);
    case 5:
      return isChance(50) ? choice(depth, numberOf(depth - 1), numberOf(depth - 1))
                          : conditionOf(depth - 1) + " ? " + numberOf(depth - 1) + " : " +
                                numberOf(depth - 1);
    case 6:
      return oneOf(kLibraryFunctions) + ("(" + numberOf(depth - 1)) + ")";
    case 7:
      return isChance(50) ? call(*oneOf(m_choices), depth - 1) : call(*oneOf(m_tests), depth - 1);
    default:
      return call(*oneOf(m_numbers), depth - 1);
  }
}

std::string RandomTypedExpression::conditionOf(int depth) {
  if (isChance(3)) {
    return valueOf(depth - 1);
  }
  switch (below(10)) {
    case 0:
    case 1:
      return textOf(depth - 1) + oneOf(kComparisons) + textOf(depth - 1);
    case 2:
    case 3:
      return numberOf(depth - 1) + oneOf(kComparisons) + numberOf(depth - 1);
    case 4:
      return depth <= 0 ? call(*oneOf(m_tests), 0)
                        : conditionOf(depth - 1) + oneOf(kJoins) + conditionOf(depth - 1);
    case 5:
      return depth <= 0 ? call(*oneOf(m_tests), 0) : "(" + conditionOf(depth - 1) + ")";
    case 6:
      return choice(depth, conditionOf(depth - 1), call(*oneOf(m_fallibleTests), depth - 1));
    case 7:
      return "(" + conditionOf(depth - 1) + oneOf(kJoins) +
             call(*oneOf(m_fallibleTests), depth - 1) + ")";
    default:
      return call(*oneOf(m_tests), depth - 1);
  }
}

std::string RandomTypedExpression::call(const FunctionLine& line, int depth) {
  const int count =
      line.argumentCount == kAnyArgumentCount ? 1 + static_cast<int>(below(4)) : line.argumentCount;
  std::string text = std::string(line.name) + "(";
  for (int i = 0; i < count; ++i) {
    text += (i > 0 ? "," : "") + argument(line, i, depth);
  }
  return text + ")";
}

// Functions with a body of values mostly take a text first and numbers, or more texts, behind it.
std::string RandomTypedExpression::argument(const FunctionLine& line, int index, int depth) {
  if (isChance(8)) {
    return valueOf(depth);
  }
  if (line.checkOfConstants != nullptr && index > 0 && isChance(80)) {
    return isChance(25)   ? oneOf(kTexts)
           : index == 1   ? quoted(oneOf(kPatterns))
           : isChance(50) ? quoted(oneOf(kReplacements))
                          : std::to_string(below(3));
  }
  if (line.body.value == nullptr) {
    return numberOf(depth);
  }
  if (line.result == ResultKind::argument) {
    return isChance(70) ? textOf(depth) : numberOf(depth);
  }
  return isChance(index == 0 ? 85 : 50) ? textOf(depth) : numberOf(depth);
}

std::string RandomTypedExpression::textLiteral() {
  return isChance(10) ? "_nullS" : quoted(oneOf(kTextLiterals));
}

double RandomTypedExpression::number() {
  return isChance(50) ? oneOf(kSpecialNumbers)
                      : static_cast<double>(static_cast<int>(below(2000)) - 500) / 8.0;
}

std::string RandomTypedExpression::text() {
  if (isChance(15)) {
    return std::string(oneOf(kDates));
  }
  if (isChance(2)) {
    return std::string("\xFF\x00\xFF", 3);  // as the String Parser spells the null text
  }
  const unsigned pieces = isChance(3) ? below(3000) : below(6);
  std::string text;
  for (unsigned i = 0; i < pieces; ++i) {
    text += isChance(2) ? std::string(1, '\0') : std::string(oneOf(kPieces));
  }
  return text;
}

}  // namespace kelvarin
