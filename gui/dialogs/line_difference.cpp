#include "gui/dialogs/line_difference.h"

#include <algorithm>

namespace kelvarin {

namespace {

using Kind = DifferenceLine::Kind;
constexpr std::size_t kMaxPairs = 4'000'000;

// The lengths of the longest common sequences of what is left of both, [line][line].
class CommonLengths {
 public:
  CommonLengths(const QStringList& first, const QStringList& second)
      : m_width(static_cast<std::size_t>(second.size()) + 1),
        m_lengths((static_cast<std::size_t>(first.size()) + 1) * m_width) {
    for (qsizetype i = first.size() - 1; i >= 0; --i) {
      for (qsizetype j = second.size() - 1; j >= 0; --j) {
        at(i, j) =
            first[i] == second[j] ? at(i + 1, j + 1) + 1 : std::max(at(i + 1, j), at(i, j + 1));
      }
    }
  }

  int& at(qsizetype i, qsizetype j) {
    return m_lengths[static_cast<std::size_t>(i) * m_width + static_cast<std::size_t>(j)];
  }

 private:
  std::size_t m_width;
  std::vector<int> m_lengths;
};

void append(std::vector<DifferenceLine>& lines, Kind kind, const QStringList& texts) {
  for (const QString& text : texts) {
    lines.push_back({kind, text});
  }
}

void appendMatched(std::vector<DifferenceLine>& lines, const QStringList& first,
                   const QStringList& second) {
  CommonLengths lengths(first, second);
  qsizetype i = 0;
  qsizetype j = 0;
  while (i < first.size() && j < second.size()) {
    if (first[i] == second[j]) {
      lines.push_back({Kind::both, first[i]});
      ++i;
      ++j;
    } else if (lengths.at(i + 1, j) >= lengths.at(i, j + 1)) {
      lines.push_back({Kind::onlyFirst, first[i++]});
    } else {
      lines.push_back({Kind::onlySecond, second[j++]});
    }
  }
  append(lines, Kind::onlyFirst, first.mid(i));
  append(lines, Kind::onlySecond, second.mid(j));
}

}  // namespace

std::vector<DifferenceLine> lineDifference(const QString& first, const QString& second) {
  const QStringList a = first.split(u'\n');
  const QStringList b = second.split(u'\n');
  const qsizetype shorter = std::min(a.size(), b.size());
  qsizetype begin = 0;
  while (begin < shorter && a[begin] == b[begin]) {
    ++begin;
  }
  qsizetype end = 0;
  while (end < shorter - begin && a[a.size() - 1 - end] == b[b.size() - 1 - end]) {
    ++end;
  }
  const QStringList middleA = a.mid(begin, a.size() - begin - end);
  const QStringList middleB = b.mid(begin, b.size() - begin - end);
  std::vector<DifferenceLine> lines;
  append(lines, Kind::both, a.mid(0, begin));
  if (static_cast<std::size_t>(middleA.size()) * static_cast<std::size_t>(middleB.size()) <=
      kMaxPairs) {
    appendMatched(lines, middleA, middleB);
  } else {
    append(lines, Kind::onlyFirst, middleA);
    append(lines, Kind::onlySecond, middleB);
  }
  append(lines, Kind::both, a.mid(a.size() - end));
  return lines;
}

}  // namespace kelvarin
