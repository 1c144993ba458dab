// The tokens of an expression in a QString, with their texts.
//
// Used by the preparations of the back-ends, by warnings, hints and editors. Positions count 16-bit
// units.
#pragma once

#include <string_view>
#include <utility>

#include <QString>
#include <QStringView>

#include "expression/tokens/literals.h"
#include "expression/tokens/tokenizer.h"

namespace kelvarin {

inline std::u16string_view unitsOf(QStringView text) {
  return {text.utf16(), static_cast<std::size_t>(text.size())};
}

// A valid name of a variable in every back-end, characters beyond Latin-1 apart.
inline bool isVariableName(const QString& name) {
  return isName(unitsOf(name));
}

inline qsizetype positionOf(const Token& token) {
  return static_cast<qsizetype>(token.start);
}
inline qsizetype sizeOf(const Token& token) {
  return static_cast<qsizetype>(token.size);
}

class ExpressionTokens {
 public:
  explicit ExpressionTokens(QString expression)
      : m_expression(std::move(expression)), m_tokens(tokensOf(unitsOf(m_expression))) {}

  const Tokens& all() const { return m_tokens; }
  std::size_t size() const { return m_tokens.size(); }
  const Token& operator[](std::size_t index) const { return m_tokens[index]; }
  auto begin() const { return m_tokens.begin(); }
  auto end() const { return m_tokens.end(); }

  QStringView text(const Token& token) const {
    return QStringView(m_expression).sliced(positionOf(token), sizeOf(token));
  }
  // Empty for kNoToken.
  QStringView textAt(std::size_t index) const {
    return index == kNoToken ? QStringView() : text(m_tokens[index]);
  }

 private:
  QString m_expression;
  Tokens m_tokens;
};

}  // namespace kelvarin
