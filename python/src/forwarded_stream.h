// A stream of the library for readers that may hold the interpreter's lock: it is not held while
// the library works, Ctrl-C ends the stream, and why it has failed is kept.
#pragma once

#include <memory>

#include "python/src/stream.h"

namespace kelvarin_python {

StreamOwner forwarded(StreamOwner stream, std::shared_ptr<StreamState> state);

}  // namespace kelvarin_python
