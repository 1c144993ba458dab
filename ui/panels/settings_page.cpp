#include "ui/panels/settings_page.h"

#include <algorithm>

#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "ui/panels/form_layout.h"
#include "ui/panels/wrapping_choice.h"
#include "ui/widgets/flow_layout.h"

namespace kelvarin {

SettingsPage::SettingsPage(QWidget* parent) : QWidget(parent), m_layout(new QVBoxLayout(this)) {
  m_layout->setContentsMargins(12, 12, 12, 12);
  m_layout->setSpacing(kGroupSpacing);
}

QCheckBox* SettingsPage::checkBox(const char* name, const QString& label, const QString& toolTip) {
  auto* box = new QCheckBox(this);
  box->setObjectName(QLatin1String(name));
  box->setToolTip(toolTip);
  putBesideText(*box, label, this);
  connect(box, &QCheckBox::clicked, this, &SettingsPage::changed);
  return box;
}

QRadioButton* SettingsPage::radioButton(const char* name, const QString& label,
                                        const QString& toolTip) {
  auto* button = new QRadioButton(this);
  button->setObjectName(QLatin1String(name));
  button->setToolTip(toolTip);
  putBesideText(*button, label, this);
  connect(button, &QRadioButton::clicked, this, &SettingsPage::changed);
  return button;
}

QSpinBox* SettingsPage::spinBox(const char* name, int minimum, int maximum,
                                const QString& accessibleName) {
  auto* box = new QSpinBox(this);
  box->setObjectName(QLatin1String(name));
  box->setAccessibleName(accessibleName);
  box->setRange(minimum, maximum);
  box->setKeyboardTracking(false);
  box->setGroupSeparatorShown(true);
  connect(box, &QSpinBox::valueChanged, this, &SettingsPage::changed);
  return box;
}

void SettingsPage::storeNumber(const QSpinBox& box, int& setting) {
  if (box.value() != std::clamp(setting, box.minimum(), box.maximum())) {
    setting = box.value();
  }
}

QPushButton* SettingsPage::pushButton(const char* name, const QString& label) {
  auto* button = new QPushButton(label, this);
  button->setObjectName(QLatin1String(name));
  button->setAutoDefault(false);
  return button;
}

QLineEdit* SettingsPage::watch(QLineEdit* field, const char* name, const QString& accessibleName) {
  field->setObjectName(QLatin1String(name));
  field->setAccessibleName(accessibleName);
  connect(field, &QLineEdit::editingFinished, this, &SettingsPage::changed);
  return field;
}

QGroupBox* SettingsPage::group(const QString& title) {
  auto* box = new QGroupBox(title, this);
  auto* layout = new QVBoxLayout(box);
  layout->setSpacing(8);
  m_layout->addWidget(box);
  return box;
}

QWidget* rowOf(std::initializer_list<QWidget*> widgets, QWidget* parent) {
  auto* row = new QWidget(parent);
  auto* layout = new FlowLayout(row);
  for (QWidget* widget : widgets) {
    layout->addWidget(widget);
  }
  return row;
}

QWidget* indented(std::initializer_list<QWidget*> widgets, QWidget* parent) {
  QWidget* row = rowOf(widgets, parent);
  row->layout()->setContentsMargins(24, 0, 0, 0);
  return row;
}

}  // namespace kelvarin
