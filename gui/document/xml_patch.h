// Brings what changed in an element as a program writes it into the same element as a file has it,
// so that all else of the file's element stays: comments, unknown attributes and elements, order,
// spelling.
//
// Used by: edited_graph_parts.cpp.
#pragma once

#include <optional>

#include <QString>

namespace kelvarin {

// All are texts of elements. `before` is what the program made of `source`, and `now` what it would
// write instead. `lineStart` is the line break and the indentation in front of the element. Nothing
// where the two cannot be compared.
std::optional<QString> patchedElement(const QString& source, const QString& before,
                                      const QString& now, const QString& lineStart);

}  // namespace kelvarin
