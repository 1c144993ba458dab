#include "gui/host_editors/read_arrow_editor.h"

#include "gui/host_editors/choice_field.h"
#include "host/tables/arrow/arrow_actions.h"

namespace kelvarin {

ReadArrowEditor::ReadArrowEditor(ActionItem& action, ArrowFormat format, QWidget* parent)
    : ReadTableEditor(action, parent), m_format(format) {
  addChoice(settings(), QStringLiteral("unreadable"), tr("Columns that cannot be read:"),
            new ChoiceField({{QStringLiteral("error"), tr("Stop the run")},
                             {QStringLiteral("text"), tr("Become JSON text")},
                             {QStringLiteral("skip"), tr("Leave them out")}}));
  addPages();
}

MakeBatchReader ReadArrowEditor::reader(const QString& path) const {
  const auto given = static_cast<const ArrowSource&>(action()).rules();
  return [path, format = m_format,
          given](const ColumnRules& rules) -> Result<std::unique_ptr<BatchReader>, QString> {
    if (!given) {
      return Failure{given.error()};
    }
    const auto formats = ArrowFormats::load();
    if (!formats) {
      return Failure{formats.error()};
    }
    return (*formats)->makeReader(format, path, {rules, given->unreadable});
  };
}

QString ReadArrowEditor::filter() const {
  return m_format == ArrowFormat::parquet
             ? tr("Parquet files (*.parquet);;All files (*)")
             : tr("Arrow files (*.arrow *.arrows *.feather *.ipc);;All files (*)");
}

}  // namespace kelvarin
