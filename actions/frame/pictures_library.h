// The pictures of actions, drawn by the library KelvarinPictures, which is opened at the first one:
// a run without a screen needs neither it nor Qt Gui.
//
// Used by: Catalogued.
// Threads: the user-interface thread.
#pragma once

#include <QString>

class QPixmap;

namespace kelvarin {

// As renderSVG() with a pixmap of its own; null, too, where the library is not installed.
QPixmap* pictureOfLibrary(double size, const QString& path);

}  // namespace kelvarin
