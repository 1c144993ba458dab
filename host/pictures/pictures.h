// Pixmaps drawn from SVG files: the icons of actions and of the editors' buttons.
//
// Pixmaps need a QGuiApplication. Without one there is no picture, and the log says so once.
// Threads: the user-interface thread.
#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>

#include "base/export.h"

// Draws an SVG file or resource into a square of `size` logical pixels. `cache` and `cacheState`
// are the caller's static storage for one picture: it is drawn again only when its size in device
// pixels changes, and the result points to `*cache`. Without them renderSVG() keeps one pixmap for
// each path itself. Null when there is no screen or no valid file; a message is logged the first
// time.
KELVARIN_CORE QPixmap* renderSVG(double size, QString path, QPixmap* cache, void** cacheState);

// renderSVG() with a pixmap of its own, under a name for who opens this library.
extern "C" KELVARIN_CORE QPixmap* kelvarinDrawPicture(double size, const QString& path);

// For the buttons that add and remove lines; null icons without a screen.
KELVARIN_CORE QIcon getPlusIcon();
KELVARIN_CORE QIcon getMinusIcon();
