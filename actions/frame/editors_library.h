// What the plug-in asks of the library with its editors.
#pragma once

class ActionItem;
class QWidget;
class UpdateClassWidget;

namespace kelvarin {

// The editor of an action of the plug-in, a child of `parent`; null for any other type. Where
// buildIdentity() of the caller is another one, a widget that says so.
using CreateEditorFunction = UpdateClassWidget* (*)(QWidget* parent, ActionItem* action,
                                                    const char* buildIdentity);
inline constexpr char kCreateEditorFunction[] = "kelvarinCreateEditorOfBuild";
inline constexpr char kEditorsLibrary[] = "libKelvarinEditors.so";

}  // namespace kelvarin
