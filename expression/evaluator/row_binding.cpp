#include "expression/evaluator/row_binding.h"

#include <algorithm>

#include "expression/evaluator/messages.h"
#include "host/contract/column_bytes.h"

namespace kelvarin {

namespace {

constexpr int kNullKeyIsZero = 1;
constexpr int kNullKeyStops = 2;

double numberOfKey(std::uint32_t key) {
  return isNullKey(key) ? kNullNumber : key;
}

// False when a null key must stop the run.
bool loadKey(std::uint32_t key, int nullKeyMode, double& number) {
  number = numberOfKey(key);
  if (!isNullKey(key)) {
    return true;
  }
  number = nullKeyMode == kNullKeyIsZero ? 0.0 : kNullNumber;
  return nullKeyMode != kNullKeyStops;
}

double elapsedTimeOfNumber(double number, const DateContext& dates) {
  return isNullNumber(number) && !dates.parameters().emptyETToNull ? 0.0 : number;
}

TextCell textOfNumber(double number, ShortestNumber& printed) {
  return {printed.print(number), isNullNumber(number)};
}

QString wordOfUnreadable(const DateContext& dates) {
  return QString::fromUtf8(isNullNumber(dates.unreadableAsElapsedTime()) ? messages::kMissing
                                                                         : messages::kZero);
}

TextCell textOfKey(std::uint32_t key, ShortestNumber& printed) {
  return isNullKey(key) ? TextCell{} : TextCell{printed.print(key), false};
}

}  // namespace

void RowBinding::clear() {
  m_entries.clear();
  m_columns.clear();
  m_failedVariable.clear();
}

Status<QString> RowBinding::bind(const std::vector<InputVariable>& inputs,
                                 const std::vector<std::size_t>& places, const OneRow& columns,
                                 const Expand& expand, int elementCount) {
  clear();
  m_columns.resize(inputs.size() * static_cast<std::size_t>(elementCount));
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    const auto found = columnsOf(inputs[i], columns, expand);
    if (!found) {
      return Failure{found.error()};
    }
    for (int element = 0; element < elementCount; ++element) {
      m_columns[static_cast<std::size_t>(element) * inputs.size() + i] =
          inputs[i].isVector ? (*found)[static_cast<std::size_t>(element)] : found->back();
    }
    m_entries.push_back(entryFor(inputs[i], places[i], *found, columns));
  }
  return Done{};
}

// All of them exist and have one type.
Result<std::vector<int>, QString> RowBinding::columnsOf(const InputVariable& input,
                                                        const OneRow& columns,
                                                        const Expand& expand) {
  const QStringList names = input.columns.isEmpty() ? QStringList{input.name()} : input.columns;
  std::vector<int> found;
  found.reserve(static_cast<std::size_t>(names.size()));
  for (const QString& unexpanded : names) {
    const QString name = expand(unexpanded);
    const int column = columns.getIndexOfColumn(name);
    if (column < 0) {
      return Failure{QString::fromUtf8(messages::kColumnNotFound).arg(name)};
    }
    found.push_back(column);
    if (columns.getMetaType(column) != columns.getMetaType(found.front())) {
      return Failure{QString::fromUtf8(messages::kColumnTypesDiffer)
                         .arg(columns.colName(found.front()), name)};
    }
  }
  return found;
}

RowBinding::Entry RowBinding::entryFor(const InputVariable& input, std::size_t place,
                                       const std::vector<int>& columnsOfInput,
                                       const OneRow& columns) {
  Entry entry;
  entry.route = routeOf(kindOf(input), columns.getMetaType(columnsOfInput.front()));
  entry.isVector = input.isVector;
  entry.place = place;
  entry.variable = input.name();
  entry.printed = std::make_unique<ShortestNumber>();
  if (entry.route == Route::textToNumber || entry.route == Route::textToDate) {
    const std::size_t remembered = input.isVector ? columnsOfInput.size() : 1;
    entry.memories.resize(remembered);
    for (std::size_t i = 0; i < remembered; ++i) {
      const int column = input.isVector ? columnsOfInput[i] : columnsOfInput.back();
      entry.memories[i].columnName = columns.colName(column);
    }
  }
  return entry;
}

