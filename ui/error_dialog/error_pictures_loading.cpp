#include <QtGlobal>

#include "ui/error_dialog/error_pictures.h"

// The macro declares a function, which must not be in a namespace.
static void initializeErrorPictures() {
  Q_INIT_RESOURCE(error_pictures);
}

namespace kelvarin {

void loadErrorPictures() {
  initializeErrorPictures();
}

}  // namespace kelvarin
