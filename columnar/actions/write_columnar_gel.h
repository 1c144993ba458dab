// Writes the table of its input pin into one columnar file, or into several.
//
// ColumnarWrite does the work of a run; here are the settings, their XML and the pins.
// Threads: those of ActionItem.
// Errors: logged, and the run is marked as failed.
#pragma once

#include <memory>

#include "actions/frame/catalogued.h"
#include "columnar/actions/columnar_write.h"
#include "columnar/actions/write_settings.h"
#include "host/contract/action_item.h"
#include "host/contract/claimed_names.h"
#include "host/contract/column_user.h"
#include "host/files/output_check.h"

namespace kelvarin {

class WriteColumnarGel : public Catalogued<WriteColumnarGel, ActionItem>,
                         public BatchSink,
                         public FileUser,
                         public OutputCheck,
                         public ColumnUser {
 public:
  WriteColumnarGel(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  void saveXML(std::wostringstream& out, QString name) override;
  char init() override;
  char close() override;
  void setComputeRoutine() override;
  QList<UsedFile> usedFiles() const override;
  QStringList warningsAboutFiles() const override;
  void checkOutput() override;
  ColumnFate followColumn(const QString& oldName, const QString& newName) override;

  // For tests: replaces the sleep while a locked file is waited for.
  void setPause(Pause pause) { m_pause = std::move(pause); }

  // The setters are for editors, between runs; each leaves what saving and reading the action's XML
  // would.
  const WriteColumnarSettings& settings() const { return m_settings; }
  void setSettings(WriteColumnarSettings settings);
  const ListedColumnSets& columnSets() const { return m_columnSets; }
  void setColumnSets(ListedColumnSets sets);

 private:
  static bool computeFirstRow(ActionItem* action);
  static bool computeBatch(ActionItem* action);
  [[nodiscard]] bool claimFiles();  // false: logged
  QString warningAboutExtension() const;
  void warnOfSettingsWithoutEffect() const;

  WriteColumnarSettings m_settings;
  ListedColumnSets m_columnSets;
  Pause m_pause = sleepFor;
  ClaimedNames m_names;
  std::unique_ptr<ColumnarWrite> m_write;  // between the first row and close()
};

}  // namespace kelvarin
