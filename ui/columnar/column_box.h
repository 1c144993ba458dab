// A drop-down of an input's columns in which another name can be typed.
//
// Used by the tabs of the writing dialog.
#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QSignalBlocker>

#include "host/contract/pin_columns.h"

namespace kelvarin {

// `name` is that of its field.
inline QComboBox* columnBox(const char* name, const QString& accessibleName, QWidget* parent) {
  auto* box = new QComboBox(parent);
  box->setEditable(true);
  box->setInsertPolicy(QComboBox::NoInsert);
  box->setAccessibleName(accessibleName);
  box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  box->setMinimumContentsLength(12);
  box->lineEdit()->setObjectName(QLatin1String(name));
  box->lineEdit()->setAccessibleName(accessibleName);
  return box;
}

inline void showColumn(QComboBox& box, const QString& name) {
  if (box.currentText() != name) {
    box.setCurrentText(name);
  }
}

// The text stays.
inline void offerColumns(QComboBox& box, const PinColumns& columns) {
  const QSignalBlocker blocker(box);
  const QString text = box.currentText();
  box.clear();
  for (const PinColumns::Column& column : columns.columns) {
    box.addItem(column.name);
  }
  box.setCurrentText(text);
}

}  // namespace kelvarin
