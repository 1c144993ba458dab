#include "gui/window/canvas_menus.h"

#include <QActionGroup>
#include <QMenu>
#include <QPainter>
#include <QPixmap>

#include "gui/canvas/canvas_view.h"
#include "gui/canvas/note_box.h"

namespace kelvarin {

namespace {

constexpr int kPictureSize = 16;
constexpr double kZoomStep = 1.25;

bool isAnything(const GraphSelection&) {
  return true;
}
bool isSomething(const GraphSelection& selection) {
  return !selection.isEmpty();
}
bool hasCopies(const GraphSelection& selection) {
  return !selection.actions.isEmpty() || !selection.notes.isEmpty();
}
bool hasActions(const GraphSelection& selection) {
  return !selection.actions.isEmpty();
}
bool hasNotes(const GraphSelection& selection) {
  return !selection.notes.isEmpty();
}
bool isOneAction(const GraphSelection& selection) {
  return selection.actions.size() == 1;
}
bool isOneText(const GraphSelection& selection) {
  return selection.actions.size() + selection.notes.size() == 1;
}
bool hasRows(const GraphSelection& selection) {
  return isOneAction(selection) || (selection.actions.isEmpty() && selection.links.size() == 1);
}
bool hasSeveral(const GraphSelection& selection) {
  return selection.actions.size() + selection.notes.size() > 1;
}

QIcon colorPicture(const QColor& color) {
  QPixmap picture(kPictureSize, kPictureSize);
  picture.fill(color);
  QPainter painter(&picture);
  painter.setPen(Qt::gray);
  painter.drawRect(picture.rect().adjusted(0, 0, -1, -1));
  return picture;
}

}  // namespace

CanvasMenus::CanvasMenus(CanvasView& canvas, QObject* parent) : QObject(parent), m_canvas(canvas) {
  connect(&canvas, &CanvasView::selectionChanged, this, [this] { enable(m_hasGraph); });
}

QAction* CanvasMenus::add(QMenu& menu, const QString& text, const QKeySequence& key,
                          void (CanvasView::*work)(), Condition condition) {
  auto* action = new QAction(text, &m_canvas);  // whose key it is
  connect(action, &QAction::triggered, &m_canvas, work);
  menu.addAction(action);
  action->setShortcut(key);
  action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  m_canvas.addAction(action);
  m_conditions.emplace_back(action, std::move(condition));
  return action;
}

void CanvasMenus::fillEdit(QMenu& menu) {
  QAction* cut = add(menu, tr("Cu&t"), QKeySequence::Cut, &CanvasView::cutSelection, hasCopies);
  QAction* copy = add(menu, tr("&Copy"), QKeySequence::Copy, &CanvasView::copySelection, hasCopies);
  QAction* paste = add(menu, tr("&Paste"), QKeySequence::Paste, &CanvasView::paste, isAnything);
  QAction* duplicate =
      add(menu, tr("&Duplicate"), Qt::CTRL | Qt::Key_D, &CanvasView::duplicateSelection, hasCopies);
  QAction* remove =
      add(menu, tr("D&elete"), QKeySequence::Delete, &CanvasView::deleteSelection, isSomething);
  QAction* close = add(menu, tr("Delete and close the &gap"), Qt::CTRL | Qt::Key_Delete,
                       &CanvasView::deleteSelectionClosingGaps, hasActions);
  menu.addSeparator();
  QAction* all =
      add(menu, tr("Select &all"), QKeySequence::SelectAll, &CanvasView::selectAll, isAnything);
  m_ofSelection = {cut, copy, duplicate, remove};
  m_ofActions = {close};
  m_ofLinks = {remove};
  m_ofCanvas = {paste, all};
}

void CanvasMenus::fillGraph(QMenu& menu, const QList<QAction*>& ofWindow, QAction* arrange) {
  QAction* preview =
      add(menu, tr("Pre&view"), Qt::CTRL | Qt::Key_Return, &CanvasView::previewCurrent, hasRows);
  QAction* rename = add(menu, tr("Re&name"), Qt::Key_F2, &CanvasView::renameCurrent, isOneText);
  QAction* disable = add(menu, tr("Switch on or o&ff"), Qt::CTRL | Qt::Key_E,
                         &CanvasView::toggleDisabled, hasActions);
  QAction* link =
      add(menu, tr("Draw a lin&k"), Qt::CTRL | Qt::Key_K, &CanvasView::drawLinkByKeys, isOneAction);
  menu.addSeparator();
  QAction* note = add(menu, tr("Add a no&te"), {}, &CanvasView::addNoteHere, isAnything);
  QMenu* colors = newColorMenu(menu);
  QMenu* align = newAlignMenu(menu);
  m_ofActions = ofWindow + QList{preview, rename, disable, link} + m_ofActions;
  m_ofNotes = {rename, colors->menuAction()};
  m_ofLinks.prepend(preview);
  m_ofSelection.append(align->menuAction());
  m_ofCanvas += {note, arrange};
}

QMenu* CanvasMenus::newColorMenu(QMenu& menu) {
  QMenu* colors = menu.addMenu(tr("Note &colour"));
  const QStringList names{tr("&Yellow"), tr("&Green"),  tr("&Blue"),
                          tr("&Pink"),   tr("P&urple"), tr("G&rey")};
  const QList<QColor> values = noteColors();
  for (qsizetype i = 0; i < std::min(names.size(), values.size()); ++i) {
    colors->addAction(colorPicture(values[i]), names[i], this,
                      [this, color = values[i]] { m_canvas.setNoteColor(color); });
  }
  m_conditions.emplace_back(colors->menuAction(), hasNotes);
  return colors;
}

QMenu* CanvasMenus::newAlignMenu(QMenu& menu) {
  QMenu* align = menu.addMenu(tr("Ali&gn"));
  const std::pair<Qt::Edge, QString> edges[] = {{Qt::LeftEdge, tr("&Left edges")},
                                                {Qt::RightEdge, tr("&Right edges")},
                                                {Qt::TopEdge, tr("&Top edges")},
                                                {Qt::BottomEdge, tr("&Bottom edges")}};
  for (const auto& [edge, label] : edges) {
    align->addAction(label, this, [this, side = edge] { m_canvas.alignSelection(side); });
  }
  m_conditions.emplace_back(align->menuAction(), hasSeveral);
  return align;
}

// Editors have the same keys for the size of their texts, and take them first.
void CanvasMenus::fillView(QMenu& menu) {
  const auto append = [this, &menu](const QString& text, const QList<QKeySequence>& keys,
                                    const std::function<void()>& work, Condition condition) {
    QAction* action = menu.addAction(text, this, work);
    action->setShortcuts(keys);
    m_conditions.emplace_back(action, std::move(condition));
  };
  append(
      tr("Zoom &in"), {QKeySequence::ZoomIn, QKeySequence(Qt::CTRL | Qt::Key_Equal)},
      [this] { m_canvas.zoomBy(kZoomStep); }, isAnything);
  append(
      tr("Zoom &out"), {QKeySequence::ZoomOut}, [this] { m_canvas.zoomBy(1 / kZoomStep); },
      isAnything);
  append(
      tr("&100 %"), {Qt::CTRL | Qt::Key_0},
      [this] { m_canvas.zoomBy(1 / m_canvas.extract().zoom); }, isAnything);
  append(tr("&Whole graph"), {Qt::CTRL | Qt::Key_9}, [this] { m_canvas.zoomToAll(); }, isAnything);
  append(
      tr("What is &selected"), {Qt::CTRL | Qt::Key_8}, [this] { m_canvas.zoomToSelection(); },
      hasCopies);
  addHeatMap(menu);
}

void CanvasMenus::addHeatMap(QMenu& menu) {
  QMenu* heat = menu.addMenu(tr("&Heat map of the last run"));
  auto* group = new QActionGroup(heat);
  const std::pair<HeatMap, QString> maps[] = {{HeatMap::off, tr("&Off")},
                                              {HeatMap::time, tr("&Time of each action")},
                                              {HeatMap::rows, tr("&Rows of each action")}};
  for (const auto& [map, label] : maps) {
    QAction* action =
        heat->addAction(label, this, [this, chosen = map] { m_canvas.setHeatMap(chosen); });
    action->setCheckable(true);
    action->setChecked(map == HeatMap::off);
    group->addAction(action);
  }
  m_conditions.emplace_back(heat->menuAction(), isAnything);
}

void CanvasMenus::enable(bool hasGraph) {
  m_hasGraph = hasGraph;
  const GraphSelection selection = m_canvas.selection();
  for (const auto& [action, condition] : m_conditions) {
    action->setEnabled(hasGraph && condition(selection));
  }
}

void CanvasMenus::popup(QMenu& menu, QPoint globalPosition) const {
  const GraphSelection selection = m_canvas.selection();
  menu.clear();
  const auto append = [&menu](const QList<QAction*>& actions) {
    menu.addSeparator();
    for (QAction* action : actions) {
      if (action->isEnabled()) {
        menu.addAction(action);
      }
    }
  };
  if (isOneAction(selection)) {
    append(m_ofActions);
  } else if (!hasActions(selection) && hasNotes(selection)) {
    append(m_ofNotes);
  } else if (!hasCopies(selection) && isSomething(selection)) {
    append(m_ofLinks);
  }
  if (hasCopies(selection)) {
    append(m_ofSelection);
  }
  append(m_ofCanvas);
  menu.popup(globalPosition);
}

}  // namespace kelvarin
