#include "ui/editors/output_list.h"

#include <algorithm>

namespace kelvarin {

namespace {

const QString kNewExpression = QStringLiteral("1");

}  // namespace

void OutputList::set(const std::vector<OutputVariable>& variables) {
  m_outputs.clear();
  for (const OutputVariable& variable : variables) {
    m_outputs.push_back({variable});
  }
  m_current = 0;
}

void OutputList::update(const std::vector<OutputVariable>& variables) {
  for (std::size_t i = 0; i < m_outputs.size() && i < variables.size(); ++i) {
    m_outputs[i].variable = variables[i];
  }
}

std::vector<OutputVariable> OutputList::variables() const {
  std::vector<OutputVariable> variables;
  variables.reserve(m_outputs.size());
  for (const Entry& output : m_outputs) {
    variables.push_back(output.variable);
  }
  return variables;
}

QStringList OutputList::names() const {
  QStringList names;
  for (const Entry& output : m_outputs) {
    names += output.variable.name;
  }
  return names;
}

bool OutputList::isAnyRefused() const {
  return std::any_of(m_outputs.begin(), m_outputs.end(),
                     [](const Entry& output) { return output.isRefused; });
}

QString OutputList::newName() const {
  const QStringList names = this->names();
  QString name = m_nameOfNew.arg(QString());
  for (int number = 2; names.contains(name); ++number) {
    name = m_nameOfNew.arg(number);
  }
  return name;
}

void OutputList::add() {
  Entry output;
  output.variable.name = newName();
  output.variable.expression = kNewExpression;
  m_outputs.push_back(std::move(output));
  m_current = size() - 1;
}

bool OutputList::moveCurrent(bool isLeft) {
  const int target = isLeft ? m_current - 1 : m_current + 1;
  if (!has(target)) {
    return false;
  }
  std::swap(entry(target), entry(m_current));
  m_current = target;
  return true;
}

void OutputList::remove(int index) {
  m_outputs.erase(m_outputs.begin() + index);
  if (m_current > index || m_current == size()) {
    --m_current;
  }
}

}  // namespace kelvarin
