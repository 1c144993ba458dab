// The outputs of a calculator as its editor has them: their settings, the current one, and whose
// expression was refused. There is always one at least.
//
// Used by Interface_actionMathParser.
#pragma once

#include <vector>

#include <QStringList>

#include "expression/evaluator/variables.h"

namespace kelvarin {

class OutputList {
 public:
  // `nameOfNew`: what a new output is called; %1 is what distinguishes it from others.
  explicit OutputList(QString nameOfNew) : m_nameOfNew(std::move(nameOfNew)) {}

  // The first one is the current one; none was refused.
  void set(const std::vector<OutputVariable>& variables);
  // The same outputs, as the action has changed them.
  void update(const std::vector<OutputVariable>& variables);

  int size() const { return static_cast<int>(m_outputs.size()); }
  bool has(int index) const { return index >= 0 && index < size(); }
  const OutputVariable& at(int index) const { return entry(index).variable; }
  std::vector<OutputVariable> variables() const;
  QStringList names() const;

  int currentIndex() const { return m_current; }
  void setCurrent(int index) { m_current = index; }
  OutputVariable& current() { return entry(m_current).variable; }
  const OutputVariable& current() const { return entry(m_current).variable; }

  void setExpression(int index, const QString& expression) {
    entry(index).variable.expression = expression;
  }
  bool isRefused(int index) const { return entry(index).isRefused; }
  void setRefused(int index, bool isRefused) { entry(index).isRefused = isRefused; }
  bool isAnyRefused() const;

  // At the end; it is the current one then.
  void add();
  // It changes sides with its neighbour and stays the current one. False: there is none.
  bool moveCurrent(bool isLeft);
  void remove(int index);

 private:
  struct Entry {
    OutputVariable variable;
    bool isRefused = false;
  };

  Entry& entry(int index) { return m_outputs[static_cast<std::size_t>(index)]; }
  const Entry& entry(int index) const { return m_outputs[static_cast<std::size_t>(index)]; }
  QString newName() const;

  QString m_nameOfNew;
  std::vector<Entry> m_outputs;
  int m_current = 0;
};

}  // namespace kelvarin
