#include "benchmarks/gel/number_columns.h"

#include <cmath>

#include "base/null_number.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t kFirstSecond = 1'704'067'200;  // of the year 2024

double product(Chance& chance) {
  const double price = static_cast<double>(50 + chance.below(50'000)) / 100;
  return price * static_cast<double>(1 + chance.below(20));
}

// An amount, or one of a few that are no hundredths any more.
double shared(Chance& chance) {
  constexpr double kShared = 0.005;
  const bool isShared = chance.fraction() < kShared;
  chance.addDraw(isShared ? kShared : 1 - kShared);
  const double amount = static_cast<double>(chance.below(200'000)) / 100;
  return isShared ? amount / 3 : amount;
}

// Of no direction: the sum of many small ones.
double normal(Chance& chance) {
  constexpr int kTerms = 12;
  double sum = -kTerms / 2.0;
  for (int i = 0; i < kTerms; ++i) {
    sum += chance.fraction();
  }
  return sum;
}

double skewed(Chance& chance) {
  return std::round(std::exp(4 + normal(chance)) * 100) / 100;
}

double reading(Chance& chance) {
  return 20 + 5 * normal(chance);
}

double single(Chance& chance) {
  return static_cast<float>(1000 * chance.fraction());
}

double converted(Chance& chance) {
  return static_cast<double>(chance.below(1 << 12)) * 5 / 4096;
}

double second(Chance& chance) {
  return static_cast<double>(kFirstSecond + chance.below(366 * 86'400));
}

double identifier(Chance& chance) {
  return static_cast<double>(chance.below(1'000'000'000'000'000));
}

double level(Chance& chance) {
  return std::sqrt(static_cast<double>(chance.below(1000)));
}

double sometimes(Chance& chance) {
  constexpr double kMissing = 0.3;
  const bool isMissing = chance.fraction() < kMissing;
  chance.addDraw(isMissing ? kMissing : 1 - kMissing);
  return isMissing ? kNullNumber : static_cast<double>(chance.below(100'000)) / 100;
}

double fraction(Chance& chance) {
  return chance.fraction();
}

// Numbers that depend on the one before.
struct Walks {
  double sensor = 200;
  double moment = static_cast<double>(kFirstSecond) * 1000;
  double total = 0;

  double nextSensor(Chance& chance) {
    sensor += static_cast<double>(chance.below(9)) - 4;
    return sensor / 10;
  }
  double nextMoment(Chance& chance) { return moment += static_cast<double>(chance.below(1000)); }
  double nextTotal(Chance& chance) {
    return total += static_cast<double>(chance.below(10'000)) / 100;
  }
};

}  // namespace

std::vector<NumberColumn> makeNumberColumns(std::size_t rows) {
  constexpr std::uint64_t kSeed = 20240229;
  const auto made = [rows](const char* name, auto make) {
    return madeColumn<double>(name, rows, kSeed, make);
  };
  Walks walks;
  return {
      made("product", product),
      made("shared", shared),
      made("skewed", skewed),
      made("sometimes", sometimes),
      made("total", [&](Chance& chance) { return walks.nextTotal(chance); }),
      made("second", second),
      made("moment", [&](Chance& chance) { return walks.nextMoment(chance); }),
      made("identifier", identifier),
      made("sensor", [&](Chance& chance) { return walks.nextSensor(chance); }),
      made("converted", converted),
      made("level", level),
      made("single", single),
      made("reading", reading),
      made("fraction", fraction),
  };
}

}  // namespace kelvarin
