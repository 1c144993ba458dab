// Stands in an editor's position where the plug-in and the library with its editors are not of one
// build, and says what to do.
//
// Threads: the user-interface thread.
#pragma once

#include "host/widgets/user_interface.h"

namespace kelvarin {

class EditorOfOtherBuild : public UpdateClassWidget {
  Q_OBJECT

 public:
  explicit EditorOfOtherBuild(QWidget* parent);
};

}  // namespace kelvarin
