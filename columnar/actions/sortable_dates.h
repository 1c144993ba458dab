// Whether dates in a format are in the order of their texts, so that the smallest and the largest
// text of a block are its first and its last date.
//
// That is so when the fields stand from the year down, each with a fixed width, as in
// "yyyy-MM-dd hh:mm". Times of a local clock are not: an hour that the clock leaves out is read as
// a later one.
// Used by the block filter.
#pragma once

#include <QString>

namespace kelvarin {

bool sortsAsText(const QString& dateFormat, bool isUTC);

}  // namespace kelvarin
