#include "host/contract/nearest_names.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace kelvarin {

namespace {

constexpr qsizetype kLongestName = 200;

// The number of letters to insert, remove or replace, or of neighbours to swap (optimal string
// alignment).
qsizetype distance(const QString& left, const QString& right) {
  using Row = std::vector<qsizetype>;
  Row row(static_cast<std::size_t>(right.size()) + 1);
  std::iota(row.begin(), row.end(), 0);
  Row above = row;
  Row twoAbove = row;
  for (qsizetype i = 0; i < left.size(); ++i) {
    twoAbove.swap(above);
    above.swap(row);
    row[0] = i + 1;
    for (qsizetype j = 0; j < right.size(); ++j) {
      const auto column = static_cast<std::size_t>(j);
      const qsizetype replaced = above[column] + (left[i] == right[j] ? 0 : 1);
      row[column + 1] = std::min({replaced, row[column] + 1, above[column + 1] + 1});
      if (i > 0 && j > 0 && left[i] == right[j - 1] && left[i - 1] == right[j]) {
        row[column + 1] = std::min(row[column + 1], twoAbove[column - 1] + 1);
      }
    }
  }
  return row.back();
}

}  // namespace

QStringList nearestNames(const QString& name, const QStringList& known) {
  if (name.size() > kLongestName) {
    return {};
  }
  std::vector<std::pair<qsizetype, QString>> near;
  for (const QString& candidate : known) {
    const auto [fewer, more] = std::minmax({name.size(), candidate.size()});
    const qsizetype difference = distance(name.trimmed().toLower(), candidate.trimmed().toLower());
    const bool sharesLetters = difference < fewer;  // else any letter would be near to any other
    if (candidate.size() <= kLongestName && difference <= std::max<qsizetype>(1, more / 3) &&
        (sharesLetters || difference == 0)) {
      near.emplace_back(difference, candidate);
    }
  }
  std::sort(near.begin(), near.end());
  QStringList names;
  for (std::size_t i = 0; i < std::min<std::size_t>(near.size(), 3); ++i) {
    names += near[i].second;
  }
  return names;
}

}  // namespace kelvarin
