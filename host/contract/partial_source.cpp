#include "host/contract/partial_source.h"

namespace kelvarin {

PartialSource::~PartialSource() = default;

}  // namespace kelvarin
