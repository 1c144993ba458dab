#include "columnar/actions/damage_policy.h"

#include "columnar/actions/read_messages.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

namespace {

constexpr int kMostWarnings = 100;

QString rowText(std::uint64_t row) {
  return QString::number(row);
}

}  // namespace

AfterDamage DamagePolicy::corrupted(const QString& file, std::uint64_t firstRow,
                                    std::uint64_t lastRow, ReadStatus cause) {
  if (m_skipsDamage) {
    warnAboutSkippedRows(file, firstRow, lastRow);
  } else {
    MainUI::addLog(LogLevel::error,
                   QString::fromLatin1(messages::kCorrupted).arg(file, rowText(firstRow)));
  }
  explain(file, cause);
  return m_skipsDamage ? AfterDamage::goOn : AfterDamage::stopRun;
}

AfterDamage DamagePolicy::truncated(const QString& file, std::uint64_t firstRow) {
  const char* text = m_skipsDamage ? messages::kTruncatedSkipped : messages::kTruncated;
  MainUI::addLog(m_skipsDamage ? LogLevel::warning : LogLevel::error,
                 QString::fromLatin1(text).arg(file, rowText(firstRow)));
  explain(file, ReadStatus::truncated);
  return m_skipsDamage ? AfterDamage::endFile : AfterDamage::stopRun;
}

// What the first damage of a file comes from, and what to do.
void DamagePolicy::explain(const QString& file, ReadStatus cause) {
  if (m_explainedFile == file) {
    return;
  }
  m_explainedFile = file;
  const char* reason = cause == ReadStatus::foreign         ? messages::kForeignSideFile
                       : cause == ReadStatus::beyondLimits ? messages::kBeyondLimits
                                                            : messages::kDamageAdvice;
  MainUI::addLog(LogLevel::information, QString::fromLatin1(reason).arg(file));
}

void DamagePolicy::warnAboutSkippedRows(const QString& file, std::uint64_t firstRow,
                                        std::uint64_t lastRow) {
  if (m_warningCount > kMostWarnings) {
    return;
  }
  ++m_warningCount;
  const QString text = m_warningCount > kMostWarnings
                           ? QString::fromLatin1(messages::kMoreCorruptions).arg(file)
                           : QString::fromLatin1(messages::kCorruptedSkipped)
                                 .arg(file, rowText(firstRow), rowText(lastRow));
  MainUI::addLog(LogLevel::warning, text);
}

}  // namespace kelvarin