RowBinding::Route RowBinding::routeOf(VariableKind kind, MetaTypeColumn column) {
  constexpr Route kRoutes[3][3] = {
      {Route::numberToNumber, Route::keyToNumber, Route::textToNumber},
      {Route::numberToText, Route::keyToText, Route::textToText},
      {Route::numberToDate, Route::keyToDate, Route::textToDate},
  };
  const int from = column == MetaTypeColumn::number ? 0 : column == MetaTypeColumn::key ? 1 : 2;
  return kRoutes[static_cast<int>(kind)][from];
}

bool RowBinding::givesText(Route route) {
  return route == Route::textToText || route == Route::numberToText || route == Route::keyToText;
}

bool RowBinding::load(const OneRow& row, int element, VariableStore& store,
                      const DateContext& dates, int nullKeyMode) {
  unsigned char* const* values = row.getAllColForRead();
  double* numbers = store.numbers();
  const int* column = m_columns.data() + static_cast<std::size_t>(element) * m_entries.size();
  for (Entry& entry : m_entries) {
    const unsigned char* bytes = values[*column++];
    if (entry.route == Route::numberToNumber) {
      numbers[entry.place] = numberFromBytes(bytes);
    } else if (!loadEntry(entry, bytes, element, store, dates, nullKeyMode)) {
      m_failedVariable = entry.variable;
      return false;
    }
  }
  return true;
}

bool RowBinding::loadEntry(Entry& entry, const unsigned char* bytes, int element,
                           VariableStore& store, const DateContext& dates, int nullKeyMode) {
  if (element > 0 && !entry.isVector && givesText(entry.route)) {
    return true;  // no expression can have changed it since the row's first element
  }
  double* numbers = store.numbers();
  switch (entry.route) {
    case Route::numberToNumber:
      numbers[entry.place] = numberFromBytes(bytes);
      return true;
    case Route::keyToNumber:
      return loadKey(keyFromBytes(bytes), nullKeyMode, numbers[entry.place]);
    case Route::textToNumber:
      numbers[entry.place] =
          numberOfText(entry.memory(element), textFromBytes(bytes), store.rowNumber());
      return true;
    case Route::textToText:
      store.text(entry.place) = {textFromBytes(bytes), isNullText(bytes)};
      return true;
    case Route::numberToText:
      store.text(entry.place) = textOfNumber(numberFromBytes(bytes), *entry.printed);
      return true;
    case Route::keyToText:
      store.text(entry.place) = textOfKey(keyFromBytes(bytes), *entry.printed);
      return true;
    case Route::textToDate:
      numbers[entry.place] =
          elapsedTimeOfText(entry.memory(element), bytes, dates, store.rowNumber());
      return true;
    case Route::numberToDate:
      numbers[entry.place] = elapsedTimeOfNumber(numberFromBytes(bytes), dates);
      return true;
    case Route::keyToDate:
      numbers[entry.place] = elapsedTimeOfNumber(numberOfKey(keyFromBytes(bytes)), dates);
      return true;
  }
  return true;
}

std::vector<NumberSource> RowBinding::numberSources(const DateContext& dates,
                                                    int nullKeyMode) const {
  using Origin = NumberSource::Origin;
  const double nullKey = nullKeyMode == kNullKeyIsZero ? 0.0 : kNullNumber;
  const double nullDate = elapsedTimeOfNumber(kNullNumber, dates);
  std::vector<NumberSource> sources;
  for (std::size_t i = 0; i < m_entries.size(); ++i) {
    const Entry& entry = m_entries[i];
    if (entry.route == Route::numberToNumber) {
      sources.push_back({entry.place, Origin::numbers, m_columns[i], kNullNumber});
    } else if (entry.route == Route::keyToNumber) {
      sources.push_back({entry.place, Origin::keys, m_columns[i], nullKey});
    } else if (entry.route == Route::numberToDate) {
      sources.push_back({entry.place, Origin::numbers, m_columns[i], nullDate});
    } else if (entry.route == Route::keyToDate) {
      sources.push_back({entry.place, Origin::keys, m_columns[i], nullDate});
    }
  }
  return sources;
}

