// Writes the table of its input pin into columnar files.
//
// Its row work is not built yet: init() says so. Here are its settings, their XML and its pins.
// Threads: those of ActionItem.
#pragma once

#include <utility>
#include <vector>

#include "actions/frame/attributes.h"
#include "actions/frame/catalogued.h"
#include "host/contract/action_item.h"

namespace kelvarin {

struct WriteColumnarSettings {
  QString file = QStringLiteral("");
  QString splitColumn = QStringLiteral("");
  int threadCount = -1;  // below 1: the host's default
  int rowsInBlock = 5000;
  int columnStrategy =
      0;  // 0 one column set, 1 the list of ColumnStrategy, 2 a set for each column
  bool createDirectory = false;
  bool checkNameCollision = true;  // against other files that the graph writes
  bool alwaysDelete = false;       // removes the old file even when the input table is empty
  CutNumber segmentSize{100};      // of one file when splitting by size, in MiB
  int split = 0;                   // 0 one file, 1 by size, 2 by the value of splitColumn
  bool advancedNaming = false;     // names of split files are expressions over `SplitVal`
  bool writeAllRows = true;        // otherwise only rows whose testColumn equals testValue
  QString testColumn = QStringLiteral("");
  QString testValue = QStringLiteral("");
  int deleteTimeOutSeconds = 1;  // how long to wait for a locked previous file
};

class WriteColumnarGel : public Catalogued<WriteColumnarGel, ActionItem> {
 public:
  // Which column set a column goes to, in the order of the file.
  using ColumnSets = std::vector<std::pair<QString, int>>;

  WriteColumnarGel(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  void saveXML(std::wostringstream& out, QString name) override;
  char init() override;
  void setComputeRoutine() override;

  const WriteColumnarSettings& settings() const { return m_settings; }

 private:
  WriteColumnarSettings m_settings;
  ColumnSets m_columnSets;
};

}  // namespace kelvarin
