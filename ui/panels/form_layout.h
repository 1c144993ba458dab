// The spacing of forms, and forms that put a field below its label where the window is narrow.
#pragma once

#include <QFormLayout>
#include <QLineEdit>

namespace kelvarin {

inline constexpr int kControlSpacing = 4;
inline constexpr int kGroupSpacing = 12;

inline QFormLayout* wrappingForm(QWidget* parent) {
  auto* form = new QFormLayout(parent);
  form->setRowWrapPolicy(QFormLayout::WrapLongRows);
  form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  form->setVerticalSpacing(8);
  form->setHorizontalSpacing(8);
  return form;
}

// A text that is there already stays as it is, with cursor and undo.
inline void setTextKeepingCursor(QLineEdit& field, const QString& text) {
  if (field.text() != text) {
    field.setText(text);
  }
}

}  // namespace kelvarin
