#include "expression/dates/stated_zone.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <string>

#include <QByteArray>
#include <QDateTime>
#include <QTimeZone>

namespace kelvarin {

namespace {

constexpr Instant kMillisecondsOfMinute = 60'000;
constexpr int kMinutesOfHour = 60;
constexpr int kLargestOffset = 14 * kMinutesOfHour;  // of any zone in use

constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
constexpr bool isSign(char c) {
  return c == '+' || c == '-';
}

bool startsWithName(std::string_view text, std::string_view capitals) {
  return text.size() >= capitals.size() &&
         std::equal(capitals.begin(), capitals.end(), text.begin(),
                    [](char capital, char c) { return isLetter(c) && (c & ~0x20) == capital; });
}

// Of one digit or two; else -1.
int numberOf(std::string_view digits) {
  if (digits.empty() || digits.size() > 2 || !std::all_of(digits.begin(), digits.end(), isDigit)) {
    return -1;
  }
  return digits.size() == 1 ? digits[0] - '0' : (digits[0] - '0') * 10 + (digits[1] - '0');
}

// Minutes of 5, 05, 530, 0530, 5:30 or 05:30; -1 for something else.
int minutesOf(std::string_view offset) {
  const std::size_t colon = offset.find(':');
  const bool hasMinutes = colon != std::string_view::npos || offset.size() > 2;
  if (!hasMinutes) {
    return numberOf(offset) * kMinutesOfHour;
  }
  if (offset.size() < 3) {
    return -1;
  }
  const int minutes = numberOf(offset.substr(offset.size() - 2));
  const std::size_t hoursSize = offset.size() - 2 - (colon == offset.size() - 3 ? 1 : 0);
  const int hours = numberOf(offset.substr(0, hoursSize));
  const bool isTime = hours >= 0 && minutes >= 0 && minutes < kMinutesOfHour;
  return isTime ? hours * kMinutesOfHour + minutes : -1;
}

// UTC+03:00, GMT-5, +0530, Z.
std::optional<Instant> statedOffset(std::string_view zone) {
  if (zone.size() == 1 && startsWithName(zone, "Z")) {
    return 0;
  }
  if (startsWithName(zone, "UTC") || startsWithName(zone, "GMT")) {
    zone.remove_prefix(3);
    if (zone.empty()) {
      return 0;
    }
  }
  if (zone.empty() || !isSign(zone[0])) {
    return std::nullopt;
  }
  const int minutes = minutesOf(zone.substr(1));
  if (minutes < 0 || minutes > kLargestOffset) {
    return std::nullopt;
  }
  return (zone[0] == '-' ? -minutes : minutes) * kMillisecondsOfMinute;
}

ZoneOffsets::Source offsetsOf(std::string_view location) {
  const QTimeZone zone(QByteArray(location.data(), static_cast<qsizetype>(location.size())));
  return [zone](std::int64_t seconds) {
    return std::int64_t{zone.offsetFromUtc(QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC))};
  };
}

bool isLocation(std::string_view name) {
  return name.find('/') != std::string_view::npos &&
         QTimeZone::isTimeZoneIdAvailable(
             QByteArray(name.data(), static_cast<qsizetype>(name.size())));
}

}  // namespace

bool isZoneCharacter(char c) {
  return isLetter(c) || isDigit(c) || isSign(c) || c == '_' || c == '/' || c == ':';
}

bool looksLikeZone(std::string_view text) {
  if (text.empty() || text.size() > kLongestZone) {
    return false;
  }
  const std::string_view rest = text.substr(1);
  if (isLetter(text[0])) {
    return std::all_of(rest.begin(), rest.end(), isZoneCharacter);
  }
  return isSign(text[0]) && !rest.empty() && isDigit(rest[0]) &&
         std::all_of(rest.begin(), rest.end(), [](char c) { return isDigit(c) || c == ':'; });
}

// Appended to and never changed, so that readers take no lock. The first locations stay; there are
// rarely more in one table, and what is not kept is asked for each time.
class StatedZones::Locations {
 public:
  DateValue instantOf(ClockReading clock, std::string_view name) {
    const ZoneOffsets* kept = find(name);
    if (kept == nullptr) {
      if (!isLocation(name)) {
        return std::nullopt;
      }
      kept = keep(name);
    }
    if (kept == nullptr) {
      const ZoneOffsets::Source offsetAt = offsetsOf(name);
      return instantOfReading(
          clock, [&](Instant instant) { return offsetAt(flooredQuotient(instant, 1000)) * 1000; },
          InGap::isNoTime);
    }
    return instantOfReading(
        clock, [kept](Instant instant) { return kept->at(instant); }, InGap::isNoTime);
  }

 private:
  struct Entry {
    std::string name;
    std::unique_ptr<const ZoneOffsets> offsets;
  };

  const ZoneOffsets* find(std::string_view name) const {
    const std::size_t size = m_size.load(std::memory_order_acquire);
    for (std::size_t i = 0; i < size; ++i) {
      if (m_entries[i].name == name) {
        return m_entries[i].offsets.get();
      }
    }
    return nullptr;
  }

  // Nothing when there are many already.
  const ZoneOffsets* keep(std::string_view name) {
    const std::scoped_lock lock(m_appending);
    const ZoneOffsets* kept = find(name);
    if (kept != nullptr || m_size == m_entries.size()) {
      return kept;
    }
    Entry& entry = m_entries[m_size];
    entry.name = name;
    entry.offsets = std::make_unique<const ZoneOffsets>(offsetsOf(name));
    ++m_size;
    return entry.offsets.get();
  }

  static constexpr std::size_t kKept = 32;

  std::mutex m_appending;
  std::array<Entry, kKept> m_entries;
  std::atomic<std::size_t> m_size = 0;
};

StatedZones::StatedZones() : m_locations(std::make_shared<Locations>()) {}

DateValue StatedZones::instantOf(ClockReading clock, std::string_view zone, bool isLocalClock,
                                 const ClockZone& local, Instant nowadays) const {
  if (isLocalClock && isLocalZoneAround(nowadays, zone)) {
    return local.instantAt(clock);
  }
  if (const std::optional<Instant> offset = statedOffset(zone)) {
    return clock.milliseconds - *offset;
  }
  const DateValue there = m_locations->instantOf(clock, zone);
  return there ? there : localInstantNamed(clock, zone, nowadays);
}

}  // namespace kelvarin
