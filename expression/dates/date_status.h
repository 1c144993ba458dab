// What became of the preparation of a date context.
#pragma once

namespace kelvarin {

enum class DateStatus { ready = 0, referenceTimeUnparsable = 1, dateFormatUnknown = 2 };

}  // namespace kelvarin
