// How fast the checksum of chunks is, beside the loop that one writes from its description.
//
// Threads: one.  Errors: std::runtime_error when the contenders do not agree.
#pragma once

#include <string>
#include <vector>

namespace kelvarin {

struct ChecksumSpeed {
  std::string name;
  double bytesPerSecond = 0.0;  // of processor time, the median of the rounds
};

// Over bytes that stay in the processor's cache, as a chunk does. The first one is what files use.
std::vector<ChecksumSpeed> checksumSpeeds(int rounds);

}  // namespace kelvarin
