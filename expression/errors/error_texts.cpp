#include "expression/errors/error_texts.h"

#include <algorithm>

#include "expression/errors/messages.h"

namespace kelvarin {

namespace {

QString rowLine(const ExpressionError& error, const FailureLocation& location) {
  return location.backend == BackendKind::string
             ? messages::rowLineOfString(location.row, error.position, location.actionName)
             : messages::rowLine(location.row, error.position, location.actionName);
}

struct Picture {
  QString (*phrase)();
  const char* path;
};

constexpr Picture kPictures[] = {
    {messages::undefinedTokenPhrase, ":/KelvarinMathParser/undefinedToken.png"},
    {messages::conversionPhrase, ":/KelvarinMathParser/errorCast.png"},
    {messages::numberForString, ":/KelvarinMathParser/errorEvaluatedToNumber.png"},
    {messages::stringForNumber, ":/KelvarinMathParser/errorEvaluatedToString.png"},
};

}  // namespace

QString calculatorErrorText(const QString& expressionName, const ExpressionError& error,
                            const FailureLocation& location) {
  return messages::calculatorOpening(expressionName) + error.message + rowLine(error, location);
}

QString vectorizedErrorText(const QString& expressionName, const ExpressionError& error,
                            const FailureLocation& location) {
  return messages::vectorizedOpening(expressionName) + error.message + rowLine(error, location);
}

QString filterErrorText(const ExpressionError& error, std::int64_t row) {
  return messages::filterOpening() + error.message +
         messages::rowLine(row, error.position, QStringLiteral("FilterRows"));
}

QString keyOutOfRangeText(const QString& output, std::int64_t row, double value) {
  return messages::keyOutOfRange(output, row, value);
}

QString checkErrorText(const ExpressionError& error) {
  return error.message + messages::tokenLine(error.token) +
         messages::checkPositionLine(error.position);
}

QString errorTextWithPosition(const ExpressionError& error) {
  return error.message + messages::positionLine(error.position);
}

QString controlCharacterText(const QString& name) {
  const auto found = std::find_if(name.begin(), name.end(), isControlCharacter);
  return found == name.end()
             ? QString()
             : messages::controlCharacterInName(found->unicode(), found - name.begin());
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
    if (errorText.contains(picture.phrase())) {
      return QString::fromLatin1(picture.path);
    }
  }
  return {};
}

}  // namespace kelvarin
