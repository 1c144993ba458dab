// What stands where a list or a table has nothing to show: an icon, a sentence that says what to
// do next, and a button that does it.
#pragma once

#include <QWidget>

#include "base/export.h"
#include "host/widgets/icons.h"

class QLabel;
class QPushButton;

namespace kelvarin {

class KELVARIN_CORE EmptyState : public QWidget {
  Q_OBJECT

 public:
  EmptyState(IconName icon, const QString& sentence, QWidget* parent = nullptr);

  void setSentence(const QString& sentence);
  // With an empty label there is no button.
  void setAction(const QString& label);

 signals:
  void actionTriggered();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void showIcon();

  IconName m_iconName;
  QLabel* m_icon;
  QLabel* m_sentence;
  QPushButton* m_button;
};

}  // namespace kelvarin
