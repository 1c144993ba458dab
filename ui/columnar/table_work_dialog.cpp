#include "ui/columnar/table_work_dialog.h"

#include <algorithm>

#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "columnar/actions/opened_table.h"
#include "columnar/actions/table_salvage.h"
#include "columnar/reader/failure_texts.h"
#include "host/widgets/info_line.h"
#include "ui/panels/settings_page.h"

namespace kelvarin {

namespace {

constexpr qsizetype kMaxLines = 1000;
constexpr int kBarSteps = 1000;
constexpr int kMillisecondsBetweenLooks = 100;

struct Verified {
  GelVerification result;
  bool isComplete = true;
  QStringList damages;  // the first ones
};

Result<Verified, QString> verifyTable(const QString& name,
                                      const std::shared_ptr<std::atomic<std::uint64_t>>& progress,
                                      const BackgroundTask::IsStopped& isStopped) {
  const auto file = openTable(name);
  if (!file) {
    return Failure{file.error()};
  }
  Verified verified;
  verified.isComplete = (*file)->isComplete();
  const auto report = [&](const GelDamage& damage) {
    if (verified.damages.size() < kMaxLines) {
      verified.damages += damageText(damage);
    }
  };
  verified.result =
      verifyGelFile(**file, report, [&](std::uint64_t rows) { *progress = rows; }, isStopped);
  return verified;
}

}  // namespace

TableWorkDialog::TableWorkDialog(QWidget* parent)
    : QDialog(parent),
      m_sentence(new QLabel(this)),
      m_bar(new QProgressBar(this)),
      m_result(new InfoLine(this)),
      m_lines(new QPlainTextEdit(this)),
      m_button(new QPushButton(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(12);
  layout->addWidget(m_sentence);
  layout->addWidget(m_bar);
  layout->addWidget(m_result);
  layout->addWidget(m_lines, 1);
  layout->addWidget(m_button, 0, Qt::AlignRight);
  m_sentence->setTextFormat(Qt::PlainText);
  m_sentence->setWordWrap(true);
  m_bar->setAccessibleName(tr("Progress"));
  m_lines->setReadOnly(true);
  m_lines->setObjectName(QStringLiteral("damages"));
  m_lines->setAccessibleName(tr("Damaged positions"));
  m_lines->setTabChangesFocus(true);
  m_button->setObjectName(QStringLiteral("pbClose"));
  m_timer.setInterval(kMillisecondsBetweenLooks);
  connect(&m_timer, &QTimer::timeout, this, &TableWorkDialog::showProgress);
  connect(m_button, &QPushButton::clicked, this, &TableWorkDialog::reject);
  setWindowModality(Qt::WindowModal);
  resize(560, 160);
}

TableWorkDialog::~TableWorkDialog() = default;

void TableWorkDialog::begin(const QString& title, const QString& sentence, std::uint64_t rows) {
  setWindowTitle(title);
  m_sentence->setText(sentence);
  m_rows = rows;
  m_progress = std::make_shared<std::atomic<std::uint64_t>>(0);
  m_isStopped = false;
  m_bar->setRange(0, rows > 0 ? kBarSteps : 0);
  m_bar->setValue(0);
  m_bar->show();
  m_result->clear();
  m_lines->hide();
  m_button->setText(tr("Cancel"));
  m_timer.start();
}

void TableWorkDialog::showProgress() {
  const std::uint64_t rows = std::min<std::uint64_t>(*m_progress, m_rows);
  if (m_rows > 0) {
    m_bar->setValue(static_cast<int>(rows * kBarSteps / m_rows));
  }
}

void TableWorkDialog::end(const ShownText& result, const QStringList& lines) {
  m_timer.stop();
  m_bar->hide();
  if (m_isStopped) {
    m_result->setMessage(Severity::information, tr("Cancelled."));
  } else {
    m_result->setMessage(result.severity, result.text);
  }
  m_lines->setPlainText(lines.join(u'\n'));
  m_lines->setVisible(!lines.isEmpty());
  if (!lines.isEmpty()) {
    resize(width(), std::max(height(), 360));
  }
  m_button->setText(tr("Close"));
  m_button->setEnabled(true);
}

void TableWorkDialog::verify(const QString& file, std::uint64_t rows) {
  begin(tr("Verify"), tr("Every block and every value of '%1' is checked.").arg(file), rows);
  m_task.start<Verified>(
      [file, progress = m_progress](const BackgroundTask::IsStopped& isStopped) {
        return verifyTable(file, progress, isStopped);
      },
      [this](const Result<Verified, QString>& verified) {
        if (!verified) {
          end({Severity::error, verified.error()});
          return;
        }
        QStringList lines = verified->damages;
        const std::uint64_t unlisted =
            verified->result.damages - static_cast<std::uint64_t>(lines.size());
        if (unlisted > 0) {
          lines += tr("%1 more damaged positions are not listed.").arg(countText(unlisted));
        }
        end(verificationText(verified->result, verified->isComplete), lines);
      });
}

void TableWorkDialog::salvage(const QString& file, const QString& newFile, std::uint64_t rows) {
  begin(tr("Salvage"), tr("What is whole in '%1' is written to '%2'.").arg(file, newFile), rows);
  m_task.start<RecoveryOutcome>(
      [file, newFile, progress = m_progress](const BackgroundTask::IsStopped& isStopped) {
        return salvageTable(
            file, newFile, [&](std::uint64_t written) { *progress = written; }, isStopped);
      },
      [this, newFile](const Result<RecoveryOutcome, QString>& outcome) {
        end(outcome ? salvageText(*outcome, newFile) : ShownText{Severity::error, outcome.error()});
      });
}

// The first press cancels the work, and its end is shown; the next one closes.
void TableWorkDialog::reject() {
  if (!isBusy()) {
    QDialog::reject();
    return;
  }
  if (m_isStopped) {
    m_task.forget();
    QDialog::reject();
    return;
  }
  m_isStopped = true;
  m_task.stop();
  m_button->setText(tr("Close"));
}

}  // namespace kelvarin
