// The outputs of a calculator as tabs, with buttons that add one and move the current one.
//
// It changes nothing itself: it reports what the user wants. Delete and F2 do on the tabs what the
// cross and a double click do.
// Threads: the user-interface thread.
#pragma once

#include <QStringList>
#include <QWidget>

class QTabBar;

namespace kelvarin {

class IconButton;

class OutputBar : public QWidget {
  Q_OBJECT

 public:
  explicit OutputBar(QWidget* parent = nullptr);

  // Reports nothing.
  void setOutputs(const QStringList& names, int current);
  void setName(int output, const QString& name);
  void setRefused(int output, bool isRefused);
  void setCurrent(int output);

 signals:
  void chosen(int output);
  void addWanted();
  void moveWanted(bool isLeft);
  void deleteWanted(int output);
  void renameWanted(int output);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void updateButtons();

  QTabBar* m_tabs;
  IconButton* m_add;
  IconButton* m_left;
  IconButton* m_right;
};

}  // namespace kelvarin
