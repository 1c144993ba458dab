#include "gui/host_editors/discard_editor.h"

#include <QLabel>

namespace kelvarin {

DiscardEditor::DiscardEditor(ActionItem& action, QWidget* parent) : HostEditor(action, parent) {
  auto* text =
      new QLabel(tr("Rows are read and counted here, and kept nowhere. There is nothing to set."));
  text->setWordWrap(true);
  page().addWidget(text);
  page().addStretch();
}

}  // namespace kelvarin
