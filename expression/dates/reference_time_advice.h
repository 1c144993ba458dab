// What to do about a reference time that cannot be parsed.
//
#pragma once

#include <QString>

namespace kelvarin {

// Names the form that is needed, with the date rewritten where the text evidently is one.
QString adviceOnReferenceTime(const QString& referenceTime);

}  // namespace kelvarin
