#include "ui/widgets/history_keys.h"

#include <QMenu>
#include <QToolButton>

#include "host/widgets/icons.h"
#include "ui/widgets/expression_editor.h"

namespace kelvarin {

namespace {

constexpr int kMenuWidthInCharacters = 60;

}  // namespace

HistoryKeys::HistoryKeys(ExpressionEditor& editor, QToolButton& button)
    : QObject(&editor), m_editor(editor), m_menu(new QMenu(&button)) {
  button.setMenu(m_menu);
  button.setPopupMode(QToolButton::InstantPopup);
  m_menu->setToolTipsVisible(true);
  connect(m_menu, &QMenu::aboutToShow, this, &HistoryKeys::fill);
  connect(&editor, &ExpressionEditor::historyAsked, this, &HistoryKeys::go);
}

void HistoryKeys::setKey(const QString& key) {
  m_history = ExpressionHistory(key);
  m_index = -1;
}

void HistoryKeys::add(const QString& expression) {
  m_history.add(expression);
  m_index = -1;
}

void HistoryKeys::go(bool isOlder) {
  const auto& entries = m_history.entries();
  const QString text = m_editor.expression();
  if (m_index < 0 || text != m_shown) {
    m_index = -1;
    m_ownText = text;
  }
  const int step = isOlder ? 1 : -1;
  int index = m_index + step;
  // The own text may be the latest entry; showing it again would look like a dead key.
  while (index >= 0 && index < static_cast<int>(entries.size()) &&
         entries[static_cast<std::size_t>(index)].expression == text) {
    index += step;
  }
  if (index < -1 || index >= static_cast<int>(entries.size())) {
    return;
  }
  m_index = index;
  show(index < 0 ? m_ownText : entries[static_cast<std::size_t>(index)].expression);
}

void HistoryKeys::fill() {
  m_menu->clear();
  const QString own = m_editor.expression();
  bool isOwnStarred = false;
  for (const ExpressionHistory::Entry& entry : m_history.entries()) {
    isOwnStarred = isOwnStarred || (entry.isStarred && entry.expression == own);
  }
  QAction* star = m_menu->addAction(
      icon(isOwnStarred ? IconName::star : IconName::starFilled),
      isOwnStarred ? tr("&Remove the star of this expression") : tr("&Star this expression"));
  star->setEnabled(!own.trimmed().isEmpty() && !m_history.key().isEmpty());
  connect(star, &QAction::triggered, this, [this, own, isOwnStarred] {
    if (!isOwnStarred) {
      m_history.add(own);
    }
    m_history.setStarred(own, !isOwnStarred);
  });
  m_menu->addSeparator();
  const QFontMetrics metrics(m_menu->font());
  const int width = kMenuWidthInCharacters * metrics.averageCharWidth();
  for (const bool isStarred : {true, false}) {
    for (const ExpressionHistory::Entry& entry : m_history.entries()) {
      if (entry.isStarred != isStarred) {
        continue;
      }
      const QString expression = entry.expression;
      // An ampersand would be read as a mnemonic.
      QString label = metrics.elidedText(expression.simplified(), Qt::ElideRight, width);
      QAction* action = m_menu->addAction(label.replace(u'&', QStringLiteral("&&")));
      action->setToolTip(expression);
      if (isStarred) {
        action->setIcon(icon(IconName::starFilled));
      }
      connect(action, &QAction::triggered, this, [this, expression] { show(expression); });
    }
  }
  if (m_history.entries().empty()) {
    m_menu->addAction(tr("No earlier expressions yet"))->setEnabled(false);
  }
}

void HistoryKeys::show(const QString& expression) {
  m_shown = expression;
  m_editor.replace(0, m_editor.expression().size(), expression, expression.size());
  m_editor.setFocus(Qt::OtherFocusReason);
}

}  // namespace kelvarin
