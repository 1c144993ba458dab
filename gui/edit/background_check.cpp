#include "gui/edit/background_check.h"

#include <utility>

#include "host/contract/main_ui.h"

namespace kelvarin {

BackgroundCheck::BackgroundCheck(std::vector<ParameterOverride> settings,
                                 const ActionCatalogue& catalogue, HostSession& session,
                                 QObject* parent)
    : QObject(parent),
      m_settings(std::move(settings)),
      m_catalogue(catalogue),
      m_session(session) {}

BackgroundCheck::~BackgroundCheck() {
  stop();
}

void BackgroundCheck::start(const QByteArray& document, const QString& file) {
  m_isRunning = true;
  m_record = std::make_shared<RunRecord>();
  m_jobs.start([this, document, file, record = m_record] {
    const HostSession::Scope scope(&m_session);
    const bool isOk = check(document, file, *record);
    m_reports.post([this, isOk] {
      m_isRunning = false;
      emit ended(isOk);
    });
  });
}

bool BackgroundCheck::check(const QByteArray& document, const QString& file,
                            RunRecord& record) const {
  auto graph = parseGraph(document, file, m_catalogue, m_settings);
  if (graph) {
    return checkGraph(*graph, record).isOk();
  }
  for (const GraphError& fault : graph.error()) {
    MainUI::addLog(LogLevel::error, fault.message);
  }
  return false;
}

void BackgroundCheck::stop() {
  if (m_record != nullptr) {
    m_record->stop();
  }
}

}  // namespace kelvarin
