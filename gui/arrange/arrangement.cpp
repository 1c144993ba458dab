#include "gui/arrange/arrangement.h"

#include <algorithm>
#include <limits>
#include <sstream>

#include <dlfcn.h>
#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>

#include "gui/arrange/layout_fit.h"
#include "gui/arrange/layout_text.h"
#include "gui/document/edited_graph.h"

namespace kelvarin {

namespace {

constexpr char kProgram[] = "kelvarin-arrange";
constexpr int kLongest = 60'000;    // milliseconds
constexpr int kExitOfLoader = 127;  // a library of the program is missing

// The folder of the library, or program, that this code is in.
QString ownFolder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&ownFolder), &info) == 0) {
    return {};
  }
  return QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath();
}

QString programFile() {
  const QString application = QCoreApplication::applicationDirPath();
  for (const QString& folder :
       {ownFolder(), application, application + QStringLiteral("/../lib")}) {
    const QFileInfo file(folder + u'/' + QLatin1String(kProgram));
    if (file.isExecutable() && file.isFile()) {
      return file.absoluteFilePath();
    }
  }
  return {};
}

LayoutGraph layoutGraphOf(const EditedGraph& graph, const QList<ActionId>& actions,
                          const QHash<ActionId, QSizeF>& sizes, const PinSpacing& pins) {
  const QSet<ActionId> wanted(actions.cbegin(), actions.cend());
  LayoutGraph layout;
  layout.firstPin = pins.first;
  layout.pinStep = pins.step;
  for (const ActionId id : actions) {
    const QSizeF size = sizes.value(id);
    layout.boxes.push_back(
        {id, size.width(), size.height(), graph.pinCount(id, false), graph.pinCount(id, true)});
  }
  for (const LinkId id : graph.links()) {
    const DrawnLink& link = graph.link(id);
    if (link.whyBroken.isEmpty() && wanted.contains(link.from) && wanted.contains(link.to)) {
      layout.links.push_back({link.from, link.fromPin, link.to, link.toPin});
    }
  }
  return layout;
}

}  // namespace

class Arrangement::Parts {
 public:
  QString program = programFile();
  std::unique_ptr<QProcess> process;
  QTimer limit;
  QHash<ActionId, QSizeF> sizes;
  QPointF corner;
  QList<QRectF> others;
};

Arrangement::Arrangement(QObject* parent) : QObject(parent), m_parts(std::make_unique<Parts>()) {
  m_parts->limit.setSingleShot(true);
  m_parts->limit.setInterval(kLongest);
  connect(&m_parts->limit, &QTimer::timeout, this, [this] {
    cancel();
    emit failed(
        tr("Nothing was moved: no layout was found within a minute. Arrange a part of the "
           "graph: select its actions first."));
  });
}

Arrangement::~Arrangement() {
  cancel();
}

void Arrangement::setProgram(const QString& file) {
  m_parts->program = file;
}

bool Arrangement::isRunning() const {
  return m_parts->process != nullptr;
}

void Arrangement::cancel() {
  m_parts->limit.stop();
  if (m_parts->process == nullptr) {
    return;
  }
  // It ends by itself; nobody waits for it.
  QProcess* process = m_parts->process.release();
  process->disconnect(this);
  if (process->state() == QProcess::NotRunning) {
    process->deleteLater();
    return;
  }
  connect(process, &QProcess::finished, process, &QObject::deleteLater);
  process->kill();
}

void Arrangement::start(const EditedGraph& graph, const QSet<ActionId>& actions,
                        const QHash<ActionId, QSizeF>& sizes, const PinSpacing& pins) {
  cancel();
  QList<ActionId> wanted;
  m_parts->others.clear();
  m_parts->sizes = sizes;
  const double far = std::numeric_limits<double>::max();
  QPointF corner(far, far);
  for (const ActionId id : graph.actions()) {
    if (!actions.isEmpty() && !actions.contains(id)) {
      m_parts->others.append({graph.position(id), sizes.value(id)});
      continue;
    }
    wanted.append(id);
    const QPointF at = graph.hasPosition(id) ? graph.position(id) : QPointF();
    corner = {std::min(corner.x(), at.x()), std::min(corner.y(), at.y())};
  }
  m_parts->corner = corner;
  if (wanted.isEmpty()) {
    return;
  }
  if (m_parts->program.isEmpty()) {
    emit failed(programMissing());
    return;
  }
  std::ostringstream text;
  write(text, layoutGraphOf(graph, wanted, sizes, pins));
  run(QByteArray::fromStdString(text.str()));
}

void Arrangement::run(const QByteArray& input) {
  m_parts->process = std::make_unique<QProcess>();
  QProcess& process = *m_parts->process;
  connect(&process, &QProcess::finished, this, &Arrangement::take);
  connect(&process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) {
      cancel();
      emit failed(programMissing());
    }
  });
  process.start(m_parts->program, QStringList());
  process.write(input);
  process.closeWriteChannel();
  m_parts->limit.start();
}

void Arrangement::take() {
  m_parts->limit.stop();
  QProcess& process = *m_parts->process.release();
  process.deleteLater();
  const QString said = QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
  if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == kExitOfLoader) {
    emit failed(programMissing() + u'\n' + said);
    return;
  }
  std::istringstream text(process.readAllStandardOutput().toStdString());
  std::vector<LayoutPosition> positions;
  const bool isGood = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0 &&
                      read(text, positions);
  if (!isGood) {
    emit failed(tr("Nothing was moved: Graphviz found no layout for this graph. Arrange a part of "
                   "it: select its actions first.") +
                (said.isEmpty() ? QString() : u'\n' + said));
    return;
  }
  QHash<ActionId, QPointF> layout;
  for (const LayoutPosition& position : positions) {
    layout.insert(position.id, {position.x, position.y});
  }
  emit arranged(fittedLayout(layout, m_parts->sizes, m_parts->corner, m_parts->others));
}

QString Arrangement::programMissing() {
  return tr("Nothing was moved: arranging needs Graphviz and the program %1, which lies beside "
            "the program's libraries. Install Graphviz (on Debian: apt install libgvc6) and, if "
            "the program is not there, install this product again.")
      .arg(QLatin1String(kProgram));
}

}  // namespace kelvarin
