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

TextCell textOfKey(std::uint32_t key, ShortestNumber& printed) {
  return isNullKey(key) ? TextCell{} : TextCell{printed.print(key), false};
}

}  // namespace

void RowBinding::clear() {
  m_entries.clear();
  m_columns.clear();
  m_failedVariable.clear();
}

Status<BindingFailure> RowBinding::bind(const std::vector<InputVariable>& inputs,
                                        const std::vector<std::size_t>& indices,
                                        const OneRow& columns, const Expand& expand,
                                        int elementCount) {
  clear();
  Status<BindingFailure> status = Done{};
  std::vector<std::vector<int>> columnsOfEntries;
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    auto found = columnsOf(inputs[i], columns, expand);
    if (found) {
      m_entries.push_back(entryFor(inputs[i], indices[i], *found, columns));
      columnsOfEntries.push_back(std::move(*found));
    } else if (status) {
      BindingFailure failure = found.error();
      failure.input = static_cast<int>(i);
      status = Failure{std::move(failure)};
    }
  }
  for (int element = 0; element < elementCount; ++element) {
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
      const std::vector<int>& ofEntry = columnsOfEntries[i];
      m_columns.push_back(m_entries[i].isVector ? ofEntry[static_cast<std::size_t>(element)]
                                                : ofEntry.back());
    }
  }
  return status;
}

// All of them exist and have one type.
Result<std::vector<int>, BindingFailure> RowBinding::columnsOf(const InputVariable& input,
                                                               const OneRow& columns,
                                                               const Expand& expand) {
  const QStringList names = input.columns.isEmpty() ? QStringList{input.name()} : input.columns;
  std::vector<int> found;
  found.reserve(static_cast<std::size_t>(names.size()));
  for (const QString& unexpanded : names) {
    const QString name = expand(unexpanded);
    const int column = columns.getIndexOfColumn(name);
    if (column < 0) {
      return Failure{BindingFailure{BindingFailure::Kind::columnNotFound, -1, name,
                                    messages::columnNotFound(name)}};
    }
    found.push_back(column);
    if (columns.getMetaType(column) != columns.getMetaType(found.front())) {
      return Failure{
          BindingFailure{BindingFailure::Kind::columnTypesDiffer, -1, name,
                         messages::columnTypesDiffer(columns.colName(found.front()), name)}};
    }
  }
  return found;
}

