// Texts of Qt that windows show often, so that they are translated where Qt's own translations are
// not installed. Contexts and texts are Qt's.
//
// Read by lupdate for ui/translations, and by the test of the translation.
#pragma once

#include <QtGlobal>

namespace kelvarin {

struct TextOfQt {
  const char* context;
  const char* text;
};

inline constexpr TextOfQt kTextsOfQt[] = {
    // Buttons
    {"QPlatformTheme", QT_TRANSLATE_NOOP("QPlatformTheme", "OK")},
    {"QPlatformTheme", QT_TRANSLATE_NOOP("QPlatformTheme", "Save")},
    {"QPlatformTheme", QT_TRANSLATE_NOOP("QPlatformTheme", "Open")},
    {"QPlatformTheme", QT_TRANSLATE_NOOP("QPlatformTheme", "&Yes")},
    {"QPlatformTheme", QT_TRANSLATE_NOOP("QPlatformTheme", "&No")},
    {"QPlatformTheme", QT_TRANSLATE_NOOP("QPlatformTheme", "Retry")},
    {"QPlatformTheme", QT_TRANSLATE_NOOP("QPlatformTheme", "Close")},
    {"QPlatformTheme", QT_TRANSLATE_NOOP("QPlatformTheme", "Cancel")},
    {"QPlatformTheme", QT_TRANSLATE_NOOP("QPlatformTheme", "Discard")},
    {"QPlatformTheme", QT_TRANSLATE_NOOP("QPlatformTheme", "Help")},
    {"QPlatformTheme", QT_TRANSLATE_NOOP("QPlatformTheme", "Apply")},
    {"QPlatformTheme", QT_TRANSLATE_NOOP("QPlatformTheme", "Reset")},
    {"QGnomeTheme", QT_TRANSLATE_NOOP("QGnomeTheme", "&OK")},
    {"QGnomeTheme", QT_TRANSLATE_NOOP("QGnomeTheme", "&Save")},
    {"QGnomeTheme", QT_TRANSLATE_NOOP("QGnomeTheme", "&Cancel")},
    {"QGnomeTheme", QT_TRANSLATE_NOOP("QGnomeTheme", "&Close")},
    {"QGnomeTheme", QT_TRANSLATE_NOOP("QGnomeTheme", "Close without Saving")},
    // Menus of fields
    {"QLineEdit", QT_TRANSLATE_NOOP("QLineEdit", "&Undo")},
    {"QLineEdit", QT_TRANSLATE_NOOP("QLineEdit", "&Redo")},
    {"QLineEdit", QT_TRANSLATE_NOOP("QLineEdit", "Cu&t")},
    {"QLineEdit", QT_TRANSLATE_NOOP("QLineEdit", "&Copy")},
    {"QLineEdit", QT_TRANSLATE_NOOP("QLineEdit", "&Paste")},
    {"QLineEdit", QT_TRANSLATE_NOOP("QLineEdit", "Delete")},
    {"QLineEdit", QT_TRANSLATE_NOOP("QLineEdit", "Select All")},
    {"QWidgetTextControl", QT_TRANSLATE_NOOP("QWidgetTextControl", "&Undo")},
    {"QWidgetTextControl", QT_TRANSLATE_NOOP("QWidgetTextControl", "&Redo")},
    {"QWidgetTextControl", QT_TRANSLATE_NOOP("QWidgetTextControl", "Cu&t")},
    {"QWidgetTextControl", QT_TRANSLATE_NOOP("QWidgetTextControl", "&Copy")},
    {"QWidgetTextControl", QT_TRANSLATE_NOOP("QWidgetTextControl", "Copy &Link Location")},
    {"QWidgetTextControl", QT_TRANSLATE_NOOP("QWidgetTextControl", "&Paste")},
    {"QWidgetTextControl", QT_TRANSLATE_NOOP("QWidgetTextControl", "Delete")},
    {"QWidgetTextControl", QT_TRANSLATE_NOOP("QWidgetTextControl", "Select All")},
    {"QAbstractSpinBox", QT_TRANSLATE_NOOP("QAbstractSpinBox", "&Select All")},
    {"QAbstractSpinBox", QT_TRANSLATE_NOOP("QAbstractSpinBox", "&Step up")},
    {"QAbstractSpinBox", QT_TRANSLATE_NOOP("QAbstractSpinBox", "Step &down")},
    // Keys beside the entries of menus
    {"QShortcut", QT_TRANSLATE_NOOP("QShortcut", "Ctrl")},
    {"QShortcut", QT_TRANSLATE_NOOP("QShortcut", "Shift")},
    {"QShortcut", QT_TRANSLATE_NOOP("QShortcut", "Del")},
    {"QShortcut", QT_TRANSLATE_NOOP("QShortcut", "Return")},
    {"QShortcut", QT_TRANSLATE_NOOP("QShortcut", "Space")},
    {"QShortcut", QT_TRANSLATE_NOOP("QShortcut", "Up")},
    {"QShortcut", QT_TRANSLATE_NOOP("QShortcut", "Down")},
    {"QShortcut", QT_TRANSLATE_NOOP("QShortcut", "Left")},
    {"QShortcut", QT_TRANSLATE_NOOP("QShortcut", "Right")},
};

}  // namespace kelvarin
