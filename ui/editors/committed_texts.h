// The texts of an editor's fields, each with what was committed to the action last.
//
// Used by the expression editors for what was typed and is not in the action yet.
// Threads: the user-interface thread.
#pragma once

#include <functional>
#include <vector>

#include <QMap>
#include <QString>

namespace kelvarin {

class CommittedTexts {
 public:
  using Read = std::function<QString()>;
  using Show = std::function<void(const QString&)>;

  // A field with its name, how its text is read, and how another one is shown in it.
  void add(const QString& field, Read text, Show show);

  bool isCommitted(const QString& field) const;
  // As it is now.
  void setCommitted(const QString& field);
  void setAllCommitted();

  // Fields and their texts, where these are not committed.
  QMap<QString, QString> uncommitted() const;
  // Shows them in their fields; names of other fields are passed over.
  void restore(const QMap<QString, QString>& texts) const;

 private:
  struct Field {
    QString name;
    Read text;
    Show show;
    QString committed;
  };

  const Field* find(const QString& name) const;

  std::vector<Field> m_fields;
};

}  // namespace kelvarin
