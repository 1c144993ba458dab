#include "benchmarks/gel/checksum_speed.h"

#include <algorithm>
#include <random>
#include <stdexcept>

#include "benchmarks/gel/stopwatch.h"
#include "columnar/format/checksum.h"

namespace kelvarin {

namespace {

constexpr std::size_t kSize = 64 << 10;
constexpr std::size_t kTimesInRound = 1000;

constexpr std::uint64_t folded(std::uint64_t sum) {
  return (sum & 0xFFFF) + (sum >> 16);
}

// Word by word, with the sums reduced as seldom as they may. Whole groups of 8 bytes only.
std::uint32_t scalarChecksum(Bytes bytes) {
  constexpr std::size_t kGroupsInRun = 352;
  constexpr std::size_t kGroupSize = sizeof(std::uint64_t);
  std::uint64_t first = 0;
  std::uint64_t second = 0;
  while (!bytes.empty()) {
    const std::size_t groups = std::min(bytes.size() / kGroupSize, kGroupsInRun);
    for (std::size_t i = 0; i < groups; ++i) {
      const auto words = loadPacked<std::uint64_t>(bytes.data() + i * kGroupSize);
      for (int shift = 0; shift < 64; shift += 16) {
        first += words >> shift & 0xFFFF;
        second += first;
      }
    }
    first = folded(first);
    second = folded(folded(second));
    bytes = bytes.subspan(groups * kGroupSize);
  }
  return static_cast<std::uint32_t>(folded(folded(second)) << 16 | folded(first));
}

struct Contender {
  const char* name;
  std::uint32_t (*checksum)(Bytes);
  std::vector<double> seconds;
};

}  // namespace

std::vector<ChecksumSpeed> checksumSpeeds(int rounds) {
  std::vector<unsigned char> bytes(kSize);
  std::mt19937_64 random(1);
  std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<unsigned char>(random()); });
  Contender contenders[] = {{"checksum", checksum, {}},
                            {"without 256-bit operations", portableChecksum, {}},
                            {"folded scalar loop", scalarChecksum, {}}};
  for (int round = 0; round < rounds; ++round) {
    std::uint32_t first = 0;
    for (Contender& contender : contenders) {
      // Each time other bytes, so that no call can be left out.
      std::uint32_t all = 0;
      const double begin = secondsOf(CLOCK_PROCESS_CPUTIME_ID);
      for (std::size_t i = 0; i < kTimesInRound; ++i) {
        bytes[i] ^= 0x55;
        all = all * 31 + contender.checksum(bytes);
        bytes[i] ^= 0x55;
      }
      contender.seconds.push_back(secondsOf(CLOCK_PROCESS_CPUTIME_ID) - begin);
      if (&contender == contenders) {
        first = all;
      } else if (all != first) {
        throw std::runtime_error(std::string(contender.name) + " gives another checksum");
      }
    }
  }
  std::vector<ChecksumSpeed> speeds;
  for (const Contender& contender : contenders) {
    speeds.push_back({contender.name, kSize * kTimesInRound / median(contender.seconds)});
  }
  return speeds;
}

}  // namespace kelvarin
