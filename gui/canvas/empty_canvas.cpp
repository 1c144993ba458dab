#include "gui/canvas/empty_canvas.h"

#include <QEvent>

#include "gui/canvas/canvas_scene.h"
#include "gui/canvas/canvas_view.h"

namespace kelvarin {

EmptyCanvas::EmptyCanvas(CanvasView& canvas)
    : EmptyState(IconName::add,
                 tr("Type the first letters of an action, drag one here from the list, or drop a "
                    "data file."),
                 &canvas),
      m_canvas(canvas) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  canvas.installEventFilter(this);
  connect(&canvas.canvasScene(), &CanvasScene::contentChanged, this, &EmptyCanvas::adapt);
  adapt();
}

bool EmptyCanvas::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &m_canvas && event->type() == QEvent::Resize) {
    adapt();
  }
  return EmptyState::eventFilter(watched, event);
}

void EmptyCanvas::adapt() {
  const CanvasScene& scene = m_canvas.canvasScene();
  setVisible(scene.boxes().isEmpty() && scene.notes().isEmpty());
  setGeometry(m_canvas.rect());
}

}  // namespace kelvarin
