// What the plug-in asks of the library with its editors.
#pragma once

class ActionItem;
class QWidget;
class UpdateClassWidget;

namespace kelvarin {

// The editor of an action of the plug-in, a child of `parent`; null for any other type.
using CreateEditorFunction = UpdateClassWidget* (*)(QWidget* parent, ActionItem* action);
inline constexpr char kCreateEditorFunction[] = "kelvarinCreateEditor";
inline constexpr char kEditorsLibrary[] = "libKelvarinEditors.so";

}  // namespace kelvarin
