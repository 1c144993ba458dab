// The entries of the window's menus that act on what is selected on the canvas, and the menu of the
// canvas itself.
//
// Their keys work while the canvas has the focus: text fields have keys of their own for the same.
// Used by: host_window.h.
// Threads: the user-interface thread.
#pragma once

#include <functional>
#include <vector>

#include <QObject>

class QAction;
class QKeySequence;
class QMenu;

namespace kelvarin {

class CanvasView;
struct GraphSelection;

class CanvasMenus : public QObject {
  Q_OBJECT

 public:
  explicit CanvasMenus(CanvasView& canvas, QObject* parent = nullptr);

  void fillEdit(QMenu& menu);
  // What is done to actions, links and notes; `ofWindow` come in front of them in the canvas' menu,
  // for an action.
  void fillGraph(QMenu& menu, const QList<QAction*>& ofWindow, QAction* arrange);
  void fillView(QMenu& menu);
  // As far as there is something that each of them can act on.
  void enable(bool hasGraph);
  // The menu of what is selected.
  void popup(QMenu& menu, QPoint globalPosition) const;

 private:
  using Condition = std::function<bool(const GraphSelection&)>;

  QAction* add(QMenu& menu, const QString& text, const QKeySequence& key,
               void (CanvasView::*work)(), Condition condition);
  void addHeatMap(QMenu& menu);
  QMenu* newColorMenu(QMenu& menu);
  QMenu* newAlignMenu(QMenu& menu);

  CanvasView& m_canvas;
  std::vector<std::pair<QAction*, Condition>> m_conditions;
  QList<QAction*> m_ofActions;  // in the canvas' menu
  QList<QAction*> m_ofNotes;
  QList<QAction*> m_ofLinks;
  QList<QAction*> m_ofSelection;
  QList<QAction*> m_ofCanvas;
  bool m_hasGraph = false;
};

}  // namespace kelvarin
