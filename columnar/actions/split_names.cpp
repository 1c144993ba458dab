#include "columnar/actions/split_names.h"

#include "expression/errors/error_texts.h"
#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

const QString kExpressionBegin = QStringLiteral("\"+");
const QString kExpressionEnd = QStringLiteral("+\"");

QString textOf(const ExpressionValue& value) {
  return value.type == ExpressionValue::Type::text ? value.text : shortestText(value.number);
}

// With a blank between a text and a plus sign, which side by side begin or end an expression.
QString withPlusApart(const QString& expression) {
  QString apart;
  bool wasText = false;
  bool wasPlus = false;
  const ExpressionTokens tokens(expression);
  for (const Token& token : tokens) {
    const bool isText = token.kind == TokenKind::text;
    const bool isPlus = tokens.text(token) == u'+';
    apart += (isText && wasPlus) || (isPlus && wasText) ? QStringLiteral(" ") : QString();
    apart += tokens.text(token);
    wasText = isText;
    wasPlus = isPlus;
  }
  return apart;
}

}  // namespace

QString segmentText(int segment) {
  return QStringLiteral("_%1").arg(segment, 3, 10, QLatin1Char('0'));
}

NamingText NamingText::of(const QString& file) {
  NamingText text;
  qsizetype position = 0;
  while (true) {
    const qsizetype begin = file.indexOf(kExpressionBegin, position);
    const qsizetype inside = begin + kExpressionBegin.size();
    const qsizetype end = begin < 0 ? -1 : file.indexOf(kExpressionEnd, inside);
    if (end < 0) {
      break;
    }
    text.literals.push_back(file.mid(position, begin - position));
    text.expressions.push_back(file.mid(inside, end - inside));
    position = end + kExpressionEnd.size();
  }
  text.literals.push_back(file.mid(position));
  return text;
}

QString NamingText::joined() const {
  QString file = literals.first();
  for (qsizetype i = 0; i < expressions.size(); ++i) {
    file += kExpressionBegin + expressions[i] + kExpressionEnd + literals[i + 1];
  }
  return file;
}

std::optional<QString> NamingText::withExpression(const QString& expression) const {
  NamingText changed = *this;
  changed.expressions.first() = withPlusApart(expression);
  const QString name = changed.joined();
  return NamingText::of(name).expressions == changed.expressions ? std::optional(name)
                                                                 : std::nullopt;
}

Status<NamingExpressions::Error> NamingExpressions::compile(const QString& file,
                                                            const ActionItem& action) {
  m_text = NamingText::of(file);
  for (QString& literal : m_text.literals) {
    literal = action.expandString(literal);
  }

  InputVariable splitValue;
  splitValue.label = QStringLiteral("SplitVal");
  splitValue.isNumber = false;
  m_evaluator.expressions.configure({}, {splitValue}, action.globalParameters(), false);
  m_evaluator.expressions.requireBackend(BackendKind::string);
  (void)m_evaluator.expressions.prepareDateContext(m_text.expressions);
  for (const QString& expression : m_text.expressions) {
    OutputVariable output;
    output.expression = expression;
    output.meta = MetaTypeColumn::text;
    const auto status = m_evaluator.expressions.compile(output, ResultUse::anyValue);
    if (!status) {
      return Failure{Error{expression, errorTextWithPosition(status.error())}};
    }
  }
  m_evaluator.start();
  return Done{};
}

Result<QString, NamingExpressions::Error> NamingExpressions::name(const QString& splitValue) {
  m_evaluator.expressions.setText(0, splitValue);
  m_evaluator.rows.startRow();
  QString result = m_text.literals.first();
  for (int i = 0; i < static_cast<int>(m_text.expressions.size()); ++i) {
    if (m_evaluator.rows.evaluate(i) != RowOutcome::ok) {
      return Failure{Error{m_text.expressions[i],
                           errorTextWithPosition(m_evaluator.rows.lastFailure().error)}};
    }
    const QString part = textOf(m_evaluator.rows.value(i));
    if (const QString refusal = controlCharacterText(part); !refusal.isEmpty()) {
      return Failure{Error{m_text.expressions[i], refusal}};
    }
    result += part + m_text.literals[i + 1];
  }
  return result;
}

}  // namespace kelvarin
