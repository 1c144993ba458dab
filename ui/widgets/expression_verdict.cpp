#include "ui/widgets/expression_verdict.h"

#include <QMenu>

namespace kelvarin {

namespace {

constexpr int kReservedLines = 2;

Severity severityOf(const FormulaAnswer& answer) {
  if (answer.check.kind == ExpressionCheck::Kind::error || !answer.isComplete) {
    return Severity::error;
  }
  return answer.check.kind == ExpressionCheck::Kind::warning ? Severity::warning
                                                             : Severity::success;
}

QString resultOf(const FormulaAnswer& answer) {
  QStringList parts;
  if (!answer.resultType.isEmpty()) {
    parts += ExpressionVerdict::tr("Result: %1").arg(answer.resultType);
  }
  if (!answer.engine.isEmpty()) {
    parts += answer.engine;
  }
  return parts.join(QStringLiteral(" \u00b7 "));
}

}  // namespace

ExpressionVerdict::ExpressionVerdict(QWidget* parent) : InfoLine(parent) {
  setReservedLines(kReservedLines);
  connect(this, &InfoLine::linkActivated, this, [this](const QString& id) {
    const auto index = id.toULongLong();
    if (index < m_fixes.size()) {
      emit fixChosen(QuickFix(m_fixes[index]));
    }
  });
}

void ExpressionVerdict::showFaultsOnly() {
  m_isResultShown = false;
  setReservedLines(0);
}

void ExpressionVerdict::setAnswer(const FormulaAnswer& answer) {
  m_fixes = answer.fixes;
  QStringList lines;
  if (!answer.message.isEmpty()) {
    lines += answer.message;
  }
  if (answer.check.isCompiled() && m_isResultShown) {
    lines += resultOf(answer);
  }
  std::vector<InfoLink> links;
  links.reserve(m_fixes.size());
  for (std::size_t i = 0; i < m_fixes.size(); ++i) {
    links.push_back({QString::number(i), m_fixes[i].label});
  }
  setMessage(severityOf(answer), lines.join(u'\n'), links);
  setToolTip(links.empty() ? QString() : tr("Alt+Enter makes the change"));
}

void ExpressionVerdict::chooseFix(const QPoint& onScreen) {
  if (m_fixes.size() == 1) {
    emit fixChosen(QuickFix(m_fixes.front()));
  }
  if (m_fixes.size() <= 1) {
    return;
  }
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (const QuickFix& fix : m_fixes) {
    // An ampersand would be read as a mnemonic.
    QString label = fix.label;
    QAction* action = menu->addAction(label.replace(u'&', QStringLiteral("&&")));
    connect(action, &QAction::triggered, this, [this, fix] { emit fixChosen(fix); });
  }
  menu->setActiveAction(menu->actions().front());
  menu->popup(onScreen);
}

}  // namespace kelvarin
