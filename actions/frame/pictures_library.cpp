#include "actions/frame/pictures_library.h"

#include "base/sibling_library.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

namespace {

constexpr const char* kLibrary = "libKelvarinPictures.so";
using DrawFunction = QPixmap* (*)(double size, const QString& path);

// It lies beside KelvarinCore.
DrawFunction loadLibrary() {
  const auto path = siblingLibrary(reinterpret_cast<const void*>(&MainUI::kelvarinID), kLibrary);
  const auto function = functionOfLibrary(path, "kelvarinDrawPicture");
  return function ? reinterpret_cast<DrawFunction>(*function) : nullptr;
}

}  // namespace

QPixmap* pictureOfLibrary(double size, const QString& path) {
  static const DrawFunction draw = loadLibrary();
  return draw == nullptr ? nullptr : draw(size, path);
}

}  // namespace kelvarin
