// Turns expression errors into the texts that users read: in a run, in the editor's check and
// elsewhere.
//
// Every input yields a text.
#pragma once

#include <cstdint>

#include <QString>

#include "expression/errors/backend_kind.h"
#include "expression/errors/expression_error.h"

namespace kelvarin {

// Where in a run an expression failed.
struct FailureLocation {
  std::int64_t row = 0;
  QString actionName;
  BackendKind backend = BackendKind::string;
};

QString calculatorErrorText(const QString& expressionName, const ExpressionError& error,
                            const FailureLocation& location);
QString vectorizedErrorText(const QString& expressionName, const ExpressionError& error,
                            const FailureLocation& location);
QString filterErrorText(const ExpressionError& error, std::int64_t row);

// A number that is no key; the row is `_n`.
QString keyOutOfRangeText(const QString& output, std::int64_t row, double value);

// As the editor's check shows it.
QString checkErrorText(const ExpressionError& error);
// For callers that know neither row nor name.
QString errorTextWithPosition(const ExpressionError& error);

// Below the blank, or DEL.
inline bool isControlCharacter(QChar c) {
  return c < u' ' || c == QChar(0x7F);
}
// Why a text cannot name a column or a file; empty where it can.
QString controlCharacterText(const QString& name);

// Keeps head and tail of a giant library message, which may quote the whole expression.
QString abbreviated(const QString& message);

// The resource path of the picture that explains an error text; empty when there is none.
QString explanationPicture(const QString& errorText);

}  // namespace kelvarin
