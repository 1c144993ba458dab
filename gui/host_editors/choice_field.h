// A field with a few usual values, each shown with a word, in which any other value can be typed,
// a graph parameter too.
//
// Used by: the editors of table files.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QComboBox>

namespace kelvarin {

class ChoiceField : public QComboBox {
  Q_OBJECT

 public:
  struct Choice {
    QString value;
    QString label;
  };

  explicit ChoiceField(std::vector<Choice> choices, QWidget* parent = nullptr);

  QString value() const;
  // Reports nothing.
  void setValue(const QString& value);

 signals:
  // An entry was chosen, or another value typed and the field left.
  void valueChanged();

 private:
  void report();

  std::vector<Choice> m_choices;
  QString m_reported;
};

}  // namespace kelvarin
