// A tab of an editor: groups of controls, each of which reports a change of its own.
//
// A derived page fills its controls from the settings and stores them there; the dialog around it
// decides when. Controls report only what a user does.
// Threads: the user-interface thread.
#pragma once

#include <QWidget>

class QCheckBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSpinBox;
class QVBoxLayout;

namespace kelvarin {

class SettingsPage : public QWidget {
  Q_OBJECT

 public:
  explicit SettingsPage(QWidget* parent = nullptr);

 signals:
  // A control has a new value.
  void changed();

 protected:
  // Each names, connects and returns it. Labels may have mnemonics. Check boxes and radio buttons
  // are laid out by their choiceRow().
  QCheckBox* checkBox(const char* name, const QString& label, const QString& toolTip = {});
  QRadioButton* radioButton(const char* name, const QString& label, const QString& toolTip = {});
  QSpinBox* spinBox(const char* name, int minimum, int maximum, const QString& accessibleName);
  QPushButton* pushButton(const char* name, const QString& label);
  // Reports at the end of editing.
  QLineEdit* watch(QLineEdit* field, const char* name, const QString& accessibleName);

  // A number that the box cannot show stays until the user changes it.
  static void storeNumber(const QSpinBox& box, int& setting);

  // With its layout.
  QGroupBox* group(const QString& title);
  // The layout of the page; a stretch belongs at its end.
  QVBoxLayout* pageLayout() const { return m_layout; }

 private:
  QVBoxLayout* m_layout;
};

// A row of widgets without margins, in several lines where the width does not suffice.
QWidget* rowOf(std::initializer_list<QWidget*> widgets, QWidget* parent);
// The same below a choice to which they belong.
QWidget* indented(std::initializer_list<QWidget*> widgets, QWidget* parent);

}  // namespace kelvarin
