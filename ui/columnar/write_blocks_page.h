// The tab of the writing dialog about blocks and threads, with the memory that they mean.
#pragma once

#include <memory>

#include "columnar/actions/write_settings.h"
#include "host/contract/pin_rows.h"
#include "ui/panels/settings_page.h"

class QLabel;

namespace kelvarin {

class WriteBlocksPage : public SettingsPage {
  Q_OBJECT

 public:
  explicit WriteBlocksPage(QWidget* parent = nullptr);

  void load(const WriteColumnarSettings& settings);
  void store(WriteColumnarSettings& settings) const;
  // `rows` may be null.
  void setInput(const PinColumns& columns, std::shared_ptr<const PinRows> rows);

 private:
  void showMemory();

  QSpinBox* m_rowsInBlock;
  QSpinBox* m_threads;
  QLabel* m_memory;
  PinColumns m_columns;
  std::shared_ptr<const PinRows> m_rows;
};

}  // namespace kelvarin
