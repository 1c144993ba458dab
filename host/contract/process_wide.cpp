#include "host/contract/process_wide.h"

namespace kelvarin {

std::mutex& columnNamesMutex() {
  static std::mutex mutex;
  return mutex;
}

std::once_flag& firstTextExpression() {
  static std::once_flag once;
  return once;
}

}  // namespace kelvarin
