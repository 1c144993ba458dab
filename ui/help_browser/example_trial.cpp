#include "ui/help_browser/example_trial.h"

#include <QGridLayout>

#include "expression/help/help_entry.h"
#include "ui/language/shown_value.h"
#include "ui/widgets/fixed_font.h"

namespace kelvarin {

namespace {

// With the settings that the help's examples are made for.
Formula formulaOf(const QString& expression) {
  Formula formula;
  formula.output.name = QStringLiteral("example");
  formula.output.expression = expression;
  formula.use = ResultUse::anyValue;
  TimeParameters& time = formula.options.time;
  time.dateFormat = QString::fromLatin1(kExampleSettings.dateFormat);
  time.referenceTime = QString::fromLatin1(kExampleSettings.referenceTime);
  time.elapsedTimeUnit = kExampleSettings.elapsedTimeUnit;
  time.addNow = time.addNowS = true;
  return formula;
}

}  // namespace

ExampleTrial::ExampleTrial(QWidget* parent)
    : QWidget(parent), m_expression(new QLineEdit), m_value(new QLabel) {
  m_expression->setObjectName(QStringLiteral("leTry"));
  m_expression->setFont(fixedFont());
  m_expression->setAccessibleName(tr("An expression to try"));
  m_expression->setToolTip(tr("Dates are written %1; elapsed times are days since 2000-01-01.")
                               .arg(QString::fromLatin1(kExampleSettings.dateFormat)));
  m_value->setObjectName(QStringLiteral("lblTryResult"));
  m_value->setAccessibleName(tr("The value of the expression"));
  m_value->setTextFormat(Qt::PlainText);
  m_value->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  m_value->setWordWrap(true);
  m_value->setMinimumHeight(m_value->fontMetrics().lineSpacing());  // nothing moves without a value
  auto* label = new QLabel(tr("&Try it:"));
  label->setBuddy(m_expression);

  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(8);
  grid->setVerticalSpacing(4);
  grid->addWidget(label, 0, 0);
  grid->addWidget(m_expression, 0, 1);
  grid->addWidget(m_value, 1, 1);
  grid->setColumnStretch(1, 1);

  connect(m_expression, &QLineEdit::textChanged, this, &ExampleTrial::evaluate);
  connect(&m_service, &FormulaService::answered, this, &ExampleTrial::show);
}

void ExampleTrial::setExample(const QString& expression) {
  m_expression->setText(expression);
  m_expression->setCursorPosition(0);
}

void ExampleTrial::evaluate() {
  m_value->setText(QString());
  const QString expression = m_expression->text();
  if (!expression.trimmed().isEmpty()) {
    m_asked = m_service.ask(formulaOf(expression));
  }
}

void ExampleTrial::show(const FormulaAnswer& answer) {
  if (answer.version != m_asked || m_expression->text().trimmed().isEmpty()) {
    return;
  }
  m_value->setToolTip(answer.check.text);
  const bool hasValue = answer.check.kind != ExpressionCheck::Kind::error && answer.check.value;
  if (!hasValue) {
    m_value->setText(answer.message.isEmpty() ? answer.check.text : answer.message);
    return;
  }
  // What a null is due to says more than the null.
  if (answer.check.value->isNull() && !answer.message.isEmpty()) {
    m_value->setText(answer.message);
    return;
  }
  const ShownValue value = shownValue(*answer.check.value);
  QStringList lines = {
      QStringLiteral("= %1   (%2, %3)").arg(value.text, answer.resultType, answer.engine)};
  lines += answer.message;
  lines.removeAll(QString());
  m_value->setText(lines.join(u'\n'));
  m_value->setToolTip(value.whole);
}

}  // namespace kelvarin
