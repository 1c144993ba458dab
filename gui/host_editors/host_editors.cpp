#include "gui/host_editors/host_editors.h"

#include "gui/host_editors/discard_editor.h"
#include "gui/host_editors/inline_table_editor.h"
#include "gui/host_editors/read_arrow_editor.h"
#include "gui/host_editors/read_csv_editor.h"
#include "gui/host_editors/write_table_editor.h"

namespace kelvarin {

namespace {

template <typename Editor, auto... Arguments>
void add(EditorRegistry& registry, const char* typeName) {
  registry.add(typeName, [](QWidget* parent, ActionItem* action) {
    return new Editor(*action, Arguments..., parent);
  });
}

}  // namespace

void addHostEditors(EditorRegistry& registry) {
  add<ReadCsvEditor>(registry, "ReadCSV");
  add<ReadArrowEditor, ArrowFormat::parquet>(registry, "ReadParquet");
  add<ReadArrowEditor, ArrowFormat::arrow>(registry, "ReadArrow");
  add<WriteTableEditor, FileFormat::csv>(registry, "WriteCSV");
  add<WriteTableEditor, FileFormat::parquet>(registry, "WriteParquet");
  add<WriteTableEditor, FileFormat::arrow>(registry, "WriteArrow");
  add<InlineTableEditor>(registry, "InlineTable");
  add<DiscardEditor>(registry, "Discard");
}

}  // namespace kelvarin
