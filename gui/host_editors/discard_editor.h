// The editor of Discard, which has nothing to set.
#pragma once

#include "gui/host_editors/host_editor.h"

namespace kelvarin {

class DiscardEditor : public HostEditor {
  Q_OBJECT

 public:
  DiscardEditor(ActionItem& action, QWidget* parent);
};

}  // namespace kelvarin
