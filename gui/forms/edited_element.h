// An XML element that can be changed, and written again.
//
// Used by: action_form.cpp, for actions that have no setters of their own.
#pragma once

#include <utility>
#include <vector>

#include <QByteArray>
#include <QString>

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
  QByteArray document() const;
};

}  // namespace kelvarin