bool RowBinding::hasEffects(int nullKeyMode) const {
  return std::any_of(m_entries.begin(), m_entries.end(), [&](const Entry& entry) {
    return entry.route == Route::textToNumber || entry.route == Route::textToDate ||
           (entry.route == Route::keyToNumber && nullKeyMode == kNullKeyStops);
  });
}

void RowBinding::ColumnMemory::refuse(std::string_view text, double row) {
  if (refusedCount++ == 0) {
    firstRefusedRow = row;
    firstRefused.assign(text);
  }
}

double RowBinding::numberOfText(ColumnMemory& memory, std::string_view text, double row) {
  if (const auto number = numberOfWholeText(text)) {
    return *number;
  }
  if (!isBlankText(text)) {
    memory.refuse(text, row);
  }
  return kNullNumber;
}

double RowBinding::elapsedTimeOfText(ColumnMemory& memory, const unsigned char* bytes,
                                     const DateContext& dates, double row) {
  const std::string_view text = textFromBytes(bytes);
  if (text.empty()) {
    return dates.parameters().emptyETToNull ? kNullNumber : 0.0;
  }
  if (!memory.hasLastDate || memory.lastDate != text) {
    memory.lastDate.assign(text);
    memory.hasLastDate = true;
    const std::optional<Instant> instant =
        dates.instantOf(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    memory.isLastDateReadable = instant.has_value();
    memory.lastElapsedTime =
        instant ? dates.elapsedTimeAt(*instant) : dates.unreadableAsElapsedTime();
  }
  if (!memory.isLastDateReadable && !isBlankText(text)) {
    memory.refuse(text, row);
  }
  return memory.lastElapsedTime;
}

QStringList RowBinding::warnings(const DateContext& dates) const {
  QStringList warnings;
  for (const Entry& entry : m_entries) {
    addWarnings(entry, dates, warnings);
  }
  return warnings;
}

QString RowBinding::warningAbout(const ColumnMemory& memory, bool isDate,
                                 const DateContext& dates) {
  const QString count = QString::number(memory.refusedCount);
  const QString row = QString::number(memory.firstRefusedRow, 'f', 0);
  if (!isDate) {
    return QString::fromUtf8(messages::kNotANumber).arg(memory.columnName, count, row);
  }
  constexpr qsizetype longestShown = 60;
  QString first = QString::fromStdString(memory.firstRefused);
  if (first.size() > longestShown) {
    first = first.first(longestShown) + QChar(0x2026);
  }
  return QString::fromUtf8(messages::kNotADate)
      .arg(memory.columnName, dates.format(), count, wordOfUnreadable(dates), first, row);
}

// A vector may have thousands of columns: the first few are named, the others counted.
void RowBinding::addWarnings(const Entry& entry, const DateContext& dates, QStringList& warnings) {
  constexpr int kNamedColumns = 5;
  const bool isDate = entry.route == Route::textToDate;
  int columns = 0;
  long long valuesOfOthers = 0;
  for (const ColumnMemory& memory : entry.memories) {
    if (memory.refusedCount == 0) {
      continue;
    }
    if (columns++ < kNamedColumns) {
      warnings += warningAbout(memory, isDate, dates);
    } else {
      valuesOfOthers += memory.refusedCount;
    }
  }
  if (columns <= kNamedColumns) {
    return;
  }
  const QString others = QString::number(columns - kNamedColumns);
  const QString values = QString::number(valuesOfOthers);
  warnings += isDate ? QString::fromUtf8(messages::kMoreNotDates)
                           .arg(others, entry.variable, values, wordOfUnreadable(dates))
                     : QString::fromUtf8(messages::kMoreNotNumbers)
                           .arg(others, entry.variable, values);
}

}  // namespace kelvarin
