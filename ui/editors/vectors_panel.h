// The vectors of a vectorized calculator, and the columns that it will create, before any run.
//
// Threads: the user-interface thread.
#pragma once

#include <QWidget>

#include "ui/editors/pin_table.h"

class QLabel;
class QListWidget;

namespace kelvarin {

class InfoLine;
class MyTable;
class VectorsModel;

class VectorsPanel : public QWidget {
  Q_OBJECT

 public:
  explicit VectorsPanel(PinTable& table, QWidget* parent = nullptr);

 private:
  QWidget* makeVectors();
  QWidget* makeNames();
  void showTable();
  void showNames(const Result<QStringList, QString>& names);

  PinTable& m_pinTable;
  VectorsModel* m_model;
  MyTable* m_vectors;
  InfoLine* m_note;
  QLabel* m_namesLabel;
  QListWidget* m_names;
};

}  // namespace kelvarin
