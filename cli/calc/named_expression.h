// NAME[:TYPE]=EXPRESSION, as a user types an output on the command line.
//
// Used by: calc_command.cpp.
// Threads: any.
#pragma once

#include <optional>

#include <QString>
#include <QStringView>

#include "base/result.h"
#include "host/contract/meta_info.h"

namespace kelvarin {

struct NamedExpression {
  QString name;
  std::optional<MetaTypeColumn> type;  // that of the result where there is none
  QString expression;                  // as it was typed
};

// A name in backquotes, two of which stand for one inside. `size` is that of the text with its
// quotes.
struct QuotedName {
  QString name;
  qsizetype size = 0;
};
inline constexpr char16_t kNameQuote = u'`';
// That the text begins with; none where the closing quote is missing or nothing is between them.
std::optional<QuotedName> quotedNameAtStart(QStringView text);
QString inNameQuotes(const QString& name);

// Whether an argument is an output, and none of the files that a command reads: it begins with a
// name or a name in backquotes, then may have a colon and a type, and then has `=`, but not `==`.
// What stands on the disk does not matter.
bool isNamedExpression(const QString& argument);

// Of such an argument; the error names what is wrong with it.
Result<NamedExpression, QString> namedExpressionOf(const QString& argument);

}  // namespace kelvarin
