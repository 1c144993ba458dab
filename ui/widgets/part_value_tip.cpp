#include "ui/widgets/part_value_tip.h"

#include <QToolTip>

#include "ui/language/formula_service.h"
#include "ui/language/shown_value.h"
#include "ui/widgets/expression_editor.h"

namespace kelvarin {

namespace {

constexpr int kRestMilliseconds = 300;
constexpr int kMaxPartLength = 60;

QString shortened(const QString& part) {
  const QString line = part.simplified();
  return line.size() <= kMaxPartLength ? line : line.left(kMaxPartLength - 1) + u'\u2026';
}

}  // namespace

PartValueTip::PartValueTip(ExpressionEditor& editor, FormulaService& service,
                           std::function<Formula()> formula, QWidget* owner)
    : QObject(owner), m_editor(editor), m_service(service), m_formula(std::move(formula)) {
  m_rest.setSingleShot(true);
  m_rest.setInterval(kRestMilliseconds);
  connect(&m_rest, &QTimer::timeout, this, &PartValueTip::askAboutSelection);
  connect(&editor, &QPlainTextEdit::selectionChanged, this, [this] { m_rest.start(); });
  connect(&editor, &QPlainTextEdit::textChanged, this, [this] {
    passOverSelection();
    QToolTip::hideText();  // it was about the text before, and covers what is said about this one
  });
  connect(&editor, &ExpressionEditor::pointed, this,
          [this](int position, const QPoint& onScreen) { ask(position, 1, onScreen); });
  connect(&service, &FormulaService::partAnswered, this, &PartValueTip::showAnswer);
}

void PartValueTip::ask(qsizetype start, qsizetype size, const QPoint& onScreen) {
  const Formula formula = m_formula();
  const QString part = formula.output.expression.mid(start, size);
  if (part.trimmed().isEmpty()) {
    return;
  }
  m_expression = formula.output.expression;
  m_onScreen = onScreen;
  m_version = m_service.askPart(formula, start, size);
}

void PartValueTip::askAboutSelection() {
  const QTextCursor cursor = m_editor.textCursor();
  if (!cursor.hasSelection() || !m_editor.hasFocus()) {
    return;
  }
  const int start = cursor.selectionStart();
  const int end = cursor.selectionEnd();
  ask(start, end - start, m_editor.characterOnScreen(end).bottomLeft());
}

void PartValueTip::showAnswer(const PartAnswer& answer) {
  if (answer.version != m_version || m_editor.expression() != m_expression) {
    return;
  }
  m_version = 0;
  const QString text = partValueText(m_expression, answer);
  if (!text.isEmpty()) {
    QToolTip::showText(m_onScreen, text, m_editor.parentWidget());
  }
}

void PartValueTip::passOverSelection() {
  m_rest.stop();
  m_version = 0;
}

QString partValueText(const QString& expression, const PartAnswer& answer) {
  if (answer.size <= 0) {
    return {};
  }
  const QString part = shortened(expression.mid(answer.start, answer.size));
  QString line;
  if (!answer.value.failure.isEmpty()) {
    line = PartValueTip::tr("%1: %2").arg(part, answer.value.failure);
  } else {
    const QString value = shownValue(answer.value.value).text;
    line = answer.isRowKnown
               ? PartValueTip::tr("%1 = %2 in row %3")
                     .arg(part, value, QString::number(answer.value.row))
               : PartValueTip::tr("%1 = %2 with the samples of the variables").arg(part, value);
  }
  if (answer.mayDiffer) {
    line += PartValueTip::tr(" (may differ in a run)");
  }
  // A sign such as < must not be read as the markup of a tool tip.
  return QStringLiteral("<p style='white-space:pre'>%1</p>").arg(line.toHtmlEscaped());
}

}  // namespace kelvarin
