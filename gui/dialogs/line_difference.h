// Which lines two texts have in common, and which only one of them has.
#pragma once

#include <vector>

#include <QString>
#include <QStringList>

namespace kelvarin {

struct DifferenceLine {
  enum class Kind { both, onlyFirst, onlySecond };
  Kind kind = Kind::both;
  QString text;
};

// In reading order. Texts whose different parts have more than some million pairs of lines are not
// matched inside these parts.
std::vector<DifferenceLine> lineDifference(const QString& first, const QString& second);

}  // namespace kelvarin
