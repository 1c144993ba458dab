#include "ui/editors/editor_of_other_build.h"

#include <QVBoxLayout>

#include "host/widgets/info_line.h"
#include "ui/panels/form_layout.h"

namespace kelvarin {

EditorOfOtherBuild::EditorOfOtherBuild(QWidget* parent) : UpdateClassWidget(parent) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kGroupSpacing, kGroupSpacing, kGroupSpacing, kGroupSpacing);
  auto* note = new InfoLine(this);
  note->setMessage(Severity::error,
                   tr("The property editors cannot be shown: libKelvarinEditors.so is not of the "
                      "same build as libKelvarinMathParser.so beside it. Install both from one "
                      "build, and start again. The graph and its actions are not affected."));
  layout->addWidget(note);
  layout->addStretch(1);
}

}  // namespace kelvarin
