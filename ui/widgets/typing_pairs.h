// What typing a bracket or a quote does to an expression: its partner comes along, a selection is
// wrapped, and a closing one that is there already is passed over.
//
// Used by the expression editor; works on texts, so that it is tested without a widget.
#pragma once

#include <optional>

#include <QString>

namespace kelvarin {

// A replacement in the text, and the selection after it.
struct TextChange {
  qsizetype start = 0;
  qsizetype size = 0;
  QString replacement;
  qsizetype anchor = 0;
  qsizetype position = 0;
};

// Nothing where the character is to be inserted as any other. `anchor` and `position` are the ends
// of the selection.
std::optional<TextChange> typedBracket(const QString& text, qsizetype anchor, qsizetype position,
                                       QChar typed);
// Backspace between the two of an empty pair removes both.
std::optional<TextChange> removedPair(const QString& text, qsizetype position);

}  // namespace kelvarin
