#include "gui/document/recovery_journal.h"

#include <utility>

#include <QFileInfo>

namespace kelvarin {

RecoveryJournal::RecoveryJournal(QString folder, QObject* parent)
    : QObject(parent), m_folder(std::move(folder)) {}

void RecoveryJournal::write(const RecoveryRecord& record) {
  const std::scoped_lock lock(m_mutex);
  m_wanted.isChanged = true;
  m_wanted.record = record;
  schedule();
}

void RecoveryJournal::remove() {
  const std::scoped_lock lock(m_mutex);
  m_wanted.isChanged = true;
  m_wanted.record.reset();
  schedule();
}

void RecoveryJournal::adopt(std::unique_ptr<RecoveryFile> file) {
  const std::scoped_lock lock(m_mutex);
  m_wanted = {};
  m_wanted.adopted = std::move(file);
  schedule();
}

void RecoveryJournal::schedule() {
  if (!std::exchange(m_isScheduled, true)) {
    m_jobs.start([this] { bringWanted(); });
  }
}

void RecoveryJournal::bringWanted() {
  Wanted wanted;
  {
    const std::scoped_lock lock(m_mutex);
    wanted = std::exchange(m_wanted, {});
    m_isScheduled = false;
  }
  if (wanted.adopted != nullptr) {
    removeFile();
    m_file = std::move(wanted.adopted);
  }
  if (!wanted.isChanged) {
    return;
  }
  const auto outcome = bring(wanted.record);
  const bool hadFailed = std::exchange(m_hasFailed, !outcome);
  if (!outcome && !hadFailed) {
    m_reports.post([this, reason = outcome.error()] { emit failed(reason); });
  }
}

void RecoveryJournal::removeFile() {
  if (m_file != nullptr) {
    m_file->remove();
    m_file.reset();
  }
}

Status<QString> RecoveryJournal::bring(const std::optional<RecoveryRecord>& record) {
  if (!record) {
    removeFile();
    return Done{};
  }
  if (m_file == nullptr || !QFileInfo::exists(m_folder)) {
    auto made = RecoveryFile::create(m_folder);
    if (!made) {
      return Failure{made.error()};
    }
    m_file = std::move(*made);
  }
  return m_file->write(*record);
}

}  // namespace kelvarin
