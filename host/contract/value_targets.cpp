#include "host/contract/value_targets.h"

namespace kelvarin {

ValueTargets::~ValueTargets() = default;

}  // namespace kelvarin
