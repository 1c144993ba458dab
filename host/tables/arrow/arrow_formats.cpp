#include "host/tables/arrow/arrow_formats.h"

#include "base/sibling_library.h"
#include "host/contract/main_ui.h"
#include "host/tables/arrow/messages.h"

namespace kelvarin {

namespace {

constexpr const char* kLibrary = "libKelvarinArrow.so";

Result<const ArrowFormats*, QString> loadLibrary() {
  // It lies beside KelvarinCore.
  const auto path = siblingLibrary(reinterpret_cast<const void*>(&MainUI::kelvarinID), kLibrary);
  const auto function = functionOfLibrary(path, "kelvarinArrowFormats");
  if (!function) {
    return Failure{
        table_messages::formatsNotLoaded(QString::fromLocal8Bit(function.error().c_str()))};
  }
  return reinterpret_cast<ArrowFormatsFunction>(*function)();
}

}  // namespace

Result<const ArrowFormats*, QString> ArrowFormats::load() {
  static const Result<const ArrowFormats*, QString> formats = loadLibrary();
  return formats;
}

}  // namespace kelvarin
