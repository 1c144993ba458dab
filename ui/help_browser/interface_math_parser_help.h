// The help tab of the expression editors: every function, sign, constant and unit, with a search,
// details, and examples that can be tried.
//
// Threads: the user-interface thread.
#pragma once

#include <memory>

#include <QWidget>

namespace kelvarin {

class Interface_mathParserHelp : public QWidget {
  Q_OBJECT

 public:
  explicit Interface_mathParserHelp(QWidget* parent = nullptr);
  ~Interface_mathParserHelp() override;

  // Selects the entry of the name, or searches for it.
  void showName(const QString& name);

 signals:
  // The user wants it at the cursor of the expression.
  void insertWanted(const QString& text);

 private:
  class Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace kelvarin
