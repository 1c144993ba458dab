#include "actions/frame/editors_library.h"

#include "base/export.h"

extern "C" KELVARIN_CORE UpdateClassWidget* kelvarinCreateEditor(QWidget*, ActionItem*) {
  return nullptr;
}
