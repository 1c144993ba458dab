// Edits the name of an action or the text of a note where it stands on the canvas.
//
// Used by: canvas_view.h.
// Threads: the user-interface thread.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include "gui/document/graph_commands.h"

namespace kelvarin {

class CanvasView;

class DirectEditor : public QObject {
  Q_OBJECT

 public:
  DirectEditor(CanvasView& view, GraphCommands& commands);

  void editName(ActionId action);
  void editNote(NoteId note);
  bool isOpen() const { return m_field != nullptr; }
  // The canvas was scrolled or zoomed.
  void follow();
  // Takes what was typed.
  void commit();
  void discard();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void open(QWidget* field);
  void commitSoon();
  bool commitName(bool staysOpen);
  void close();

  CanvasView& m_view;
  GraphCommands& m_commands;
  QPointer<QWidget> m_field;
  ActionId m_action = kNoId;
  NoteId m_note = kNoId;
};

}  // namespace kelvarin
