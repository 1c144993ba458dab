// Carries the columns of a row into the variables of expressions.
//
// A number variable takes numbers, keys and texts that are numbers; a text variable takes texts and
// the shortest text of numbers and keys; a date variable takes date texts as elapsed times, and
// numbers as they are. Threads: one.  Errors: statuses; nothing is logged.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QString>
#include <QStringList>

#include "base/result.h"
#include "expression/backends/variable_store.h"
#include "expression/dates/date_context.h"
#include "expression/evaluator/number_text.h"
#include "expression/evaluator/variables.h"
#include "host/contract/one_row.h"

namespace kelvarin {

class RowBinding {
 public:
  using Expand = std::function<QString(const QString&)>;

  void clear();
  // `places` holds the place of each input variable in `store`.
  Status<QString> bind(const std::vector<InputVariable>& inputs,
                       const std::vector<std::size_t>& places, const OneRow& columns,
                       const Expand& expand);

  // False when a null key must stop the run; failedVariable() names it.
  bool load(const OneRow& row, VariableStore& store, const DateContext& dates, int nullKeyMode);
  const QString& failedVariable() const { return m_failedVariable; }

  QStringList warnings() const;

 private:
  enum class Route : unsigned char {
    numberToNumber,
    keyToNumber,
    textToNumber,
    textToText,
    numberToText,
    keyToText,
    textToDate,
    numberToDate,
    keyToDate
  };
  struct Entry {
    Route route = Route::numberToNumber;
    int column = -1;
    std::size_t place = 0;
    QString variable;
    QString columnName;
    // Texts that were no numbers.
    long long refusedCount = 0;
    double firstRefusedRow = 0.0;
    // The last date, since neighbouring rows often share one.
    std::string lastDate;
    double lastElapsedTime = kNullNumber;
    bool hasLastDate = false;
    std::unique_ptr<ShortestNumber> printed;
  };

  static Route routeOf(VariableKind kind, MetaTypeColumn column);
  static bool loadEntry(Entry& entry, const unsigned char* bytes, VariableStore& store,
                        const DateContext& dates, int nullKeyMode);
  static double numberOfText(Entry& entry, std::string_view text, double row);
  static double elapsedTimeOfText(Entry& entry, const unsigned char* bytes,
                                  const DateContext& dates);

  std::vector<Entry> m_entries;
  QString m_failedVariable;
};

}  // namespace kelvarin
