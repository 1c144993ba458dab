#include "host/contract/value_places.h"

namespace kelvarin {

ValuePlaces::~ValuePlaces() = default;

}  // namespace kelvarin
