#include "gui/recovery/recovery_offer.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <QFileInfo>
#include <QLocale>

#include "gui/dialogs/question.h"

namespace kelvarin {

namespace {

const QString kRestore = QStringLiteral("restore");
const QString kDiscard = QStringLiteral("discard");

}  // namespace

RecoveryOffer::RecoveryOffer(QString folder, QWidget* parent)
    : InfoLine(parent), m_folder(std::move(folder)) {
  setObjectName(QStringLiteral("recoveryOffer"));
  connect(this, &InfoLine::linkActivated, this, [this](const QString& id) {
    if (id == kRestore) {
      emit restoreWanted();
    } else if (id == kDiscard) {
      discardFirst();
    }
  });
}

void RecoveryOffer::search(const QString& graphFile) {
  m_jobs.start([this, graphFile] {
    using Files = std::vector<std::unique_ptr<RecoveryFile>>;
    auto files = std::make_shared<Files>(RecoveryFile::takeAbandoned(m_folder));
    if (!graphFile.isEmpty()) {
      std::erase_if(*files, [&](const std::unique_ptr<RecoveryFile>& file) {
        return file->found().graphFile != graphFile;
      });
    }
    m_reports.post([this, files] {
      std::ranges::move(*files, std::back_inserter(m_found));
      showFirst();
    });
  });
}

std::unique_ptr<RecoveryFile> RecoveryOffer::take() {
  if (m_found.empty()) {
    return nullptr;
  }
  std::unique_ptr<RecoveryFile> first = std::move(m_found.front());
  m_found.pop_front();
  showFirst();
  return first;
}

void RecoveryOffer::showFirst() {
  if (m_found.empty()) {
    clear();
    return;
  }
  const RecoveryRecord& record = m_found.front()->found();
  const QString time = QLocale().toString(record.time.toLocalTime(), QLocale::ShortFormat);
  QString text =
      tr("A graph was not saved when the program ended: %1, %2.").arg(shownName(record), time);
  if (m_found.size() > 1) {
    text += u' ' + tr("%n further", nullptr, static_cast<int>(m_found.size()) - 1) + u'.';
  }
  setToolTip(record.graphFile);
  setMessage(Severity::warning, text, {{kRestore, tr("Restore")}, {kDiscard, tr("Discard")}});
}

void RecoveryOffer::discardFirst() {
  if (m_found.empty()) {
    return;
  }
  ask(window(),
      {tr("What was not saved of %1 will be lost.").arg(shownName(m_found.front()->found())),
       {},
       {{QMessageBox::Cancel, {}}, {QMessageBox::Discard, {}}}},
      [this](QMessageBox::StandardButton button) {
        if (button == QMessageBox::Discard) {
          if (const std::shared_ptr<RecoveryFile> file = take()) {
            m_jobs.start([file] { file->remove(); });
          }
        }
      });
}

QString shownName(const RecoveryRecord& record) {
  return record.graphFile.isEmpty() ? RecoveryOffer::tr("a new graph")
                                    : QFileInfo(record.graphFile).fileName();
}

QString noRecoveryText(const QString& reason) {
  return RecoveryOffer::tr("No recovery file can be written: %1. Save often until there is one.")
      .arg(reason);
}

}  // namespace kelvarin
