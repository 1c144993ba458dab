// The colours of an expression in its field. Operators and brackets have that of plain text.
//
// The field is white or pink in every theme, so these are one fixed set; each has a contrast of
// 4.5 : 1 at least on both. No meaning is in a colour alone: unknown names are underlined too.
#pragma once

#include <QColor>
#include <QPalette>

namespace kelvarin::expression_colors {

inline const QColor kPaper(0xFF, 0xFF, 0xFF);
inline const QColor kRefusedPaper(0xFF, 0xE8, 0xE8);

inline const QColor kText(0x1B, 0x1F, 0x24);
inline const QColor kNumber(0x0A, 0x55, 0x94);
inline const QColor kLiteral(0x1A, 0x66, 0x2B);
inline const QColor kFunction(0x6B, 0x2F, 0xA0);
inline const QColor kVariable(0x0B, 0x5A, 0x63);
inline const QColor kConstant(0x84, 0x47, 0x00);
inline const QColor kPlaceholder(0x4A, 0x4F, 0x57);
inline const QColor kFault(0xAE, 0x10, 0x1C);
// Behind texts, so dark texts are read on them.
inline const QColor kSelection(0xBF, 0xD8, 0xFF);
inline const QColor kBracket(0xDD, 0xE3, 0xEC);

// For the editor, whatever the palette of its window.
inline QPalette palette(QPalette from) {
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    from.setColor(group, QPalette::Base, kPaper);
    from.setColor(group, QPalette::Text, kText);
    from.setColor(group, QPalette::PlaceholderText, kPlaceholder);
    from.setColor(group, QPalette::Highlight, kSelection);
    from.setColor(group, QPalette::HighlightedText, kText);
  }
  return from;
}

}  // namespace kelvarin::expression_colors
