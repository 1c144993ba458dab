// Addresses of the internet protocol, version 4: four parts of 0 to 255 as an unsigned number of 32
// bits.
//
// Parts have no leading zeros, which some read as octal. A range is `a.b.c.d/bits`, two addresses
// joined by "-", or one address alone.

#include <charconv>
#include <cmath>
#include <cstdint>

#include "expression/functions/text_bodies.h"
#include "expression/functions/themes.h"

namespace kelvarin {

namespace {

constexpr int kParts = 4;
constexpr int kBits = 32;

// A number from 0 to `largest`, without sign or leading zero.
std::optional<std::uint32_t> smallNumber(std::string_view text, std::uint32_t largest) {
  std::uint32_t value = 0;
  const char* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, value);
  const bool hasLeadingZero = text.size() > 1 && text.front() == '0';
  if (parsed.ec != std::errc() || parsed.ptr != end || hasLeadingZero || value > largest) {
    return std::nullopt;
  }
  return value;
}

std::optional<std::uint32_t> addressOf(std::string_view text) {
  std::uint32_t address = 0;
  for (int part = 0; part < kParts; ++part) {
    const bool isLast = part == kParts - 1;
    const std::size_t end = isLast ? text.size() : text.find('.');
    if (end == std::string_view::npos) {
      return std::nullopt;
    }
    const std::optional<std::uint32_t> value = smallNumber(text.substr(0, end), 255);
    if (!value) {
      return std::nullopt;
    }
    address = address << 8 | *value;
    text.remove_prefix(isLast ? end : end + 1);
  }
  return address;
}

struct Range {
  std::uint32_t low;
  std::uint32_t high;
};

std::string_view withoutBlanks(std::string_view text) {
  while (text.starts_with(' ')) {
    text.remove_prefix(1);
  }
  while (text.ends_with(' ')) {
    text.remove_suffix(1);
  }
  return text;
}

std::optional<Range> rangeBetween(std::optional<std::uint32_t> low,
                                  std::optional<std::uint32_t> high) {
  if (!low || !high || *low > *high) {
    return std::nullopt;
  }
  return Range{*low, *high};
}

std::optional<Range> rangeOf(std::string_view text) {
  const std::size_t slash = text.find('/');
  if (slash != std::string_view::npos) {
    const std::optional<std::uint32_t> address = addressOf(text.substr(0, slash));
    const std::optional<std::uint32_t> bits = smallNumber(text.substr(slash + 1), kBits);
    if (!address || !bits) {
      return std::nullopt;
    }
    const std::uint32_t host = *bits == kBits ? 0 : 0xFFFFFFFFu >> *bits;
    return Range{*address & ~host, *address | host};
  }
  const std::size_t hyphen = text.find('-');
  if (hyphen != std::string_view::npos) {
    return rangeBetween(addressOf(withoutBlanks(text.substr(0, hyphen))),
                        addressOf(withoutBlanks(text.substr(hyphen + 1))));
  }
  const std::optional<std::uint32_t> address = addressOf(text);
  return rangeBetween(address, address);
}

bool isAddress(std::string_view text) {
  return addressOf(text).has_value();
}

double numberOfAddress(std::string_view text) {
  const std::optional<std::uint32_t> address = addressOf(text);
  return address ? *address : kNullNumber;
}

// Counted from 0 at the left.
double partOfAddress(std::string_view text, double position) {
  const std::optional<std::uint32_t> address = addressOf(text);
  const double part = std::trunc(position);
  if (!address || !(part >= 0 && part < kParts)) {
    return kNullNumber;
  }
  return *address >> (8 * (kParts - 1 - static_cast<int>(part))) & 0xFFu;
}

double lowestOfRange(std::string_view text) {
  const std::optional<Range> range = rangeOf(text);
  return range ? range->low : kNullNumber;
}

double highestOfRange(std::string_view text) {
  const std::optional<Range> range = rangeOf(text);
  return range ? range->high : kNullNumber;
}

// clang-format off
constexpr FunctionLine kLines[] = {
    {"isip4", 1, kInString, kTest, testBodies<isAddress>,
     "isip4(x) - test if x is a TCP-IP v4 address."},
    {"ip4tof", 1, kInString, kNumber, valueBodies<numberOfAddress>,
     "ip4tof(x) - convert a tcp-ip v4 address to a number."},
    {"ip4part", 2, kInString, kNumber, valueBodies<partOfAddress>,
     "ip4part(ip,pos) - extract one of the 4 parts of a tcp-ip v4 address."},
    {"ip4RangeLow", 1, kInString, kNumber, valueBodies<lowestOfRange>,
     "ip4RangeLow(x) - convert the lower bound of a tcp-ip v4 address-range to a number."},
    {"ip4RangeHigh", 1, kInString, kNumber, valueBodies<highestOfRange>,
     "ip4RangeHigh(x) - convert the upper bound of a tcp-ip v4 address-range to a number."},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> addresses() {
  return kLines;
}

}  // namespace kelvarin
