#include "gui/window/examples.h"

#include <algorithm>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPainter>

#include "gui/canvas/canvas_view.h"
#include "gui/document/graph_commands.h"

namespace kelvarin {

namespace {

constexpr QSize kPictureSize{416, 224};  // twice what is shown, for fine screens
constexpr int kMargin = 16;
constexpr double kColumnWidth = 220.0;
constexpr double kRowHeight = 112.0;
constexpr char kFlights[] = "flights/flights.kelvarin";

class Examples {
  Q_DECLARE_TR_FUNCTIONS(kelvarin::Examples)
};

struct KnownExample {
  const char* path;
  QString title;
  QString description;
};

std::vector<KnownExample> knownExamples() {
  return {{kFlights, Examples::tr("Late flights"),
           Examples::tr("Reads a CSV file, computes speeds and delays, and writes late flights and "
                        "others apart.")},
          {"sensors/sensors.kelvarin", Examples::tr("Sensors"),
           Examples::tr("Many columns computed by few expressions.")},
          {"columnar/store.kelvarin", Examples::tr("Columnar file"),
           Examples::tr("Stores a table compactly, block by block.")}};
}

// Beside the program where it is installed, in the source tree where it was built.
QString examplesFolder() {
  const QDir program(QCoreApplication::applicationDirPath());
  for (const char* folder : {"../share/kelvarin/examples", "../../../examples"}) {
    const QString path = program.absoluteFilePath(QLatin1String(folder));
    if (QFileInfo(path).isDir()) {
      return QDir::cleanPath(path);
    }
  }
  return {};
}

// Of a file without positions: behind what each action reads from.
QHash<ActionId, QPointF> inColumns(const EditedGraph& graph) {
  QHash<ActionId, int> columns;
  for (int pass = 0; pass < graph.actionCount(); ++pass) {
    for (const LinkId id : graph.links()) {
      const DrawnLink& link = graph.link(id);
      if (link.whyBroken.isEmpty()) {
        columns[link.to] = std::max(columns.value(link.to), columns.value(link.from) + 1);
      }
    }
  }
  QHash<ActionId, QPointF> positions;
  QHash<int, int> heights;
  for (const ActionId action : graph.actions()) {
    const int column = columns.value(action);
    positions[action] = {column * kColumnWidth, heights[column]++ * kRowHeight};
  }
  return positions;
}

bool hasPositions(const EditedGraph& graph) {
  return std::ranges::all_of(graph.actions(),
                             [&](ActionId action) { return graph.hasPosition(action); });
}

QPixmap pictureOf(const QByteArray& document, const QString& path, const ActionCatalogue& catalogue,
                  Theme& theme) {
  EditedGraph graph(catalogue);
  if (!graph.load(document, path)) {
    return {};
  }
  if (!hasPositions(graph)) {
    graph.showAt(inColumns(graph));
  }
  GraphCommands commands(graph);
  const CanvasView canvas(commands, theme);
  const QImage drawn = canvas.asImage(1.0);
  QPixmap picture(kPictureSize);
  picture.fill(drawn.pixelColor(0, 0));  // the margin as the canvas
  QPainter painter(&picture);
  painter.setPen(QPen(canvas.palette().color(QPalette::PlaceholderText), 1.0));
  painter.drawRect(picture.rect().adjusted(0, 0, -1, -1));
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  const QSize inner = kPictureSize - QSize(2 * kMargin, 2 * kMargin);
  QRect target(QPoint(), drawn.size().scaled(inner, Qt::KeepAspectRatio));
  target.moveCenter(picture.rect().center());
  painter.drawImage(target, drawn);
  return picture;
}

}  // namespace

QString tourExample() {
  const QString folder = examplesFolder();
  return folder.isEmpty() ? QString() : QDir(folder).absoluteFilePath(QLatin1String(kFlights));
}

std::vector<Example> findExamples(const ActionCatalogue& catalogue, Theme& theme) {
  std::vector<Example> examples;
  const QDir folder(examplesFolder());
  for (const KnownExample& known : knownExamples()) {
    const QString path = folder.absoluteFilePath(QLatin1String(known.path));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
      continue;
    }
    const QPixmap picture = pictureOf(file.readAll(), path, catalogue, theme);
    if (!picture.isNull()) {
      examples.push_back({path, known.title, known.description, picture});
    }
  }
  return examples;
}

}  // namespace kelvarin
