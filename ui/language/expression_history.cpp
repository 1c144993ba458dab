#include "ui/language/expression_history.h"

#include <algorithm>
#include <utility>

#include <QSettings>

#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

QString arrayName(const QString& key) {
  return QStringLiteral("expressionHistory/") + key;
}

}  // namespace

ExpressionHistory::ExpressionHistory(QString key) : m_key(std::move(key)) {
  load();
}

void ExpressionHistory::load() {
  if (m_key.isEmpty()) {
    return;
  }
  m_entries.clear();
  QSettings settings;
  const int count = settings.beginReadArray(arrayName(m_key));
  for (int i = 0; i < count; ++i) {
    settings.setArrayIndex(i);
    const QString expression = settings.value(QStringLiteral("expression")).toString();
    if (!expression.isEmpty()) {
      m_entries.push_back({expression, settings.value(QStringLiteral("star")).toBool()});
    }
  }
  settings.endArray();
}

void ExpressionHistory::save() const {
  if (m_key.isEmpty()) {
    return;
  }
  QSettings settings;
  settings.remove(arrayName(m_key));
  settings.beginWriteArray(arrayName(m_key), static_cast<int>(m_entries.size()));
  for (std::size_t i = 0; i < m_entries.size(); ++i) {
    settings.setArrayIndex(static_cast<int>(i));
    settings.setValue(QStringLiteral("expression"), m_entries[i].expression);
    settings.setValue(QStringLiteral("star"), m_entries[i].isStarred);
  }
  settings.endArray();
}

void ExpressionHistory::limit() {
  std::size_t count = 0;
  std::erase_if(m_entries,
                [&](const Entry& entry) { return !entry.isStarred && ++count > kMaxEntries; });
}

std::vector<ExpressionHistory::Entry>::iterator ExpressionHistory::find(const QString& expression) {
  return std::find_if(m_entries.begin(), m_entries.end(),
                      [&](const Entry& entry) { return entry.expression == expression; });
}

void ExpressionHistory::add(const QString& expression) {
  if (expression.trimmed().isEmpty() || expression == u"1") {
    return;
  }
  load();  // another window may have added some
  Entry entry{expression, false};
  if (const auto known = find(expression); known != m_entries.end()) {
    entry = *known;
    m_entries.erase(known);
  }
  m_entries.insert(m_entries.begin(), entry);
  limit();
  save();
}

void ExpressionHistory::setStarred(const QString& expression, bool isStarred) {
  load();
  if (const auto known = find(expression); known != m_entries.end()) {
    known->isStarred = isStarred;
    limit();
    save();
  }
}

void ExpressionHistory::remove(const QString& expression) {
  load();
  if (const auto known = find(expression); known != m_entries.end()) {
    m_entries.erase(known);
    save();
  }
}

QHash<QString, int> ExpressionHistory::nameCounts() const {
  QHash<QString, int> counts;
  for (const Entry& entry : m_entries) {
    const ExpressionTokens tokens(entry.expression);
    for (std::size_t i = 0; i < tokens.size(); ++i) {
      if (isFreeName(tokens.all(), i)) {
        ++counts[tokens.textAt(i).toString()];
      }
    }
  }
  return counts;
}

}  // namespace kelvarin
