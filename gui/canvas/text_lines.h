// Texts cut into what fits into a box.
#pragma once

#include <QFont>
#include <QStringList>

namespace kelvarin {

// At most `count` lines, broken between words where that is possible, the last one shortened.
QStringList wrappedLines(const QString& text, const QFont& font, double width, int count);
QString shortenedLine(const QString& text, const QFont& font, double width);

}  // namespace kelvarin
