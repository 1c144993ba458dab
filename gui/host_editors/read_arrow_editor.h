// The editor of ReadParquet and ReadArrow.
//
// Threads: the user-interface thread.
#pragma once

#include "gui/host_editors/read_table_editor.h"
#include "host/tables/arrow/arrow_formats.h"

namespace kelvarin {

class ReadArrowEditor : public ReadTableEditor {
  Q_OBJECT

 public:
  ReadArrowEditor(ActionItem& action, ArrowFormat format, QWidget* parent);

 protected:
  MakeBatchReader reader(const QString& path) const override;
  FileFormat format() const override {
    return m_format == ArrowFormat::parquet ? FileFormat::parquet : FileFormat::arrow;
  }
  QString filter() const override;

 private:
  ArrowFormat m_format;
};

}  // namespace kelvarin
