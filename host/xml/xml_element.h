// One parsed document: its elements, which the handles of xml_node.h point to.
//
// The document owns all its elements and lives as long as one handle on any of them does, so
// neither building nor destroying a deep tree recurses. Users: xml_node.cpp, xml_parser.cpp.
// Threads: read-only after parsing; handles may be copied on any thread.
#pragma once

#include <atomic>
#include <deque>
#include <vector>

#include "host/xml/xml_node.h"

namespace kelvarin {

struct XmlAttribute {
  QString name;
  QString value;
};

struct XmlElement;

struct XmlDocument {
  std::atomic<int> handles{0};
  // In document order, the root first; their addresses never change.
  std::deque<XmlElement> elements;
};

struct XmlElement {
  XmlDocument* document = nullptr;
  QString name;
  XMLNode::Position position;
  std::vector<XmlAttribute> attributes;  // in the order of the file
  std::vector<XmlElement*> children;
  std::vector<QString> texts;  // the runs of text between children

  static XMLNode handle(XmlElement* element) { return XMLNode(element); }
};

}  // namespace kelvarin
