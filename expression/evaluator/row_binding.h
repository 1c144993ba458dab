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
#include "expression/evaluator/column_evaluation.h"
#include "expression/evaluator/number_text.h"
#include "expression/evaluator/variables.h"
#include "host/contract/one_row.h"

namespace kelvarin {

class RowBinding {
 public:
  using Expand = std::function<QString(const QString&)>;

  void clear();
  // `places` holds the place of each input variable in `store`. A vector variable has
  // `elementCount` columns.
  Status<QString> bind(const std::vector<InputVariable>& inputs,
                       const std::vector<std::size_t>& places, const OneRow& columns,
                       const Expand& expand, int elementCount);

  // Loads the columns of one element; the first of a row is element 0. False when a null key must
  // stop the run; failedVariable() names it.
  bool load(const OneRow& row, int element, VariableStore& store, const DateContext& dates,
            int nullKeyMode);
  const QString& failedVariable() const { return m_failedVariable; }

  // Of the variables that numbers and keys enter as they are.
  std::vector<NumberSource> numberSources(const DateContext& dates, int nullKeyMode) const;
  // Loading a row may stop the run, or count values to warn about.
  bool hasEffects(int nullKeyMode) const;

  // About values that were no numbers or no dates.
  QStringList warnings(const DateContext& dates) const;

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
  // What is remembered of a text column that enters as a number or an elapsed time.
  struct ColumnMemory {
    QString columnName;
    // Texts that were no numbers, or no dates.
    long long refusedCount = 0;
    double firstRefusedRow = 0.0;
    std::string firstRefused;
    // The last date, since neighbouring rows often share one.
    std::string lastDate;
    double lastElapsedTime = kNullNumber;
    bool hasLastDate = false;
    bool isLastDateReadable = false;

    void refuse(std::string_view text, double row);
  };
  struct Entry {
    Route route = Route::numberToNumber;
    bool isVector = false;
    std::size_t place = 0;
    QString variable;
    std::vector<ColumnMemory>
        memories;  // of each element, or one; empty where nothing is remembered
    std::unique_ptr<ShortestNumber> printed;

    ColumnMemory& memory(int element) {
      return memories[isVector ? static_cast<std::size_t>(element) : 0];
    }
  };

  static Result<std::vector<int>, QString> columnsOf(const InputVariable& input,
                                                     const OneRow& columns, const Expand& expand);
  static Entry entryFor(const InputVariable& input, std::size_t place,
                        const std::vector<int>& columnsOfInput, const OneRow& columns);
  static Route routeOf(VariableKind kind, MetaTypeColumn column);
  static bool givesText(Route route);
  static bool loadEntry(Entry& entry, const unsigned char* bytes, int element, VariableStore& store,
                        const DateContext& dates, int nullKeyMode);
  static double numberOfText(ColumnMemory& memory, std::string_view text, double row);
  static double elapsedTimeOfText(ColumnMemory& memory, const unsigned char* bytes,
                                  const DateContext& dates, double row);
  static void addWarnings(const Entry& entry, const DateContext& dates, QStringList& warnings);
  static QString warningAbout(const ColumnMemory& memory, bool isDate, const DateContext& dates);

  std::vector<Entry> m_entries;
  std::vector<int> m_columns;  // element by element, one an entry
  QString m_failedVariable;
};

}  // namespace kelvarin
