// The document of a graph that the library makes itself: some actions, each linked to the next.
//
// Names and values may be any text; nothing in them is taken for a part of the document, or for a
// parameter.
// Used by: scans, writing, applying expressions.
// Threads: one at a time.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include <QString>
#include <QStringList>

#include "host/engine/graph_reader.h"
#include "library/errors/error_details.h"

namespace kelvarin {

class GraphText {
 public:
  // Elements are closed in the reverse order. The first level is that of the actions.
  void open(const char16_t* element);
  // Of the element that was opened last, before its content.
  void attribute(const char16_t* name, const QString& value);
  void attribute(const char16_t* name, long long value);
  // The content of the element that was opened last: an expression, or a name.
  void text(const QString& text);
  void name(const QString& name) { text(literal(name)); }
  void close();

  // An action with its attribute `name`.
  void openAction(const char16_t* type, const char16_t* name);

  // The graph, whose relative file names start from the working folder.
  Outcome<Graph> parse(const ActionCatalogue& catalogue) const;

 private:
  QString literal(const QString& text);
  void closeStartTag();

  std::wostringstream m_actions;
  std::vector<const char16_t*> m_open;
  QStringList m_names;  // of the actions
  bool m_isStartTagOpen = false;
  std::vector<ParameterOverride> m_parameters;
};

// What is wrong with a graph, one fault a line.
ErrorDetails errorOf(const GraphErrors& faults);

}  // namespace kelvarin
