#include "expression/backends/fast_signs.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "expression/backends/bit_operations.h"
#include "expression/errors/backend_kind.h"
#include "expression/errors/messages.h"
#include "expression/tokens/expression_tokens.h"
#include "jit/arithmetic.h"

namespace kelvarin {

namespace {

struct Sign {
  const char* text;
  char16_t character;
  const char* name;  // a column's name that takes it away
};

constexpr Sign kToInteger{"(int)", 0x9F, "int"};
constexpr Sign kToFloat{"(float)", 0x9D, "float"};
constexpr Sign kShiftLeft{"<<", 0x9C, ""};
constexpr Sign kShiftRight{">>", 0x9B, ""};
// The library takes `&&a` for a `&` with something wrong behind it.
constexpr Sign kBitwiseAnd{"&", 0x9A, ""};
constexpr Sign kBitwiseOr{"|", 0x99, ""};
// The built-in one is a product for some exponents and cannot be replaced.
constexpr Sign kPower{"^", 0x9E, ""};
constexpr Sign kSigns[] = {kPower,      kToInteger,  kToFloat,  kShiftLeft,
                           kShiftRight, kBitwiseAnd, kBitwiseOr};

// In texts, where the library would take a quote or a backslash for more than it is.
constexpr Sign kQuoteInText{"\\\"", 0x98, ""};
constexpr Sign kBackslashInText{"\\\\", 0x97, ""};
constexpr Sign kEscapes[] = {kQuoteInText, kBackslashInText};

std::string bytesOf(const Sign& sign) {
  return std::string(1, static_cast<char>(sign.character));
}

// Kinds of operators between || && and the sums, as flags.
constexpr unsigned kBitAnd = 1;
constexpr unsigned kBitOr = 2;
constexpr unsigned kShift = 4;
constexpr unsigned kComparison = 8;

unsigned kindOf(const Token& token) {
  if (token.sign == "&") {
    return kBitAnd;
  }
  if (token.sign == "|") {
    return kBitOr;
  }
  if (token.sign == "<<" || token.sign == ">>") {
    return kShift;
  }
  return isComparison(token) || isAssignment(token) || token.sign == "!" ? kComparison : 0;
}

unsigned kindsIn(const ExpressionTokens& tokens) {
  unsigned kinds = 0;
  for (const Token& token : tokens) {
    kinds |= kindOf(token);
  }
  return kinds;
}

bool isAmbiguous(unsigned kinds) {
  const bool isOneKind = (kinds & (kinds - 1)) == 0;
  return !isOneKind && kinds != kComparison;
}

std::optional<qsizetype> positionOfSignCharacter(const QString& expression) {
  const auto isTaken = [](QChar c) {
    const auto isOfSign = [c](const Sign& sign) { return c == QChar(sign.character); };
    return std::any_of(std::begin(kSigns), std::end(kSigns), isOfSign) ||
           std::any_of(std::begin(kEscapes), std::end(kEscapes), isOfSign);
  };
  const auto found = std::find_if(expression.begin(), expression.end(), isTaken);
  return found == expression.end() ? std::nullopt
                                   : std::optional<qsizetype>(found - expression.begin());
}

// The casts' brackets touch their name; no column takes the other signs away.
bool isAt(const Sign& sign, const ExpressionTokens& tokens, std::size_t index,
          const QSet<QString>& columns) {
  const QLatin1String name(sign.name);
  if (name.isEmpty()) {
    return tokens[index].sign == sign.text;
  }
  return index + 2 < tokens.size() && tokens[index].sign == "(" &&
         tokens.textAt(index + 1) == name && tokens[index + 2].sign == ")" &&
         !columns.contains(name);
}

// What the literal stands for, with blanks behind it up to the size of the literal.
QString preparedText(QStringView literal) {
  QString text = QString::fromStdU16String(*textOfLiteral(unitsOf(literal)));
  text.replace(u'"', QChar(kQuoteInText.character));
  text.replace(u'\\', QChar(kBackslashInText.character));
  return (u'"' + text + u'"').leftJustified(literal.size());
}

}  // namespace

std::optional<ExpressionError> refusalOfSigns(const QString& expression) {
  if (const auto position = positionOfSignCharacter(expression)) {
    return ExpressionError{.message = messages::controlCharacter(),
                           .position = static_cast<int>(*position),
                           .kind = ExpressionError::Kind::refusedCharacter};
  }
  const ExpressionTokens tokens(expression);
  for (const Token& token : tokens) {
    if (token.fault == TokenFault::unknownEscape) {
      return ExpressionError{.message = messages::unknownEscape(),
                             .position = static_cast<int>(positionOf(token)),
                             .token = tokens.text(token).toString()};
    }
  }
  if (isAmbiguous(kindsIn(tokens))) {
    const QLatin1String engine(backendLabel(BackendKind::fast));
    return ExpressionError{messages::mixedBitOperators(engine), -1, {}};
  }
  return std::nullopt;
}

QString withSignCharacters(QString expression, const QSet<QString>& columns) {
  const ExpressionTokens tokens(expression);
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const Token& token = tokens[i];
    if (token.kind == TokenKind::text && token.fault == TokenFault::none) {
      expression.replace(positionOf(token), sizeOf(token), preparedText(tokens.text(token)));
      continue;
    }
    for (const Sign& sign : kSigns) {
      if (isAt(sign, tokens, i, columns)) {
        const auto size = static_cast<qsizetype>(std::strlen(sign.text));
        expression.replace(positionOf(token), size, QString(sign.character).leftJustified(size));
        break;
      }
    }
  }
  return expression;
}

QString withWrittenSigns(QString message) {
  for (const Sign& sign : kSigns) {
    const QLatin1String text(sign.text);
    const QString character(1, QChar(sign.character));
    message.replace(character.leftJustified(text.size()), text);
    message.replace(character, text);
  }
  for (const Sign& sign : kEscapes) {
    message.replace(QChar(sign.character), QLatin1String(sign.text));
  }
  return message;
}

std::string withoutEscapes(std::string latin1) {
  for (const Sign& sign : kEscapes) {
    std::replace(latin1.begin(), latin1.end(), static_cast<char>(sign.character), sign.text[1]);
  }
  return latin1;
}

void addSigns(mu::Parser& parser) {
  std::string operators = parser.ValidOprtChars();
  std::string prefixes = parser.ValidInfixOprtChars();
  for (const Sign& sign : kSigns) {
    operators += bytesOf(sign);
    prefixes += bytesOf(sign);
  }
  parser.DefineOprtChars(operators.c_str());
  parser.DefineInfixOprtChars(prefixes.c_str());
  parser.DefineOprt(bytesOf(kPower), jit::power, mu::prPOW, mu::oaRIGHT);
  // One kind stands alone in an expression, between && and sums.
  parser.DefineOprt(bytesOf(kBitwiseAnd), bits::bitAnd, mu::prLOGIC, mu::oaLEFT);
  parser.DefineOprt(bytesOf(kBitwiseOr), bits::bitOr, mu::prLOGIC, mu::oaLEFT);
  parser.DefineOprt(bytesOf(kShiftLeft), bits::shiftLeft, mu::prLOGIC, mu::oaLEFT);
  parser.DefineOprt(bytesOf(kShiftRight), bits::shiftRight, mu::prLOGIC, mu::oaLEFT);
  parser.DefineInfixOprt(bytesOf(kToInteger), bits::toInteger);
  parser.DefineInfixOprt(bytesOf(kToFloat), bits::toFloat);
}

}  // namespace kelvarin
