// What is dragged onto the canvas: types from the palette, and data files.
#include <QDragMoveEvent>
#include <QMimeData>
#include <QUrl>

#include "gui/canvas/canvas_scene.h"
#include "gui/canvas/canvas_view.h"
#include "gui/document/action_type_mime.h"
#include "host/engine/action_catalogue.h"

namespace kelvarin {

namespace {

constexpr double kReachOfLink = 24.0;

QString typeIn(const QMimeData& data) {
  return QString::fromUtf8(data.data(QLatin1String(kActionTypeMime)));
}

QStringList filesIn(const QMimeData& data) {
  QStringList files;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) {
      files.append(url.toLocalFile());
    }
  }
  return files;
}

bool goesIntoLinks(const ActionCatalogue& catalogue, const QString& typeName) {
  const CatalogueEntry* entry = catalogue.find(typeName);
  return entry != nullptr && entry->pinsIn > 0 && entry->pinsOut > 0;
}

}  // namespace

void CanvasView::dragEnterEvent(QDragEnterEvent* event) {
  const QMimeData& dragged = *event->mimeData();
  if (dragged.hasFormat(QLatin1String(kActionTypeMime)) || !filesIn(dragged).isEmpty()) {
    event->acceptProposedAction();
  }
}

void CanvasView::dragMoveEvent(QDragMoveEvent* event) {
  const QString typeName = typeIn(*event->mimeData());
  const QPointF point = mapToScene(event->position().toPoint());
  m_dropLink =
      goesIntoLinks(graph().catalogue(), typeName) ? m_scene->linkNear(point, kReachOfLink) : kNoId;
  m_scene->setLitLink(m_dropLink);
  event->acceptProposedAction();
}

void CanvasView::dragLeaveEvent(QDragLeaveEvent*) {
  m_dropLink = kNoId;
  m_scene->setLitLink(kNoId);
}

void CanvasView::dropEvent(QDropEvent* event) {
  const LinkId link = m_dropLink;
  m_dropLink = kNoId;
  m_scene->setLitLink(kNoId);
  event->acceptProposedAction();
  const QPointF point = mapToScene(event->position().toPoint());
  const QString typeName = typeIn(*event->mimeData());
  if (typeName.isEmpty()) {
    emit filesDropped(filesIn(*event->mimeData()), point);
    return;
  }
  const QSizeF box = m_scene->metrics().boxSize(1, 1);
  const QPointF corner = snappedToGrid(point - QPointF(box.width() / 2, box.height() / 2));
  const ActionId added = link != kNoId && graph().hasLink(link)
                             ? m_commands.insertIntoLink(typeName, link)
                             : m_commands.addAction(typeName, corner);
  if (added != kNoId) {
    setFocus(Qt::OtherFocusReason);
    showAction(added);
  }
}

}  // namespace kelvarin
