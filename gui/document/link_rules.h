// Why a link or an action cannot be used, for the user.
//
// Used by: graph_changes.cpp, edited_graph.cpp.
#pragma once

#include <QCoreApplication>
#include <QString>

namespace kelvarin {

class LinkRules {
  Q_DECLARE_TR_FUNCTIONS(kelvarin::LinkRules)

 public:
  static QString actionWithoutName() { return tr("The action has no name."); }
  static QString actionTwice(const QString& name) {
    return tr("Another action is called '%1' already: links mean that one.").arg(name);
  }
  static QString absentAction(const QString& name) {
    return tr("The graph has no action '%1'.").arg(name);
  }
  static QString absentOutputPin(const QString& action, int pin) {
    return tr("'%1' has no output pin %2.").arg(action).arg(pin);
  }
  static QString absentInputPin(const QString& action, int pin) {
    return tr("'%1' has no input pin %2.").arg(action).arg(pin);
  }
  static QString pinIsTaken(const QString& action, int pin, const QString& from) {
    return tr("Input pin %1 of '%2' gets its rows from '%3' already.").arg(pin).arg(action, from);
  }
  static QString toItself() { return tr("An action cannot read its own rows."); }
  static QString closesCycle(const QString& from, const QString& to) {
    return tr("Rows would go round in a circle: '%1' gets rows from '%2' already.").arg(from, to);
  }
};

}  // namespace kelvarin
