// Where settings refer to parameters of the graph.
//
// Used by: graph_commands.h, the window of the parameters. Threads: any.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

namespace kelvarin {

// The names after `${` in the text, in their order.
QStringList parametersIn(const QString& text);
// Those of an action's element that a run replaces, each once; not those of formulas and notes.
QStringList parametersOfElement(const QString& element);
// `newNames` are by the old names.
QString withRenamedParameters(const QString& text, const QHash<QString, QString>& newNames);

}  // namespace kelvarin
