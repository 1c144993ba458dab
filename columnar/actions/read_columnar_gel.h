// Reads columnar files and gives their rows.
//
// The first call of the row routine finds the files and opens the first one, the later ones hand
// out rows; columnar_read.h has the work in between. Threads: those of ActionItem, beside one
// reading thread.  Errors: logged, and the run fails.
#pragma once

#include <memory>

#include "actions/frame/catalogued.h"
#include "columnar/actions/block_filter.h"
#include "columnar/actions/columnar_read.h"
#include "columnar/actions/read_settings.h"
#include "host/contract/action_item.h"

namespace kelvarin {

class ReadColumnarGel : public Catalogued<ReadColumnarGel, ActionItem>, public FileUser {
 public:
  ReadColumnarGel(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  void saveXML(std::wostringstream& out, QString name) override;
  char init() override;
  char close() override;
  void setComputeRoutine() override;
  float computeCompletion() const override;
  char fullTableRequiredToComputeMetas(int pin, bool* isKnown) override;
  QList<UsedFile> usedFiles() const override;

  // The one whose rows are published; null when there is none.
  DecodedBlock* block() const { return m_block; }
  // False at the end and after a failure.
  bool takeNextBlock();

  // For tests: passes the time while a missing file is waited for.
  void setPause(Pause pause) { m_pause = std::move(pause); }

 private:
  static bool computeFirstRow(ActionItem* action);
  [[nodiscard]] bool claimFiles();  // false: logged
  // A filter that is set but not applied, or the other way round; a list of columns without use.
  void warnOfIdleSettings() const;

  ReadColumnarSettings m_settings;
  BlockFilter m_blockFilter;
  QStringList m_columnsToRead;
  Pause m_pause = sleepFor;
  ClaimedNames m_names;

  std::unique_ptr<ColumnarRead> m_read;
  DecodedBlock* m_block = nullptr;
};

}  // namespace kelvarin
