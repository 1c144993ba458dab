#include "expression/errors/error_texts.h"

#include <algorithm>

#include "expression/errors/messages.h"

namespace kelvarin {

namespace {

QString rowLine(const char* pattern, const ExpressionError& error, std::int64_t row,
                const QString& actionName) {
  return QString::fromUtf8(pattern).arg(QString::number(row), QString::number(error.position),
                                        actionName);
}

QString namedErrorText(const char* opening, const QString& expressionName,
                       const ExpressionError& error, const FailurePlace& place) {
  const char* pattern =
      place.backend == BackendKind::string ? messages::kRowLineOfString : messages::kRowLine;
  return QString::fromUtf8(opening).arg(expressionName) + error.message +
         rowLine(pattern, error, place.row, place.actionName);
}

struct Picture {
  const char* phrase;
  const char* path;
};

constexpr Picture kPictures[] = {
    {messages::kUndefinedTokenPhrase, ":/KelvarinMathParser/undefinedToken.png"},
    {messages::kConversionPhrase, ":/KelvarinMathParser/errorCast.png"},
    {messages::kNumberForString, ":/KelvarinMathParser/errorEvaluatedToNumber.png"},
    {messages::kStringForNumber, ":/KelvarinMathParser/errorEvaluatedToString.png"},
};

}  // namespace

QString calculatorErrorText(const QString& expressionName, const ExpressionError& error,
                            const FailurePlace& place) {
  return namedErrorText(messages::kCalculatorOpening, expressionName, error, place);
}

QString vectorizedErrorText(const QString& expressionName, const ExpressionError& error,
                            const FailurePlace& place) {
  return namedErrorText(messages::kVectorizedOpening, expressionName, error, place);
}

QString filterErrorText(const ExpressionError& error, std::int64_t row) {
  return QString::fromUtf8(messages::kFilterOpening) + error.message +
         rowLine(messages::kRowLine, error, row, QStringLiteral("FilterRows"));
}

QString keyOutOfRangeText(const QString& output, std::int64_t row, double value) {
  return QString::fromUtf8(messages::kKeyOutOfRange)
      .arg(output, QString::number(row), QString::number(value));
}

QString checkErrorText(const ExpressionError& error) {
  return error.message + QString::fromUtf8(messages::kTokenLine) + error.token +
         QString::fromUtf8(messages::kCheckPositionLine).arg(error.position);
}

QString errorTextWithPosition(const ExpressionError& error) {
  return error.message + QString::fromUtf8(messages::kPositionLine).arg(error.position);
}

QString controlCharacterText(const QString& name) {
  const auto found = std::find_if(name.begin(), name.end(), isControlCharacter);
  return found == name.end() ? QString()
                             : QString::fromUtf8(messages::kControlCharacterInName)
                                   .arg(QString::number(found->unicode()),
                                        QString::number(found - name.begin()));
}

QString abbreviated(const QString& message) {
  constexpr qsizetype kHead = 600;
  constexpr qsizetype kTail = 200;
  if (message.size() <= kHead + kTail) {
    return message;
  }
  return message.left(kHead) + QStringLiteral(" ... ") + message.right(kTail);
}

QString explanationPicture(const QString& errorText) {
  for (const Picture& picture : kPictures) {
    if (errorText.contains(QLatin1String(picture.phrase))) {
      return QString::fromLatin1(picture.path);
    }
  }
  return {};
}

}  // namespace kelvarin
