#include "expression/backends/fast_signs.h"

#include <string>

#include "expression/errors/backend_kind.h"
#include "expression/backends/bit_operations.h"
#include "expression/backends/expression_text.h"
#include "expression/errors/messages.h"
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

bool isLogicSign(QStringView text) {
  return text.startsWith(QLatin1String("&&")) || text.startsWith(QLatin1String("||"));
}

std::string bytesOf(const Sign& sign) {
  return std::string(1, static_cast<char>(sign.character));
}

// Kinds of operators between || && and the sums, as flags.
constexpr unsigned kBitAnd = 1;
constexpr unsigned kBitOr = 2;
constexpr unsigned kShift = 4;
constexpr unsigned kComparison = 8;

unsigned kindsIn(const QString& expression) {
  unsigned kinds = 0;
  qsizetype i = 0;
  while (i < expression.size()) {
    const QChar c = expression[i];
    const bool isPair = i + 1 < expression.size() && expression[i + 1] == c;
    if (c == u'"') {
      i = endOfTextLiteral(expression, i);
      continue;
    }
    if (c == u'&' || c == u'|') {
      kinds |= isPair ? 0 : c == u'&' ? kBitAnd : kBitOr;
    } else if (c == u'<' || c == u'>') {
      kinds |= isPair ? kShift : kComparison;
    } else if (c == u'=' || c == u'!') {
      kinds |= kComparison;
    }
    i += isPair ? 2 : 1;
  }
  return kinds;
}

bool isAmbiguous(unsigned kinds) {
  const bool isOneKind = (kinds & (kinds - 1)) == 0;
  return !isOneKind && kinds != kComparison;
}

}  // namespace

std::optional<ExpressionError> refusalOfSigns(const QString& expression) {
  for (const Sign& sign : kSigns) {
    if (const qsizetype position = expression.indexOf(QChar(sign.character)); position >= 0) {
      return ExpressionError{
          QString::fromUtf8(messages::kControlCharacter), static_cast<int>(position), {}};
    }
  }
  if (isAmbiguous(kindsIn(expression))) {
    const QString message = QString::fromUtf8(messages::kMixedBitOperators);
    return ExpressionError{message.arg(QLatin1String(backendLabel(BackendKind::fast))), -1, {}};
  }
  return std::nullopt;
}

QString withSignCharacters(QString expression, const QSet<QString>& columns) {
  qsizetype i = 0;
  while (i < expression.size()) {
    if (expression[i] == u'"') {
      i = endOfTextLiteral(std::as_const(expression), i);
      continue;
    }
    if (isLogicSign(QStringView(expression).sliced(i))) {
      i += 2;
      continue;
    }
    for (const Sign& sign : kSigns) {
      const QLatin1String text(sign.text);
      if (QStringView(expression).sliced(i).startsWith(text) &&
          !columns.contains(QLatin1String(sign.name))) {
        expression.replace(i, text.size(), QString(sign.character).leftJustified(text.size()));
        break;
      }
    }
    ++i;
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
  return message;
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
