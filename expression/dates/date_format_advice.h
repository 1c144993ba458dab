// A date format as it is written elsewhere, for instance %Y-%m-%d or DD.MM.YYYY, which would read
// no date here.
//
// Used by DateContext; shown when a run or a check starts.
#pragma once

#include <QString>

namespace kelvarin {

// The text to show, with the format that was probably meant; empty for a format that makes sense.
QString adviceOnDateFormat(const QString& format);

}  // namespace kelvarin
