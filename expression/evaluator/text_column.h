// A text column that enters expressions as numbers or as elapsed times: converts its texts, and
// remembers those that were neither.
//
// Used by RowBinding, one for each such column.
#pragma once

#include <string>
#include <string_view>

#include <QString>

#include "base/null_number.h"
#include "expression/dates/date_context.h"

namespace kelvarin {

class TextColumn {
 public:
  explicit TextColumn(QString name) : m_name(std::move(name)) {}

  // Null where the text is no number. `row` is the number of the row, for the warning.
  double numberOf(std::string_view text, double row);
  double elapsedTimeOf(std::string_view text, const DateContext& dates, double row);

  bool hasRefused() const { return m_refusedCount > 0; }
  long long refusedCount() const { return m_refusedCount; }
  // About texts that were no numbers, or no dates.
  QString warningAboutNumbers() const;
  QString warningAboutDates(const DateContext& dates) const;

 private:
  void refuse(std::string_view text, double row);

  QString m_name;
  long long m_refusedCount = 0;
  double m_firstRefusedRow = 0.0;
  std::string m_firstRefused;
  // The last date, since neighbouring rows often share one.
  std::string m_lastDate;
  double m_lastElapsedTime = kNullNumber;
  bool m_hasLastDate = false;
  bool m_isLastDateReadable = false;
};

}  // namespace kelvarin
