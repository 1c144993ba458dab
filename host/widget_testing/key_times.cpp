#include "host/widget_testing/key_times.h"

#include <algorithm>
#include <ctime>
#include <vector>

#include <QApplication>
#include <QTest>

namespace kelvarin::testing {

namespace {

double processorMilliseconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

}  // namespace

KeyTimes timeOfKeys(QWidget& field, const QString& keys, int count) {
  std::vector<double> times;
  for (int i = 0; i < count; ++i) {
    const double begin = processorMilliseconds();
    QTest::keyClicks(&field, keys[i % keys.size()]);
    QApplication::processEvents();
    times.push_back(processorMilliseconds() - begin);
  }
  std::ranges::sort(times);
  const auto at = [&times](double share) {
    return times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))];
  };
  return {at(0.5), at(0.999)};
}

}  // namespace kelvarin::testing
