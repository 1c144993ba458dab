// What stands in place of an empty canvas: new graph, open, the graphs that were open last, and
// examples as pictures.
//
// Threads: the user-interface thread; files are looked for beside it.
#pragma once

#include <QWidget>

class QListWidget;
class QGridLayout;

namespace kelvarin {

class StartPage : public QWidget {
  Q_OBJECT

 public:
  explicit StartPage(QWidget* parent = nullptr);

  // Reads the list of recent graphs anew.
  void refresh();
  // An example with its picture; `title` is one line.
  void addExample(const QString& path, const QString& title, const QString& description,
                  const QPixmap& picture);

 signals:
  void newWanted();
  void openWanted();
  void graphWanted(const QString& path);
  void exampleWanted(const QString& path);
  void tourWanted();

 private:
  QWidget* newHeader();
  QWidget* newRecent();
  QWidget* newExamples();

  QListWidget* m_recent;
  QWidget* m_recentPart;
  QWidget* m_examplesPart;
  QGridLayout* m_examples;
};

}  // namespace kelvarin
