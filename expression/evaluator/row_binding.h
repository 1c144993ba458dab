// Carries the columns of a row into the variables of expressions.
//
// A number variable takes numbers, keys and texts that are numbers; a text variable takes texts and
// the shortest text of numbers and keys; a date variable takes date texts as elapsed times, and
// numbers as they are.
// Errors: statuses; nothing is logged.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <QString>
#include <QStringList>

#include "base/result.h"
#include "expression/backends/variable_store.h"
#include "expression/dates/date_context.h"
#include "expression/evaluator/expression_value.h"
#include "expression/evaluator/number_text.h"
#include "expression/evaluator/text_column.h"
#include "expression/evaluator/variables.h"
#include "host/contract/one_row.h"

namespace kelvarin {

// Why variables cannot be bound to columns.
struct BindingFailure {
  enum class Kind { columnNotFound, columnTypesDiffer };

  Kind kind = Kind::columnNotFound;
  int input = -1;  // the index of the variable
  QString column;  // with graph parameters replaced
  QString text;    // to log
};

// Where the numbers of a variable come from when whole batches are evaluated.
struct NumberSource {
  enum class Origin : unsigned char { rowNumber, numbers, keys, textsOfNumbers, textsOfDates };

  std::size_t variable = 0;  // its index in the store
  Origin origin = Origin::rowNumber;
  double ofNull = kNullNumber;  // what stands for a missing value
  std::vector<int> columns;     // one, or of each element of a vector; none for the row number

  // Values that are none are counted, whether or not an expression uses the variable.
  bool isConverted() const {
    return origin == Origin::textsOfNumbers || origin == Origin::textsOfDates;
  }
};

// The same for the texts of a variable: texts as they are, or the shortest ones of numbers or keys.
struct TextSource {
  enum class Origin : unsigned char { texts, numbers, keys };

  std::size_t variable = 0;
  Origin origin = Origin::texts;
  std::vector<int> columns;
};

class RowBinding {
 public:
  using Expand = std::function<QString(const QString&)>;

  void clear();
  // `indices` holds the index of each input variable in the store. A vector variable has
  // `elementCount` columns. After a failure the variables whose columns were found are bound.
  Status<BindingFailure> bind(const std::vector<InputVariable>& inputs,
                              const std::vector<std::size_t>& indices, const OneRow& columns,
                              const Expand& expand, int elementCount);

  // Loads the columns of one element; the first of a row is element 0. False when a null key must
  // stop the run; failedVariable() names it.
  bool load(const OneRow& row, int element, VariableStore& store, const DateContext& dates,
            int nullKeyMode);
  const QString& failedVariable() const { return m_failedVariable; }

  // What load() would load, every element of a vector included, without its effects: what it is,
  // and its values in the same order, which are appended.
  std::vector<ShownVariable> shownVariables(const OneRow& columns) const;
  void appendValues(const OneRow& row, const DateContext& dates, int nullKeyMode,
                    std::vector<ExpressionValue>& values) const;

  // Of the row number and all variables that are numbers.
  std::vector<NumberSource> numberSources(const DateContext& dates, int nullKeyMode) const;
  std::vector<TextSource> textSources() const;
  // The values so far that were no numbers or no dates.
  long long refusedCount() const;
  // The columns of keys in which a null stops the run.
  std::vector<int> columnsOfStoppingKeys(int nullKeyMode) const;

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
  struct Entry {
    Route route = Route::numberToNumber;
    bool isVector = false;
    std::size_t index = 0;  // of the variable in the store
    QString variable;
    // Of each element, or one, where texts enter as numbers or as elapsed times.
    std::vector<TextColumn> texts;
    std::unique_ptr<ShortestNumber> printed;

    TextColumn& text(int element) {
      return texts[isVector ? static_cast<std::size_t>(element) : 0];
    }
  };

  static Result<std::vector<int>, BindingFailure> columnsOf(const InputVariable& input,
                                                            const OneRow& columns,
                                                            const Expand& expand);
  static Entry entryFor(const InputVariable& input, std::size_t index,
                        const std::vector<int>& columnsOfInput, const OneRow& columns);
  static Route routeOf(VariableKind kind, MetaTypeColumn column);
  static bool yieldsText(Route route);
  static ExpressionValue valueOf(Route route, const unsigned char* bytes, const DateContext& dates,
                                 int nullKeyMode);
  static ExpressionValue convertedValueOf(Route route, const unsigned char* bytes,
                                          const DateContext& dates, int nullKeyMode);
  static bool loadEntry(Entry& entry, const unsigned char* bytes, int element, VariableStore& store,
                        const DateContext& dates, int nullKeyMode);
  std::vector<int> columnsOf(std::size_t entry) const;
  int elementsOf(const Entry& entry) const { return entry.isVector ? elementCount() : 1; }
  int columnOf(std::size_t entry, int element) const {
    return m_columns[static_cast<std::size_t>(element) * m_entries.size() + entry];
  }
  int elementCount() const {
    return m_entries.empty() ? 0 : static_cast<int>(m_columns.size() / m_entries.size());
  }
  static void addWarnings(const Entry& entry, const DateContext& dates, QStringList& warnings);

  std::vector<Entry> m_entries;
  std::vector<int> m_columns;  // element by element, one an entry
  QString m_failedVariable;
};

}  // namespace kelvarin
