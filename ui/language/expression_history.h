// The expressions that a user committed last, for one kind of action. Starred ones stay.
//
// Kept in the user's settings (QSettings), under a group of its own. Histories with the same key
// are one; another thread writes them.
// Threads: the user-interface thread.
#pragma once

#include <memory>
#include <vector>

#include <QHash>
#include <QString>

namespace kelvarin {

class ExpressionHistory {
 public:
  static constexpr std::size_t kMaxEntries = 50;  // starred ones apart

  struct Entry {
    QString expression;
    bool isStarred = false;
    bool operator==(const Entry&) const = default;
  };

  // Nothing is kept while the key is empty.
  explicit ExpressionHistory(QString key = QString());

  const QString& key() const { return m_key; }
  // The latest first, each expression once.
  const std::vector<Entry>& entries() const { return *m_entries; }
  // Moves what is known to the front; blank ones and the default "1" are not kept.
  void add(const QString& expression);
  void setStarred(const QString& expression, bool isStarred);
  void remove(const QString& expression);
  // How often each name occurs, for the ranking of completions.
  QHash<QString, int> nameCounts() const;

 private:
  std::vector<Entry>::iterator find(const QString& expression);
  void limit();
  void save() const;

  QString m_key;
  std::shared_ptr<std::vector<Entry>> m_entries;  // shared by those with the same key
};

}  // namespace kelvarin
