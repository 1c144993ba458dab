#include "gui/document/graph_files.h"

#include <utility>

#include <QFile>

#include "host/contract/main_ui.h"
#include "host/engine/graph_writer.h"

namespace kelvarin {

namespace {

// Null where it cannot be read.
QByteArray contentOf(const QString& file) {
  QFile source(file);
  return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
}

}  // namespace

GraphFiles::GraphFiles(QString file, std::vector<ParameterOverride> settings,
                       const ActionCatalogue& catalogue, HostSession& session, QObject* parent)
    : QObject(parent),
      m_file(std::move(file)),
      m_settings(std::move(settings)),
      m_catalogue(catalogue),
      m_session(session) {
  m_jobs.setMaxThreadCount(1);
}

GraphFiles::~GraphFiles() {
  stopCheck();
  m_jobs.waitForDone();
}

void GraphFiles::start(std::function<void()> job) {
  m_jobs.start([this, work = std::move(job)] {
    const HostSession::Scope scope(&m_session);
    work();
  });
}

void GraphFiles::post(std::function<void()> report) {
  QMetaObject::invokeMethod(this, std::move(report), Qt::QueuedConnection);
}

void GraphFiles::load() {
  start([this] {
    const auto document = readGraphFile(m_file);
    if (!document) {
      post([this, faults = document.error()] { emit refused(faults); });
      return;
    }
    m_onDisk = *document;
    post([this, content = *document] { emit loaded(content); });
  });
}

bool GraphFiles::isOtherOnDisk() const {
  return QFile::exists(m_file) && contentOf(m_file) != m_onDisk;
}

void GraphFiles::save(const QByteArray& document, SaveMode mode) {
  start([this, document, mode] {
    if (mode == SaveMode::ifUnchangedOnDisk && isOtherOnDisk()) {
      post([this] { emit saveFoundOtherFile(); });
      return;
    }
    const auto outcome = saveGraphDocument(document, m_file);
    if (!outcome) {
      post([this, reason = outcome.error()] { emit saveFailed(reason); });
      return;
    }
    m_onDisk = document;
    post([this] { emit saved(); });
  });
}

void GraphFiles::compareWithDisk() {
  start([this] {
    if (isOtherOnDisk()) {
      post([this] { emit changedOnDisk(); });
    }
  });
}

void GraphFiles::acceptDisk() {
  start([this] { m_onDisk = contentOf(m_file); });
}

void GraphFiles::check(const QByteArray& document) {
  m_isChecking = true;
  m_check = std::make_shared<RunRecord>();
  start([this, document, record = m_check] {
    bool isOk = false;
    auto graph = parseGraph(document, m_file, m_catalogue, m_settings);
    if (graph) {
      isOk = checkGraph(*graph, *record).isOk();
    } else {
      for (const GraphError& fault : graph.error()) {
        MainUI::addLog(LogLevel::error, fault.message);
      }
    }
    post([this, isOk] {
      m_isChecking = false;
      emit checked(isOk);
    });
  });
}

void GraphFiles::stopCheck() {
  if (m_check != nullptr) {
    m_check->stop();
  }
}

}  // namespace kelvarin
