#include "expression/backends/string_limits.h"

#include "expression/errors/messages.h"

namespace kelvarin {

void refuse(const mup::ICallback& callback, const QString& message) {
  mup::ErrorContext context(mup::ecGENERIC, callback.GetExprPos(), callback.GetIdent());
  context.Hint = message.toStdString();
  mup::ParserError error(message.toStdString());
  error.GetContext() = context;
  throw error;
}

void EvaluationLimits::takeArray(const mup::ICallback& callback, double elements) {
  if (!(elements >= 0.0 && elements <= double{kArrayElements})) {  // NaN too
    refuse(callback, messages::tooManyElements(kArrayElements));
  }
  m_elements += elements;
  if (m_elements > double{kAllElements}) {
    refuse(callback, messages::tooManyElementsInAll(kAllElements));
  }
}

void EvaluationLimits::takeResult(const mup::ICallback& callback, const mup::IValue& value) {
  if (value.IsMatrix()) {
    takeArray(callback, static_cast<double>(value.GetRows()) * value.GetCols());
  }
}

void EvaluationLimits::takeJoinedText(const mup::ICallback& callback, std::size_t bytes) {
  if (bytes > kTextBytes) {
    refuse(callback, messages::textTooLong(kTextBytes));
  }
  takeText(callback, bytes);
}

void EvaluationLimits::takeText(const mup::ICallback& callback, std::size_t bytes) {
  const bool isFree = m_textBytes == 0 && !m_boundOfTexts;
  const std::size_t limit = m_boundOfTexts.value_or(kAllTextBytes);
  m_textBytes += bytes;
  if (!isFree && m_textBytes > limit) {
    refuse(callback, messages::textsTooLong(static_cast<long long>(limit)));
  }
}

}  // namespace kelvarin
