// How the program ends; scripts rely on the numbers.
#pragma once

namespace kelvarin {

enum class ExitStatus { done = 0, failed = 1, wrongUsage = 2, interrupted = 130 };

}  // namespace kelvarin
