#include "benchmarks/gel/text_columns.h"

#include <fmt/format.h>

#include "benchmarks/gel/date_text.h"
#include "benchmarks/gel/written_texts.h"

namespace kelvarin {

namespace {

std::string dateOfTenYears(Chance& chance) {
  constexpr auto kDays = static_cast<std::uint64_t>((firstDayOf(2025) - firstDayOf(2015)).count());
  return dateText(firstDayOf(2015) + std::chrono::days(chance.below(kDays)));
}

// Any second of the leap year 2024.
std::string timestamp(Chance& chance) {
  constexpr std::uint64_t kSecondsOfDay = 86'400;
  const std::uint64_t second = chance.below(366 * kSecondsOfDay);
  return fmt::format("{} {:02}:{:02}:{:02}",
                     dateText(firstDayOf(2024) + std::chrono::days(second / kSecondsOfDay)),
                     second % kSecondsOfDay / 3600, second / 60 % 60, second % 60);
}

std::string amount(Chance& chance) {
  const std::uint64_t hundredths = chance.below(100'000);
  return fmt::format("{}.{:02}", hundredths / 100, hundredths % 100);
}

// Of version 4: all digits but the version's and half of the variant's bits are random.
std::string uuid(Chance& chance) {
  const auto digits = [&](int bits) { return chance.below(std::uint64_t{1} << bits); };
  const std::uint64_t low = digits(32);
  const std::uint64_t middle = digits(16);
  const std::uint64_t version = 0x4000 | digits(12);
  const std::uint64_t variant = 0x8000 | digits(14);
  return fmt::format("{:08x}-{:04x}-{:04x}-{:04x}-{:012x}", low, middle, version, variant,
                     digits(48));
}

std::string address(Chance& chance) {
  const std::uint64_t bytes = chance.below(std::uint64_t{1} << 32);
  return fmt::format("{}.{}.{}.{}", bytes >> 24, bytes >> 16 & 0xFF, bytes >> 8 & 0xFF,
                     bytes & 0xFF);
}

std::string nameWithNumber(Chance& chance) {
  return fmt::format("Customer#{:09}", chance.below(150'000));
}

std::string city(Chance& chance) {
  constexpr const char* kCities[] = {"Lisbon", "Hamburg", "Kraków", "Valencia", "Aarhus"};
  return kCities[chance.below(5)];
}

std::string record(Chance& chance) {
  constexpr const char* kStates[] = {"new", "paid", "sent", "returned"};
  const std::uint64_t id = chance.below(200'000);
  const char* state = kStates[chance.below(4)];
  return fmt::format(R"({{"id": {}, "state": "{}", "items": {}}})", id, state, chance.below(1000));
}

// Columns of one table have nothing to do with each other.
std::uint32_t seedOf(const std::string& name) {
  std::seed_seq seeds(name.begin(), name.end());
  std::uint32_t seed[1];
  seeds.generate(seed, seed + 1);
  return seed[0];
}

}  // namespace

std::vector<TextColumn> makeTextColumns(std::size_t rows) {
  const auto made = [rows](const char* name, auto make) {
    return madeColumn<std::string>(name, rows, seedOf(name), make);
  };
  const WrittenTexts written;
  return {
      made("date", dateOfTenYears),
      made("amount", amount),
      made("sentence", [&](Chance& chance) { return written.sentence(chance); }),
      made("code", [&](Chance& chance) { return written.lineOfCode(chance); }),
      made("uuid", uuid),
      made("timestamp", timestamp),
      made("ipv4", address),
      made("name", nameWithNumber),
      made("url", [&](Chance& chance) { return written.url(chance); }),
      made("json", record),
      made("email", [&](Chance& chance) { return written.email(chance); }),
      made("city", city),
  };
}

}  // namespace kelvarin
