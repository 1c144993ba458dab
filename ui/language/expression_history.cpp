#include "ui/language/expression_history.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <utility>

#include <QSettings>
#include <QThreadPool>

#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

using Entries = std::vector<ExpressionHistory::Entry>;

QString arrayName(const QString& key) {
  return QStringLiteral("expressionHistory/") + key;
}

Entries read(const QString& key) {
  Entries entries;
  QSettings settings;
  const int count = settings.beginReadArray(arrayName(key));
  for (int i = 0; i < count; ++i) {
    settings.setArrayIndex(i);
    const QString expression = settings.value(QStringLiteral("expression")).toString();
    if (!expression.isEmpty()) {
      entries.push_back({expression, settings.value(QStringLiteral("star")).toBool()});
    }
  }
  settings.endArray();
  return entries;
}

void write(const QString& key, const Entries& entries) {
  QSettings settings;
  settings.remove(arrayName(key));
  settings.beginWriteArray(arrayName(key), static_cast<int>(entries.size()));
  for (std::size_t i = 0; i < entries.size(); ++i) {
    settings.setArrayIndex(static_cast<int>(i));
    settings.setValue(QStringLiteral("expression"), entries[i].expression);
    settings.setValue(QStringLiteral("star"), entries[i].isStarred);
  }
  settings.endArray();
}

// Writes histories in threads of the pool, of each the newest state, one after the other.
class HistoryWriter {
 public:
  void add(const QString& key, const Entries& entries) {
    {
      const std::lock_guard lock(m_mutex);
      m_waiting[key] = entries;
    }
    QThreadPool::globalInstance()->start([this] { writeWaiting(); });
  }

 private:
  void writeWaiting() {
    const std::lock_guard writing(m_writing);
    std::map<QString, Entries> waiting;
    {
      const std::lock_guard lock(m_mutex);
      waiting.swap(m_waiting);
    }
    for (const auto& [key, entries] : waiting) {
      write(key, entries);
    }
  }

  std::mutex m_writing;  // held while files are written
  std::mutex m_mutex;    // guards m_waiting
  std::map<QString, Entries> m_waiting;
};

HistoryWriter& writer() {
  static HistoryWriter writer;
  return writer;
}

std::shared_ptr<Entries> entriesOf(const QString& key) {
  static std::map<QString, std::shared_ptr<Entries>> known;
  if (key.isEmpty()) {
    return std::make_shared<Entries>();
  }
  std::shared_ptr<Entries>& entries = known[key];
  if (entries == nullptr) {
    entries = std::make_shared<Entries>(read(key));
  }
  return entries;
}

}  // namespace

ExpressionHistory::ExpressionHistory(QString key)
    : m_key(std::move(key)), m_entries(entriesOf(m_key)) {}

void ExpressionHistory::save() const {
  if (!m_key.isEmpty()) {
    writer().add(m_key, *m_entries);
  }
}

void ExpressionHistory::limit() {
  std::size_t count = 0;
  std::erase_if(*m_entries,
                [&](const Entry& entry) { return !entry.isStarred && ++count > kMaxEntries; });
}

std::vector<ExpressionHistory::Entry>::iterator ExpressionHistory::find(const QString& expression) {
  return std::find_if(m_entries->begin(), m_entries->end(),
                      [&](const Entry& entry) { return entry.expression == expression; });
}

void ExpressionHistory::add(const QString& expression) {
  if (expression.trimmed().isEmpty() || expression == u"1") {
    return;
  }
  Entry entry{expression, false};
  if (const auto known = find(expression); known != m_entries->end()) {
    entry = *known;
    m_entries->erase(known);
  }
  m_entries->insert(m_entries->begin(), entry);
  limit();
  save();
}

void ExpressionHistory::setStarred(const QString& expression, bool isStarred) {
  if (const auto known = find(expression); known != m_entries->end()) {
    known->isStarred = isStarred;
    limit();
    save();
  }
}

void ExpressionHistory::remove(const QString& expression) {
  if (const auto known = find(expression); known != m_entries->end()) {
    m_entries->erase(known);
    save();
  }
}

QHash<QString, int> ExpressionHistory::nameCounts() const {
  QHash<QString, int> counts;
  for (const Entry& entry : *m_entries) {
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
