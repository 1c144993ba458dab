#include "expression/evaluator/row_binding.h"

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
  m_failedVariable.clear();
}

Status<QString> RowBinding::bind(const std::vector<InputVariable>& inputs,
                                 const std::vector<std::size_t>& places, const OneRow& columns,
                                 const Expand& expand) {
  m_entries.clear();
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    const InputVariable& input = inputs[i];
    const QStringList names = input.columns.isEmpty() ? QStringList{input.name()} : input.columns;
    QString firstName;
    int firstColumn = -1;
    int column = -1;
    QString name;
    for (const QString& unexpanded : names) {
      name = expand(unexpanded);
      column = columns.getIndexOfColumn(name);
      if (column < 0) {
        return Failure{QString::fromUtf8(messages::kColumnNotFound).arg(name)};
      }
      if (firstColumn < 0) {
        firstColumn = column;
        firstName = name;
      }
      if (columns.getMetaType(column) != columns.getMetaType(firstColumn)) {
        return Failure{QString::fromUtf8(messages::kColumnTypesDiffer).arg(firstName, name)};
      }
    }
    Entry& entry = m_entries.emplace_back();
    entry.route = routeOf(kindOf(input), columns.getMetaType(column));
    entry.column = column;
    entry.place = places[i];
    entry.variable = input.name();
    entry.columnName = name;
    entry.printed = std::make_unique<ShortestNumber>();
  }
  return Done{};
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

bool RowBinding::load(const OneRow& row, VariableStore& store, const DateContext& dates,
                      int nullKeyMode) {
  unsigned char* const* values = row.getAllColForRead();
  double* numbers = store.numbers();
  for (Entry& entry : m_entries) {
    const unsigned char* bytes = values[entry.column];
    if (entry.route == Route::numberToNumber) {
      numbers[entry.place] = numberFromBytes(bytes);
    } else if (!loadEntry(entry, bytes, store, dates, nullKeyMode)) {
      m_failedVariable = entry.variable;
      return false;
    }
  }
  return true;
}

bool RowBinding::loadEntry(Entry& entry, const unsigned char* bytes, VariableStore& store,
                           const DateContext& dates, int nullKeyMode) {
  double* numbers = store.numbers();
  switch (entry.route) {
    case Route::numberToNumber:
      numbers[entry.place] = numberFromBytes(bytes);
      return true;
    case Route::keyToNumber:
      return loadKey(keyFromBytes(bytes), nullKeyMode, numbers[entry.place]);
    case Route::textToNumber:
      numbers[entry.place] = numberOfText(entry, textFromBytes(bytes), store.rowNumber());
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
      numbers[entry.place] = elapsedTimeOfText(entry, bytes, dates);
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

double RowBinding::numberOfText(Entry& entry, std::string_view text, double row) {
  if (const auto number = numberOfWholeText(text)) {
    return *number;
  }
  if (!isBlankText(text)) {
    entry.firstRefusedRow = entry.refusedCount == 0 ? row : entry.firstRefusedRow;
    ++entry.refusedCount;
  }
  return kNullNumber;
}

double RowBinding::elapsedTimeOfText(Entry& entry, const unsigned char* bytes,
                                     const DateContext& dates) {
  const std::string_view text = textFromBytes(bytes);
  if (text.empty()) {
    return dates.parameters().emptyETToNull ? kNullNumber : 0.0;
  }
  if (!entry.hasLastDate || entry.lastDate != text) {
    entry.lastDate.assign(text);
    entry.hasLastDate = true;
    entry.lastElapsedTime =
        dates.toElapsedTime(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
  }
  return entry.lastElapsedTime;
}

QStringList RowBinding::warnings() const {
  QStringList warnings;
  for (const Entry& entry : m_entries) {
    if (entry.refusedCount > 0) {
      warnings += QString::fromUtf8(messages::kNotANumber)
                      .arg(entry.columnName, QString::number(entry.refusedCount),
                           QString::number(entry.firstRefusedRow, 'f', 0));
    }
  }
  return warnings;
}

}  // namespace kelvarin
