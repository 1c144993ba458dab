#include "columnar/actions/damage_policy.h"

#include "columnar/actions/messages.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

namespace {

constexpr int kMaxWarnings = 100;

}  // namespace

AfterDamage DamagePolicy::corrupted(const QString& file, std::uint64_t firstRow,
                                    std::uint64_t lastRow, ReadStatus cause) {
  if (m_skipsDamage) {
    warnAboutSkippedRows(file, firstRow, lastRow);
  } else {
    MainUI::addLog(LogLevel::error, columnar_messages::corrupted(file, firstRow));
  }
  explain(file, cause);
  return m_skipsDamage ? AfterDamage::goOn : AfterDamage::stopRun;
}

AfterDamage DamagePolicy::truncated(const QString& file, std::uint64_t firstRow) {
  if (m_skipsDamage) {
    MainUI::addLog(LogLevel::warning, columnar_messages::truncatedSkipped(file, firstRow));
  } else {
    MainUI::addLog(LogLevel::error, columnar_messages::truncated(file, firstRow));
  }
  explain(file, ReadStatus::truncated);
  return m_skipsDamage ? AfterDamage::endFile : AfterDamage::stopRun;
}

// Says for the first damage of a file what caused it and what to do.
void DamagePolicy::explain(const QString& file, ReadStatus cause) {
  if (m_explainedFile == file) {
    return;
  }
  m_explainedFile = file;
  const auto advice = cause == ReadStatus::foreign        ? columnar_messages::foreignSideFile
                      : cause == ReadStatus::beyondLimits ? columnar_messages::beyondLimits
                                                          : columnar_messages::damageAdvice;
  MainUI::addLog(LogLevel::information, advice(file));
}

void DamagePolicy::warnAboutSkippedRows(const QString& file, std::uint64_t firstRow,
                                        std::uint64_t lastRow) {
  if (m_warningCount > kMaxWarnings) {
    return;
  }
  ++m_warningCount;
  const QString text = m_warningCount > kMaxWarnings
                           ? columnar_messages::moreCorruptions(file)
                           : columnar_messages::corruptedSkipped(file, firstRow, lastRow);
  MainUI::addLog(LogLevel::warning, text);
}

}  // namespace kelvarin
