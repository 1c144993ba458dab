#include "gui/host_editors/choice_field.h"

#include <algorithm>

#include <QCompleter>
#include <QLineEdit>

namespace kelvarin {

ChoiceField::ChoiceField(std::vector<Choice> choices, QWidget* parent)
    : QComboBox(parent), m_choices(std::move(choices)) {
  setEditable(true);
  setInsertPolicy(QComboBox::NoInsert);
  setCompleter(nullptr);  // it would make "Comma" of a typed "C"
  for (const Choice& choice : m_choices) {
    addItem(choice.label);
  }
  setValue(m_choices.front().value);
  connect(this, &QComboBox::activated, this, &ChoiceField::report);
  connect(lineEdit(), &QLineEdit::editingFinished, this, &ChoiceField::report);
}

QString ChoiceField::value() const {
  const auto choice = std::ranges::find(m_choices, currentText(), &Choice::label);
  return choice == m_choices.end() ? currentText() : choice->value;
}

void ChoiceField::setValue(const QString& value) {
  const auto choice = std::ranges::find(m_choices, value, &Choice::value);
  if (choice != m_choices.end()) {
    setCurrentIndex(static_cast<int>(choice - m_choices.begin()));
  }
  setEditText(choice == m_choices.end() ? value : choice->label);
  lineEdit()->setCursorPosition(0);
  m_reported = value;
}

void ChoiceField::report() {
  const QString now = value();
  if (now != m_reported) {
    m_reported = now;
    emit valueChanged();
  }
}

}  // namespace kelvarin
