#include "host/engine/nearest_names.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace kelvarin {

namespace {

constexpr qsizetype kLongestName = 200;

// The number of letters to insert, remove or replace (Levenshtein's distance).
qsizetype distance(const QString& left, const QString& right) {
  std::vector<qsizetype> row(static_cast<std::size_t>(right.size()) + 1);
  std::iota(row.begin(), row.end(), 0);
  for (qsizetype i = 0; i < left.size(); ++i) {
    qsizetype diagonal = row[0];
    row[0] = i + 1;
    for (qsizetype j = 0; j < right.size(); ++j) {
      const auto column = static_cast<std::size_t>(j);
      const qsizetype replaced = diagonal + (left[i] == right[j] ? 0 : 1);
      diagonal = row[column + 1];
      row[column + 1] = std::min({replaced, row[column] + 1, row[column + 1] + 1});
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
    const qsizetype letters = std::max(name.size(), candidate.size());
    const qsizetype difference = distance(name.toLower(), candidate.toLower());
    if (candidate.size() <= kLongestName && difference <= std::max<qsizetype>(1, letters / 3)) {
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
