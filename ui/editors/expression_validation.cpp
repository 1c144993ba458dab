#include "ui/editors/expression_validation.h"

#include <QApplication>
#include <QWidget>

#include "ui/error_dialog/interface_math_parser_check.h"

namespace kelvarin {

ExpressionValidation::ExpressionValidation(QWidget& editor) : QObject(&editor), m_editor(editor) {
  connect(&m_service, &FormulaService::answered, this, &ExpressionValidation::take);
}

void ExpressionValidation::check(std::vector<Formula> formulas, Occasion occasion) {
  m_formulas = std::move(formulas);
  m_next = 0;
  m_occasion = occasion;
  m_hasTypedElsewhere = false;
  qApp->removeEventFilter(this);
  qApp->installEventFilter(this);
  askNext();
}

bool ExpressionValidation::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && watched->isWidgetType()) {
    m_hasTypedElsewhere = true;
  }
  return QObject::eventFilter(watched, event);
}

void ExpressionValidation::askNext() {
  if (!isBusy()) {
    qApp->removeEventFilter(this);
    emit finished();
    return;
  }
  m_askedVersion = m_service.ask(m_formulas[m_next]);
}

void ExpressionValidation::take(const FormulaAnswer& answer) {
  if (!isBusy() || answer.version != m_askedVersion) {
    return;
  }
  const int index = static_cast<int>(m_next);
  if (answer.check.kind == ExpressionCheck::Kind::error) {
    emit failed(index, answer);
  } else {
    emit passed(index);
  }
  ++m_next;
  askNext();
}

void ExpressionValidation::showFailure(const QString& expression, const FormulaAnswer& answer) {
  const QString text = expression + u'\n' + answer.check.text;
  if (m_occasion == Occasion::commit && text == m_shownText) {
    return;
  }
  m_shownText = text;
  delete m_dialog;
  m_dialog = new Interface_MathParserCheck(reportOf(expression, answer), &m_editor);
  m_dialog->setAttribute(Qt::WA_DeleteOnClose);
  m_dialog->setAttribute(Qt::WA_ShowWithoutActivating);
  connect(m_dialog, &Interface_MathParserCheck::goThere, this, &ExpressionValidation::goThere);
  const int position = static_cast<int>(answer.faultStart);
  const int size = static_cast<int>(answer.faultSize);
  connect(m_dialog, &Interface_MathParserCheck::nameChosen, this,
          [this, position, size](const QString& name) { emit nameChosen(name, position, size); });
  m_dialog->show();
}

}  // namespace kelvarin
