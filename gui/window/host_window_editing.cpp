// How actions come into the graph: from the palette, by letters typed on the canvas, from links and
// dropped files, and from what is chosen in the preview.

#include <QApplication>
#include <QClipboard>
#include <QDockWidget>
#include <QInputDialog>
#include <QStatusBar>

#include "gui/canvas/canvas_view.h"
#include "gui/palette/palette_panel.h"
#include "gui/palette/quick_add.h"
#include "gui/preview/preview_panel.h"
#include "gui/properties/editor_focus.h"
#include "gui/properties/property_panel.h"
#include "gui/window/expression_step.h"
#include "gui/window/host_window.h"
#include "gui/window/parameters_dialog.h"
#include "host/widgets/user_interface.h"

namespace kelvarin {

namespace {

constexpr QSize kEditorWindow{1120, 760};

}  // namespace

void HostWindow::connectCanvas() {
  connect(m_canvas, &CanvasView::selectionChanged, this, &HostWindow::showCurrentAction);
  connect(m_canvas, &CanvasView::openWanted, this, &HostWindow::openEditorWindow);
  connect(m_canvas, &CanvasView::previewWanted, this, [this](const PinRef& pin) {
    m_previewDock->show();
    m_previewDock->raise();
    commitTyping();
    m_preview->showPin(pin);
  });
  connect(m_canvas, &CanvasView::quickAddWanted, this, &HostWindow::offerActions);
  connect(m_canvas, &CanvasView::filesDropped, &m_drops, &FileDrop::take);
  connect(m_canvas, &CanvasView::contextMenuWanted, this, &HostWindow::showContextMenu);
  connect(m_canvas, &CanvasView::hint, this,
          [this](const QString& text) { statusBar()->showMessage(text); });
  connect(m_palette, &PalettePanel::chosen, this, &HostWindow::addChosen);
}

void HostWindow::connectPreview() {
  const auto add = [this](const PinRef& pin, const QString& typeName, const QByteArray& element) {
    select(addStepAt(m_commands, pin, typeName, element), true);
  };
  connect(m_preview, &PreviewPanel::keepRowsWanted, this,
          [add](const PinRef& pin, const RowCondition& condition) {
            add(pin, QStringLiteral("FilterRows"), filterElement(condition));
          });
  connect(m_preview, &PreviewPanel::newColumnWanted, this,
          [add](const PinRef& pin, const PinColumns::Column& column, const QString& name) {
            add(pin, QStringLiteral("Calculator"), calculatorElement(column, name));
          });
  connect(m_preview, &PreviewPanel::actionWanted, this,
          [this](ActionId action) { select(action, true); });
  connect(m_preview, &PreviewPanel::renameColumnWanted, this, &HostWindow::askForColumnName);
  connect(m_preview, &PreviewPanel::stepToRowWanted, this, &HostWindow::stepToRow);
}

// Behind the selected action where that has an output, else in the middle of what is seen.
void HostWindow::addChosen(const QString& typeName) {
  const ActionId current = m_canvas->currentAction();
  const CatalogueEntry* entry = m_graph.catalogue().find(typeName);
  const bool canFollow = current != kNoId && entry != nullptr && entry->pinsIn > 0 &&
                         m_graph.pinCount(current, true) > 0;
  const ActionId added = canFollow ? m_commands.addLinked(typeName, {current, 0, true})
                                   : m_commands.addAction(typeName, m_canvas->pointOfInterest());
  select(added, true);
}

void HostWindow::offerActions(const PinRef& pin, QPointF scenePosition, QPoint globalPosition,
                              const QString& typed) {
  const auto fits = [pin](const CatalogueEntry& entry) {
    return pin.action == kNoId || (pin.isOutput ? entry.pinsIn > 0 : entry.pinsOut > 0);
  };
  auto* offer = new QuickAdd(m_graph.catalogue(), fits, this);
  const bool isBehindAction = !typed.isEmpty();
  connect(offer, &QuickAdd::chosen, this,
          [this, pin, scenePosition, isBehindAction](const QString& typeName) {
            if (isBehindAction && pin.action != kNoId) {
              select(m_commands.addLinked(typeName, pin), true);
            } else {
              addAt(typeName, pin, scenePosition);
            }
          });
  offer->open(globalPosition, typed);
}

void HostWindow::addAt(const QString& typeName, const PinRef& pin, QPointF scenePosition) {
  ActionId added = kNoId;
  m_commands.together(tr("Add %1").arg(typeName), [&] {
    added = m_commands.addAction(typeName, scenePosition);
    if (added == kNoId || pin.action == kNoId) {
      return;
    }
    if (pin.isOutput) {
      m_commands.addLink(pin.action, pin.pin, added, 0);
    } else {
      m_commands.addLink(added, 0, pin.action, pin.pin);
    }
  });
  select(added, true);
}

void HostWindow::connectDrops() {
  connect(&m_drops, &FileDrop::graphWanted, this, &HostWindow::open);
  connect(&m_drops, &FileDrop::tablesFound, this, [this] {
    if (!m_hasGraph) {
      newGraph();
    }
  });
  connect(&m_drops, &FileDrop::refused, this, &HostWindow::showNotice);
  connect(&m_drops, &FileDrop::added, this, [this](ActionId reader) {
    m_previewDock->show();
    m_previewDock->raise();
    select(reader, false);
  });
}

void HostWindow::select(ActionId action, bool opensEditor) {
  if (action == kNoId || !m_graph.hasAction(action)) {
    return;
  }
  GraphSelection selection;
  selection.actions = {action};
  m_canvas->setSelection(selection);
  m_canvas->showAction(action);
  if (opensEditor) {
    m_propertiesDock->show();
    m_propertiesDock->raise();
    m_properties->focusEditor();
  }
}

void HostWindow::openEditorWindow(ActionId action) {
  select(action, false);
  m_propertiesDock->show();
  if (!m_propertiesDock->isFloating()) {
    m_propertiesDock->setFloating(true);
    m_propertiesDock->resize(kEditorWindow);
    m_propertiesDock->move(geometry().center() - m_propertiesDock->rect().center());
  }
  m_propertiesDock->raise();
  m_propertiesDock->activateWindow();
  m_properties->focusEditor();
}

// Of a sink, what it is going to write.
void HostWindow::previewSelection() {
  const ActionId current = m_canvas->currentAction();
  if (current == kNoId || !m_previewDock->isVisible()) {
    return;
  }
  m_properties->commit();
  const bool hasOutput = m_graph.pinCount(current, true) > 0;
  m_preview->showPin({current, 0, hasOutput});
}

// In the action itself where its output has a row for each row of its input, else in one that reads
// the pin, or from which it reads.
void HostWindow::stepToRow(const PinRef& pin, long long row) {
  QList<ActionId> candidates;
  if (!pin.isOutput ||
      (m_graph.pinCount(pin.action, true) == 1 && m_graph.pinCount(pin.action, false) > 0)) {
    candidates += pin.action;
  }
  for (const LinkId id : m_graph.linksOf(pin.action)) {
    const DrawnLink& link = m_graph.link(id);
    if (pin.isOutput && link.from == pin.action && link.fromPin == pin.pin && link.toPin == 0) {
      candidates += link.to;
    }
  }
  for (const ActionId candidate : candidates) {
    select(candidate, true);
    if (m_properties->editor() != nullptr && m_properties->editor()->stepToRow(row)) {
      return;
    }
  }
  const LinkId above = pin.isOutput ? kNoId : m_graph.linkInto(pin.action, pin.pin);
  if (above != kNoId) {
    const DrawnLink link = m_graph.link(above);
    stepToRow({link.from, link.fromPin, true}, row);
    return;
  }
  select(pin.action, false);
  statusBar()->showMessage(
      tr("No expression reads these rows yet: add a Calculator or a filter to step through them."));
}

void HostWindow::replaceCurrent(const QString& typeName) {
  if (const ActionId current = m_canvas->currentAction(); current != kNoId) {
    m_commands.replaceAction(current, typeName);
  }
}

void HostWindow::askForColumnName(const PinRef& pin, const QString& column) {
  bool isGiven = false;
  const QString name =
      QInputDialog::getText(this, tr("Rename a column"),
                            tr("&New name of '%1', here and wherever it is used:").arg(column),
                            QLineEdit::Normal, column, &isGiven);
  if (!isGiven || name.isEmpty() || name == column) {
    return;
  }
  const QList<ActionId> changed = m_commands.renameColumn(pin.action, column, name);
  statusBar()->showMessage(tr("%n action(s) follow.", nullptr, static_cast<int>(changed.size())));
}

void HostWindow::editParameters() {
  auto* dialog = new ParametersDialog(m_commands, this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->open();
}

// A command runs the file, not what is in the window. kNoId: the whole graph.
void HostWindow::copyCommandLine(ActionId lastAction) {
  const QString line = m_file.path().isEmpty() ? QString() : m_run.commandLine(lastAction);
  if (line.isEmpty()) {
    showNotice(
        tr("A command line runs the file of a graph, and this graph has none yet. Save it, "
           "then copy the command."));
    return;
  }
  QGuiApplication::clipboard()->setText(line);
  statusBar()->showMessage(m_graph.isModified()
                               ? tr("Copied; it runs the graph as last saved: %1").arg(line)
                               : tr("Copied: %1").arg(line));
}

// The selected actions, or all where fewer than two are selected.
void HostWindow::arrange() {
  const QSet<ActionId> selected = m_canvas->selection().actions;
  m_arrangesUnasked = false;
  m_arrangement.start(m_graph, selected.size() > 1 ? selected : QSet<ActionId>(),
                      m_canvas->boxSizes(), m_canvas->pinSpacing());
}

void HostWindow::commitTyping() {
  if (isInside(QApplication::focusWidget(), *m_canvas)) {
    m_canvas->setFocus();
  }
  m_properties->commit();
}

void HostWindow::undo() {
  commitTyping();
  m_commands.stack().undo();
}

void HostWindow::redo() {
  commitTyping();
  m_commands.stack().redo();
}

void HostWindow::run() {
  commitTyping();
  if (!m_run.start()) {
    statusBar()->showMessage(tr("There is nothing to run yet."));
  }
}

void HostWindow::runToCurrent() {
  commitTyping();
  if (const ActionId current = m_canvas->currentAction(); current != kNoId) {
    m_run.startTo(current);
  }
}

}  // namespace kelvarin
