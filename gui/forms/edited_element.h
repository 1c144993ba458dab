// An XML element that can be changed, and written again.
//
// Used by: the editors of actions that have no setters of their own.
#pragma once

#include <utility>
#include <vector>

#include <QByteArray>
#include <QString>

#include "host/contract/action_description.h"
#include "host/xml/xml_node.h"

class ActionItem;

namespace kelvarin {

struct EditedElement {
  QString name;
  std::vector<std::pair<QString, QString>> attributes;  // in the order of the file
  QString text;                                         // without that of the children
  std::vector<EditedElement> children;

  static EditedElement of(const XMLNode& node);
  // What the action would save now.
  static EditedElement of(ActionItem& action);

  // The null text when it is absent.
  QString attribute(const QString& attributeName) const;
  // A null value takes the attribute away.
  void setAttribute(const QString& attributeName, const QString& value);
  // What a field shows: the default where the attribute is absent.
  QString shownValue(const AttributeDescription& described) const;
  // What was typed into that field. A default is not written, but stays where the file has it.
  void setShownValue(const AttributeDescription& described, const QString& typed);
  QByteArray document() const;
};

}  // namespace kelvarin
