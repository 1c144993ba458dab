#include "gui/canvas/text_lines.h"

#include <QFontMetricsF>
#include <QTextLayout>

namespace kelvarin {

QStringList wrappedLines(const QString& text, const QFont& font, double width, int count) {
  if (QFontMetricsF(font).horizontalAdvance(text) <= width) {
    return {text};
  }
  QTextLayout layout(text, font);
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  QStringList lines;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    if (lines.size() + 1 == count) {
      lines.append(shortenedLine(text.mid(line.textStart()), font, width));
      break;
    }
    lines.append(text.mid(line.textStart(), line.textLength()).trimmed());
  }
  layout.endLayout();
  return lines;
}

QString shortenedLine(const QString& text, const QFont& font, double width) {
  return QFontMetricsF(font).elidedText(text.trimmed(), Qt::ElideRight, width);
}

}  // namespace kelvarin
