// What the commands with windows say on the terminal when they cannot open one.
#pragma once

#include <QString>

namespace kelvarin::gui_messages {

inline QString noScreen() {
  return QStringLiteral(
      "There is no screen to open a window on: neither DISPLAY nor WAYLAND_DISPLAY is set. Start "
      "the program from a desktop, or log in with 'ssh -X'. Without a window, graphs can be edited "
      "as text and checked with 'kelvarin check'.");
}

inline QString screenNotReached(const QString& reason) {
  return QStringLiteral(
             "No window can be opened: %1. Check DISPLAY or WAYLAND_DISPLAY, and that you may use "
             "that screen.")
      .arg(reason.trimmed());
}

inline QString noGraph(const QString& file, const QString& hint) {
  const QString text = QStringLiteral("There is no graph file %1.").arg(file);
  return hint.isEmpty() ? text : text + u' ' + hint;
}

}  // namespace kelvarin::gui_messages