RowBinding::Entry RowBinding::entryFor(const InputVariable& input, std::size_t index,
                                       const std::vector<int>& columnsOfInput,
                                       const OneRow& columns) {
  Entry entry;
  entry.route = routeOf(kindOf(input), columns.getMetaType(columnsOfInput.front()));
  entry.isVector = input.isVector;
  entry.index = index;
  entry.variable = input.name();
  entry.printed = std::make_unique<ShortestNumber>();
  if (entry.route == Route::textToNumber || entry.route == Route::textToDate) {
    const std::size_t remembered = input.isVector ? columnsOfInput.size() : 1;
    for (std::size_t i = 0; i < remembered; ++i) {
      const int column = input.isVector ? columnsOfInput[i] : columnsOfInput.back();
      entry.texts.emplace_back(columns.colName(column));
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

bool RowBinding::yieldsText(Route route) {
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
      numbers[entry.index] = numberFromBytes(bytes);
    } else if (!loadEntry(entry, bytes, element, store, dates, nullKeyMode)) {
      m_failedVariable = entry.variable;
      return false;
    }
  }
  return true;
}

bool RowBinding::loadEntry(Entry& entry, const unsigned char* bytes, int element,
                           VariableStore& store, const DateContext& dates, int nullKeyMode) {
  if (element > 0 && !entry.isVector && yieldsText(entry.route)) {
    return true;  // no expression can have changed it since the row's first element
  }
  double* numbers = store.numbers();
  switch (entry.route) {
    case Route::numberToNumber:
      numbers[entry.index] = numberFromBytes(bytes);
      return true;
    case Route::keyToNumber:
      return loadKey(keyFromBytes(bytes), nullKeyMode, numbers[entry.index]);
    case Route::textToNumber:
      numbers[entry.index] = entry.text(element).numberOf(textFromBytes(bytes), store.rowNumber());
      return true;
    case Route::textToText:
      store.text(entry.index) = {textFromBytes(bytes), isNullText(bytes)};
      return true;
    case Route::numberToText:
      store.text(entry.index) = textOfNumber(numberFromBytes(bytes), *entry.printed);
      return true;
    case Route::keyToText:
      store.text(entry.index) = textOfKey(keyFromBytes(bytes), *entry.printed);
      return true;
    case Route::textToDate:
      numbers[entry.index] =
          entry.text(element).elapsedTimeOf(textFromBytes(bytes), dates, store.rowNumber());
      return true;
    case Route::numberToDate:
      numbers[entry.index] = elapsedTimeOfNumber(numberFromBytes(bytes), dates);
      return true;
    case Route::keyToDate:
      numbers[entry.index] = elapsedTimeOfNumber(numberOfKey(keyFromBytes(bytes)), dates);
      return true;
  }
  return true;
}

std::vector<NumberSource> RowBinding::numberSources(const DateContext& dates,
                                                    int nullKeyMode) const {
  using Origin = NumberSource::Origin;
  const double nullKey = nullKeyMode == kNullKeyIsZero ? 0.0 : kNullNumber;
  const double nullDate = elapsedTimeOfNumber(kNullNumber, dates);
  std::vector<NumberSource> sources(1);  // the row number
  for (std::size_t i = 0; i < m_entries.size(); ++i) {
    const Entry& entry = m_entries[i];
    if (entry.route == Route::numberToNumber) {
      sources.push_back({entry.index, Origin::numbers, kNullNumber, columnsOf(i)});
    } else if (entry.route == Route::keyToNumber) {
      sources.push_back({entry.index, Origin::keys, nullKey, columnsOf(i)});
    } else if (entry.route == Route::numberToDate) {
      sources.push_back({entry.index, Origin::numbers, nullDate, columnsOf(i)});
    } else if (entry.route == Route::keyToDate) {
      sources.push_back({entry.index, Origin::keys, nullDate, columnsOf(i)});
    } else if (entry.route == Route::textToNumber) {
      sources.push_back({entry.index, Origin::textsOfNumbers, kNullNumber, columnsOf(i)});
    } else if (entry.route == Route::textToDate) {
      sources.push_back({entry.index, Origin::textsOfDates, kNullNumber, columnsOf(i)});
    }
  }
  return sources;
}

std::vector<TextSource> RowBinding::textSources() const {
  using Origin = TextSource::Origin;
  std::vector<TextSource> sources;
  for (std::size_t i = 0; i < m_entries.size(); ++i) {
    const Route route = m_entries[i].route;
    if (yieldsText(route)) {
      const Origin origin = route == Route::textToText     ? Origin::texts
                            : route == Route::numberToText ? Origin::numbers
                                                           : Origin::keys;
      sources.push_back({m_entries[i].index, origin, columnsOf(i)});
    }
  }
  return sources;
}

std::vector<int> RowBinding::columnsOf(std::size_t entry) const {
  const int elements = elementsOf(m_entries[entry]);
  std::vector<int> columns;
  columns.reserve(static_cast<std::size_t>(elements));
  for (int element = 0; element < elements; ++element) {
    columns.push_back(columnOf(entry, element));
  }
  return columns;
}

long long RowBinding::refusedCount() const {
  long long count = 0;
  for (const Entry& entry : m_entries) {
    for (const TextColumn& text : entry.texts) {
      count += text.refusedCount();
    }
  }
  return count;
}

std::vector<int> RowBinding::columnsOfStoppingKeys(int nullKeyMode) const {
  std::vector<int> columns;
  for (std::size_t i = 0; i < m_entries.size(); ++i) {
    if (m_entries[i].route == Route::keyToNumber && nullKeyMode == kNullKeyStops) {
      const std::vector<int> ofEntry = columnsOf(i);
      columns.insert(columns.end(), ofEntry.begin(), ofEntry.end());
    }
  }
  return columns;
}

QStringList RowBinding::warnings(const DateContext& dates) const {
  QStringList warnings;
  for (const Entry& entry : m_entries) {
    addWarnings(entry, dates, warnings);
  }
  return warnings;
}

// A vector may have thousands of columns: the first few are named, the others counted.
void RowBinding::addWarnings(const Entry& entry, const DateContext& dates, QStringList& warnings) {
  constexpr int kMaxNamed = 5;
  const bool isDate = entry.route == Route::textToDate;
  int columns = 0;
  long long valuesOfOthers = 0;
  for (const TextColumn& text : entry.texts) {
    if (!text.hasRefused()) {
      continue;
    }
    if (columns++ < kMaxNamed) {
      warnings += isDate ? text.warningAboutDates(dates) : text.warningAboutNumbers();
    } else {
      valuesOfOthers += text.refusedCount();
    }
  }
  if (columns <= kMaxNamed) {
    return;
  }
  const int others = columns - kMaxNamed;
  warnings += isDate ? messages::moreNotDates(others, entry.variable, valuesOfOthers,
                                              isNullNumber(dates.unreadableAsElapsedTime()))
                     : messages::moreNotNumbers(others, entry.variable, valuesOfOthers);
}

}  // namespace kelvarin
