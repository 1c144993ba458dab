#include "cli/calc/column_labels.h"

#include <algorithm>

#include "cli/calc/messages.h"
#include "cli/calc/named_expression.h"
#include "expression/backends/expression_text.h"

namespace kelvarin {

namespace {

// The first backquote outside of texts and comments; -1 when there is none.
qsizetype firstQuote(const QString& expression) {
  const ExpressionTokens tokens(expression);
  const auto found = std::ranges::find_if(tokens, [&tokens](const Token& token) {
    return token.kind == TokenKind::unknown && tokens.text(token) == QChar(kNameQuote);
  });
  return found == tokens.end() ? -1 : positionOf(*found);
}

// Letters and digits that every engine takes in a name.
bool isPlain(QChar c) {
  return c.unicode() < 0x100 && c.isLetterOrNumber();
}

// Wherever it is not a part of a longer name.
QString withNameReplaced(QString text, const QString& name, const QString& typed) {
  const auto isInName = [&text](qsizetype at) {
    return at >= 0 && at < text.size() && isNameCharacter(text[at].unicode());
  };
  for (qsizetype at = text.indexOf(name); at >= 0; at = text.indexOf(name, at)) {
    if (isInName(at - 1) || isInName(at + name.size())) {
      at += name.size();
      continue;
    }
    text.replace(at, name.size(), typed);
    at += typed.size();
  }
  return text;
}

}  // namespace

Result<QString, ExpressionError> ColumnLabels::labelled(const QString& typed) {
  QString expression = typed;
  for (qsizetype at = firstQuote(expression); at >= 0; at = firstQuote(expression)) {
    const auto quoted = quotedNameAtStart(QStringView(expression).sliced(at));
    if (!quoted) {
      ExpressionError error;
      error.position = static_cast<int>(at);
      error.token = QChar(kNameQuote);
      error.message = calc_messages::unclosedName(at);
      return Failure{error};
    }
    expression.replace(at, quoted->size, labelOf(quoted->name).leftJustified(quoted->size));
  }
  if (expression != typed) {
    m_expressions.append({expression, typed});
  }
  return expression;
}

QString ColumnLabels::labelOf(const QString& column) {
  QString& label = m_labels[column];
  if (label.isEmpty()) {
    label = newLabel(column);
    m_columns.insert(label, column);
  }
  return label;
}

// At most as long as the name with its quotes.
QString ColumnLabels::newLabel(const QString& column) const {
  const qsizetype longest = column.size() + 2;
  QString base = column;
  std::ranges::replace_if(base, [](QChar c) { return !isPlain(c); }, QChar(u'_'));
  if (base.front().isDigit()) {
    base.prepend(u'_');
  }
  const auto isFree = [this](const QString& label) {
    return !m_taken.contains(label) && !m_columns.contains(label);
  };
  QString label = base;
  for (int number = 0; !isFree(label); ++number) {
    const QString ending = number == 0 ? QStringLiteral("_") : QString::number(number, 36);
    label = base.first(std::min(base.size(), longest - ending.size())) + ending;
  }
  return label;
}

QString ColumnLabels::withoutPadding(const QString& labelled) const {
  const ExpressionTokens tokens(labelled);
  QString plain = labelled;
  for (std::size_t i = tokens.size(); i-- > 0;) {  // from the end, since it moves what follows
    const QString name = tokens.textAt(i).toString();
    if (isFreeName(tokens.all(), i) && isLabel(name)) {
      const qsizetype padding = inNameQuotes(columnOf(name)).size() - name.size();
      const QStringView behind = QStringView(labelled).sliced(positionOf(tokens[i]) + name.size());
      const bool isPadded = behind.startsWith(QString(padding, u' '));
      plain.remove(positionOf(tokens[i]) + name.size(), isPadded ? padding : 0);
    }
  }
  return plain;
}

QString ColumnLabels::asTyped(const QString& text) const {
  QStringList lines = text.split(u'\n');
  for (QString& line : lines) {
    if (line.contains(QLatin1String("kelvarin eval "))) {
      continue;
    }
    for (const Pair& pair : m_expressions) {
      line.replace(withoutLineBreaks(pair.labelled), withoutLineBreaks(pair.typed));
    }
    for (auto label = m_columns.begin(); label != m_columns.end(); ++label) {
      if (label.key() != label.value()) {
        const QString typed = inNameQuotes(label.value());
        line = withNameReplaced(line, label.key().leftJustified(typed.size()), typed);
        line = withNameReplaced(line, label.key(), typed);
      }
    }
  }
  return lines.join(u'\n');
}

}  // namespace kelvarin
