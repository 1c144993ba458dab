// A check box or a radio button whose text may take several lines, in narrow panels and with large
// fonts.
//
// Buttons have texts of one line only, so the text is a label beside the button; a click on it is
// one on the button.
// Threads: the user-interface thread.
#pragma once

#include <initializer_list>

#include <QLabel>

class QAbstractButton;

namespace kelvarin {

class ChoiceLabel : public QLabel {
  Q_OBJECT

 public:
  ChoiceLabel(const QString& text, QAbstractButton& button, QWidget* parent);

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  QAbstractButton& m_button;
};

// Puts the button, which has no text, and its text into a row, which becomes its parent.
void putBesideText(QAbstractButton& button, const QString& text, QWidget* parent);
// The row.
QWidget* choiceRow(const QAbstractButton* button);
// Of radio buttons in several rows one is checked.
void makeExclusive(std::initializer_list<QAbstractButton*> buttons, QObject* parent);

}  // namespace kelvarin
