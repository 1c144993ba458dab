#include "ui/columnar/committed_verdict.h"

#include <QShortcut>

#include "ui/error_dialog/interface_math_parser_check.h"
#include "ui/widgets/expression_field.h"

namespace kelvarin {

CommittedVerdict::CommittedVerdict(ExpressionField& field, QWidget& page)
    : QObject(&page), m_field(field), m_page(page) {
  auto* check = new QShortcut(Qt::Key_F7, &page, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
  check->setWhatsThis(tr("Check the expression"));
  connect(check, &QShortcut::activated, this, [this] {
    m_reported = QString();
    emit checkWanted();
    expect(m_field.expression());  // which the commit may have trimmed
  });
  connect(&field, &ExpressionField::answered, this, &CommittedVerdict::take);
}

void CommittedVerdict::expect(const QString& expression) {
  m_expected = expression;
}

bool CommittedVerdict::isRefused(const FormulaAnswer& answer) const {
  return answer.check.kind == ExpressionCheck::Kind::error &&
         !m_field.expression().trimmed().isEmpty();
}

void CommittedVerdict::take(const FormulaAnswer& answer) {
  if (m_expected != m_field.expression()) {
    return;
  }
  m_expected.reset();
  m_field.setRefused(isRefused(answer));
  if (isRefused(answer) && m_field.expression() != m_reported) {
    report(answer);
  }
}

void CommittedVerdict::report(const FormulaAnswer& answer) {
  m_reported = m_field.expression();
  delete m_dialog;
  m_dialog = new Interface_MathParserCheck(reportOf(m_reported, answer), &m_page);
  m_dialog->setAttribute(Qt::WA_DeleteOnClose);
  m_dialog->setAttribute(Qt::WA_ShowWithoutActivating);
  connect(m_dialog, &Interface_MathParserCheck::goThere, this, &CommittedVerdict::showFault);
  const auto position = static_cast<int>(answer.faultStart);
  const auto size = static_cast<int>(answer.faultSize);
  connect(m_dialog, &Interface_MathParserCheck::nameChosen, this,
          [this, position, size](const QString& name) {
            showFault(position, size);
            m_field.insertText(name);
          });
  m_dialog->show();
}

void CommittedVerdict::showFault(int position, int size) {
  emit fieldWanted();
  m_page.window()->activateWindow();
  m_field.showPart(position, size);
}

}  // namespace kelvarin
