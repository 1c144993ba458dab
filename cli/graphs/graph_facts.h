// What a graph file says, without how it is written: what the commands show and compare.
//
// Used by: show_command.cpp, graph_drawing.h, graph_difference.h.
#pragma once

#include <vector>

#include <QHash>
#include <QString>
#include <QStringList>

#include "host/contract/action_description.h"
#include "host/xml/xml_node.h"

namespace kelvarin {

struct NamedValue {
  QString name;
  QString value;
  friend bool operator==(const NamedValue&, const NamedValue&) = default;
};

// One setting of an action: an attribute of its element, or an element inside it.
struct ActionFact {
  int depth = 0;                       // 0: an attribute of the action itself
  QString element;                     // its name; empty for attributes
  std::vector<NamedValue> attributes;  // of the element; of an attribute, itself
  QString text;                        // null where the element has none
  QString path;                        // which part of the action it is
};

struct ActionFacts {
  QString name;
  QString typeName;
  bool isDisabled = false;
  std::vector<ActionFact> facts;  // in the order of the file, attributes first
};

struct LinkFacts {
  QString from;
  QString fromPin;
  QString to;
  QString toPin;
  friend bool operator==(const LinkFacts&, const LinkFacts&) = default;
};

struct GraphFacts {
  std::vector<NamedValue> parameters;
  std::vector<ActionFacts> actions;
  std::vector<LinkFacts> links;
  QStringList notes;
  QHash<QString, int> indexes;  // of the actions, by name; the first of several

  int indexOf(const QString& action) const;  // -1 when absent
};

// Left out: values that are the default, positions on the canvas, and versions.
GraphFacts factsOf(const XMLNode& root, const ElementDescription& graph);

// "from -> to", with pins that are not the first.
QString textOfLink(const LinkFacts& link);

}  // namespace kelvarin
