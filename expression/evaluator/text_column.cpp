#include "expression/evaluator/text_column.h"

#include "expression/evaluator/messages.h"
#include "expression/evaluator/number_text.h"

namespace kelvarin {

void TextColumn::refuse(std::string_view text, double row) {
  if (m_refusedCount++ == 0) {
    m_firstRefusedRow = row;
    m_firstRefused.assign(text);
  }
}

double TextColumn::numberOf(std::string_view text, double row) {
  if (const auto number = numberOfWholeText(text)) {
    return *number;
  }
  if (!isBlankText(text)) {
    refuse(text, row);
  }
  return kNullNumber;
}

double TextColumn::elapsedTimeOf(std::string_view text, const DateContext& dates, double row) {
  if (text.empty()) {
    return dates.parameters().emptyETToNull ? kNullNumber : 0.0;
  }
  if (!m_hasLastDate || m_lastDate != text) {
    m_lastDate.assign(text);
    m_hasLastDate = true;
    const DateValue instant = dates.instantOf(text);
    m_isLastDateReadable = instant.has_value();
    m_lastElapsedTime = instant ? dates.elapsedTimeAt(*instant) : dates.unreadableAsElapsedTime();
  }
  if (!m_isLastDateReadable && !isBlankText(text)) {
    refuse(text, row);
  }
  return m_lastElapsedTime;
}

QString TextColumn::warningAboutNumbers() const {
  return messages::notNumbers(m_name, m_refusedCount, m_firstRefusedRow);
}

QString TextColumn::warningAboutDates(const DateContext& dates) const {
  constexpr qsizetype kMaxShown = 60;
  QString first = QString::fromStdString(m_firstRefused);
  if (first.size() > kMaxShown) {
    first = first.first(kMaxShown) + QChar(0x2026);
  }
  return messages::notDates(m_name, dates.format(), m_refusedCount,
                            isNullNumber(dates.unreadableAsElapsedTime()), first,
                            m_firstRefusedRow);
}

}  // namespace kelvarin
