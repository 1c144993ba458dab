// The vectors of a vectorized calculator, and the columns that it will create, before any run: the
// first two pages beside its expression.
//
// Used by Interface_actionMathParser, which adds further pages.
// Threads: the user-interface thread.
#pragma once

#include <QTabWidget>

#include "ui/editors/pin_table.h"

class QListWidget;

namespace kelvarin {

class InfoLine;
class MyTable;
class VectorsModel;

class VectorsPanel : public QTabWidget {
  Q_OBJECT

 public:
  explicit VectorsPanel(PinTable& table, QWidget* parent = nullptr);

 private:
  void addVectors();
  void addNames();
  void showTable();
  void showNames(const Result<QStringList, QString>& names);

  PinTable& m_pinTable;
  VectorsModel* m_model;
  MyTable* m_vectors;
  InfoLine* m_tableNote;
  QListWidget* m_names;
  InfoLine* m_namesNote;
};

}  // namespace kelvarin
