#include "plugin/editors_loader.h"

#include <string>

#include "actions/frame/build_identity.h"
#include "actions/frame/editors_library.h"
#include "actions/frame/messages.h"
#include "base/sibling_library.h"
#include "host/contract/main_ui.h"
#include "host/contract/screen.h"

namespace kelvarin {

namespace {

// What editors put into actions is their code, so the library stays open.
CreateEditorFunction loadLibrary() {
  const std::string path =
      siblingLibrary(reinterpret_cast<const void*>(&loadLibrary), kEditorsLibrary);
  const auto function = functionOfLibrary(path, kCreateEditorFunction);
  if (!function) {
    MainUI::addLog(LogLevel::error, action_messages::editorsNotLoaded(
                                        QString::fromLocal8Bit(path.c_str()),
                                        QString::fromLocal8Bit(function.error().c_str())));
    return nullptr;
  }
  return reinterpret_cast<CreateEditorFunction>(*function);
}

}  // namespace

UpdateClassWidget* createEditor(QWidget* parent, ActionItem* action) {
  if (screen() == nullptr) {
    return nullptr;
  }
  static const CreateEditorFunction create = loadLibrary();
  return create == nullptr ? nullptr : create(parent, action, buildIdentity());
}

}  // namespace kelvarin
