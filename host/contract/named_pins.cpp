#include "host/contract/named_pins.h"

namespace kelvarin {

NamedPins::~NamedPins() = default;

}  // namespace kelvarin
