#include "gui/host_editors/read_arrow_editor.h"

namespace kelvarin {

ReadArrowEditor::ReadArrowEditor(ActionItem& action, ArrowFormat format, QWidget* parent)
    : ReadTableEditor(action, parent), m_format(format) {
  addPages();
}

MakeBatchReader ReadArrowEditor::reader(const QString& path) const {
  return [path, format = m_format](
             const ColumnRules& rules) -> Result<std::unique_ptr<BatchReader>, QString> {
    const auto formats = ArrowFormats::load();
    if (!formats) {
      return Failure{formats.error()};
    }
    return (*formats)->makeReader(format, path, rules);
  };
}

QString ReadArrowEditor::filter() const {
  return m_format == ArrowFormat::parquet
             ? tr("Parquet files (*.parquet);;All files (*)")
             : tr("Arrow files (*.arrow *.arrows *.feather *.ipc);;All files (*)");
}

}  // namespace kelvarin
