#include "host/pictures/pictures.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>

#include <QGuiApplication>
#include <QHash>
#include <QPainter>
#include <QSvgRenderer>

#include "host/contract/main_ui.h"
#include "host/pictures/messages.h"

namespace {

constexpr double kIconSize = 16;

// A cache state is the size in device pixels of the picture drawn, null before the first, or this.
constexpr std::intptr_t kNotDrawable = -1;

bool hasScreen() {
  return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
}

void tellNoScreenOnce() {
  static std::atomic<bool> isTold{false};
  if (!isTold.exchange(true)) {
    MainUI::addLog(LogLevel::information, kelvarin::messages::noPictures());
  }
}

// Draws as large as the square allows, keeping the picture's proportions.
bool draw(const QString& path, int pixels, QPixmap& picture) {
  QSvgRenderer renderer(path);
  if (!renderer.isValid()) {
    return false;
  }
  renderer.setAspectRatioMode(Qt::KeepAspectRatio);
  QPixmap drawn(pixels, pixels);
  drawn.fill(Qt::transparent);
  QPainter painter(&drawn);
  renderer.render(&painter, QRectF(0, 0, pixels, pixels));
  painter.end();
  drawn.setDevicePixelRatio(MainUI::pixelSize());
  picture = drawn;
  return true;
}

struct OwnPicture {
  QPixmap pixmap;
  void* state = nullptr;
};

// Kept to the end of the process: pictures given out are never deleted.
OwnPicture& ownPicture(const QString& path) {
  static auto* pictures = new QHash<QString, OwnPicture*>;
  OwnPicture*& picture = (*pictures)[path];
  if (picture == nullptr) {
    picture = new OwnPicture;
  }
  return *picture;
}

QIcon buttonIcon(const char* path) {
  const QPixmap* picture = renderSVG(kIconSize, QString::fromLatin1(path), nullptr, nullptr);
  return picture == nullptr ? QIcon() : QIcon(*picture);
}

}  // namespace

QPixmap* renderSVG(double size, QString path, QPixmap* cache, void** cacheState) {
  if (!hasScreen()) {
    tellNoScreenOnce();
    return nullptr;
  }
  if (cache == nullptr || cacheState == nullptr) {
    OwnPicture& own = ownPicture(path);
    cache = &own.pixmap;
    cacheState = &own.state;
  }
  const auto known = reinterpret_cast<std::intptr_t>(*cacheState);
  const auto pixels =
      static_cast<std::intptr_t>(std::clamp(std::ceil(size * MainUI::pixelSize()), 1.0, 16384.0));
  if (known == kNotDrawable) {
    return nullptr;
  }
  if (known == pixels && !cache->isNull()) {
    return cache;
  }
  const bool isDrawn = draw(path, static_cast<int>(pixels), *cache);
  *cacheState = reinterpret_cast<void*>(isDrawn ? pixels : kNotDrawable);
  if (!isDrawn) {
    MainUI::addLog(LogLevel::warning, kelvarin::messages::notDrawable(path));
  }
  return isDrawn ? cache : nullptr;
}

QPixmap* kelvarinDrawPicture(double size, const QString& path) {
  return renderSVG(size, path, nullptr, nullptr);
}

QIcon getPlusIcon() {
  return buttonIcon(":/KelvarinPictures/plus.svg");
}
QIcon getMinusIcon() {
  return buttonIcon(":/KelvarinPictures/minus.svg");
}
