// A step debugger that writes down what it is shown and stops after so many rows.
#pragma once

#include <string>
#include <vector>

#include "actions/frame/row_observer.h"

namespace kelvarin::testing {

class FakeObserver : public RowObserver {
 public:
  explicit FakeObserver(int rowsBeforeStop = 1000) : m_rowsLeft(rowsBeforeStop) {}

  QStringList labels;
  std::vector<ObservedRow> rows;

  // "name=value" or, in a vector, "name[element]=value"; texts in quotes, null as it is.
  std::string variables(std::size_t row) const {
    std::string text;
    for (std::size_t i = 0; i < rows[row].variables.size(); ++i) {
      const ShownVariable& variable = rows[row].names->variables[i];
      const std::string index =
          variable.element < 0 ? "" : "[" + std::to_string(variable.element) + "]";
      text += " " + variable.name.toStdString() + index + "=" + shown(rows[row].variables[i]);
    }
    return text.substr(text.empty() ? 0 : 1);
  }
  std::string results(std::size_t row) const {
    std::string text;
    for (std::size_t i = 0; i < rows[row].results.size(); ++i) {
      text += " " + rows[row].names->results[static_cast<int>(i)].toStdString() + "=" +
              shown(rows[row].results[i]);
    }
    return text.substr(text.empty() ? 0 : 1);
  }

  void backendsChosen(const QStringList& chosen) override { labels = chosen; }
  void rowEvaluated(const ObservedRow& row) override { rows.push_back(row); }
  bool waitForStep() override { return --m_rowsLeft > 0; }

 private:
  static std::string shown(const ExpressionValue& value) {
    if (value.isNull()) {
      return "null";
    }
    switch (value.type) {
      case ExpressionValue::Type::number:
        return QString::number(value.number).toStdString();
      case ExpressionValue::Type::boolean:
        return value.number != 0.0 ? "true" : "false";
      case ExpressionValue::Type::text:
        break;
    }
    return "'" + value.text.toStdString() + "'";
  }

  int m_rowsLeft;
};

}  // namespace kelvarin::testing
