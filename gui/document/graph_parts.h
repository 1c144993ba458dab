// What a drawn graph consists of, beside its actions: links, notes and parameters, and a selection
// of them.
//
// Ids are given once in the life of a document and come back with what an undone deletion brings
// back, so views keep them instead of indices.
#pragma once

#include <QByteArray>
#include <QColor>
#include <QList>
#include <QMetaType>
#include <QRectF>
#include <QSet>
#include <QString>

namespace kelvarin {

using ActionId = int;
using LinkId = int;
using NoteId = int;
inline constexpr int kNoId = -1;

struct PinRef {
  ActionId action = kNoId;
  int pin = 0;
  bool isOutput = true;
  bool operator==(const PinRef&) const = default;
};

struct DrawnLink {
  LinkId id = kNoId;
  ActionId from = kNoId;
  int fromPin = 0;
  ActionId to = kNoId;
  int toPin = 0;
  // Why no rows can go along it, for the user; empty for a whole link. A broken one is kept and
  // saved, and is not part of EditedGraph::graph().
  QString whyBroken;
};

struct DrawnNote {
  NoteId id = kNoId;
  QRectF rectangle;  // logical pixels of the canvas
  QColor colour;     // of the background
  QString text;
  bool operator==(const DrawnNote&) const = default;
};

struct DrawnParameter {
  QString name;
  QString value;  // as in the file
  bool operator==(const DrawnParameter&) const = default;
};

struct GraphSelection {
  QSet<ActionId> actions;
  QSet<LinkId> links;
  QSet<NoteId> notes;

  bool isEmpty() const { return actions.isEmpty() && links.isEmpty() && notes.isEmpty(); }
  bool operator==(const GraphSelection&) const = default;
};

// Where the pins of boxes are, below their top edges, for layouts that make links straight.
struct PinSpacing {
  double first = 22.0;
  double step = 24.0;
};

// Where an editor stood when it made a change, so that undo leads back to it.
struct EditorPosition {
  QString page;     // the objectName of the page that was shown
  QString field;    // the objectName of the field with the focus
  int cursor = -1;  // in a text; the row in a table
  int column = -1;
};

}  // namespace kelvarin
