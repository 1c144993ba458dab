#include "expression/evaluator/entry_columns.h"

#include <algorithm>
#include <functional>

#include "expression/backends/string_values.h"
#include "host/contract/late_texts.h"
#include "jit/arithmetic.h"

namespace kelvarin {

namespace {

// To compute an entry must pay for looking it up.
constexpr std::size_t kRowsOfEntry = 2;

template <typename Value>
void gatherValues(const std::uint16_t* codes, const StoredRows& rows, const Value* ofEntries,
                  Value* values) {
  if (rows.selection == nullptr) {
    std::transform(codes + rows.first, codes + rows.first + rows.count, values,
                   [ofEntries](std::uint16_t code) { return ofEntries[code]; });
    return;
  }
  std::transform(rows.selection, rows.selection + rows.count, values,
                 [codes, ofEntries](std::uint32_t row) { return ofEntries[codes[row]]; });
}

bool isEquality(Operation comparison) {
  return comparison == Operation::equal || comparison == Operation::notEqual;
}

// The String Parser compares the null text by the bytes that it has there.
std::int8_t orderOfNull(std::string_view other) {
  const int order = kNullTextBytes.compare(other);
  return static_cast<std::int8_t>((order > 0) - (order < 0));
}

template <typename Compare>
void decideBy(Compare compare, std::span<const std::int8_t> orders, double* truths) {
  std::ranges::transform(orders, truths, [compare](std::int8_t order) {
    return jit::numberOf(compare(order, std::int8_t{0}));
  });
}

void decide(Operation comparison, std::span<const std::int8_t> orders, double* truths) {
  switch (comparison) {
    case Operation::less:
      return decideBy(std::less<>(), orders, truths);
    case Operation::lessOrEqual:
      return decideBy(std::less_equal<>(), orders, truths);
    case Operation::greater:
      return decideBy(std::greater<>(), orders, truths);
    case Operation::greaterOrEqual:
      return decideBy(std::greater_equal<>(), orders, truths);
    case Operation::equal:
      return decideBy(std::equal_to<>(), orders, truths);
    default:
      return decideBy(std::not_equal_to<>(), orders, truths);
  }
}

}  // namespace

EntryColumns::EntryColumns(const BatchProgram& program, const RowBatch& batch)
    : m_program(program), m_batch(batch), m_needsText(program.m_endOfTexts) {
  m_outputs.reserve(program.m_outputs.size());
  std::size_t parts = 0;
  bool hasTexts = false;
  for (const BatchProgram::Output& output : program.m_outputs) {
    const Output& added = m_outputs.emplace_back(chosen(output));
    parts = std::max(parts, added.parts.size() + added.comparisons.size());
    for (const Part& part : added.parts) {
      m_endOfColumns = std::max(m_endOfColumns, part.column + 1);
      hasTexts |= part.texts != nullptr;
    }
    for (const Comparison& comparison : added.comparisons) {
      m_endOfColumns = std::max(m_endOfColumns, comparison.column + 1);
    }
    if (added.program != nullptr) {
      noteTexts(*added.program);
    }
  }
  m_numbers = std::make_unique_for_overwrite<double[]>(parts * program.rowsAtOnce());
  m_texts = std::make_unique<ColumnText[]>(hasTexts ? parts * program.rowsAtOnce() : 0);
  if (program.convertsTexts()) {
    for (const NumberSource& source : program.m_numbers) {
      m_variables.push_back(numbersOf(source));
    }
  }
}

// The columns of parts are none of the variables.
void EntryColumns::noteTexts(const ColumnProgram& program) {
  for (const std::size_t variable : program.textVariables()) {
    if (variable < m_needsText.size()) {
      m_needsText[variable] = true;
    }
  }
}

// Looking up pays.
bool EntryColumns::hasFewEntries(const BatchColumn& column) const {
  const std::size_t rowsOfEntries = column.dictionary().positions.size() * kRowsOfEntry;
  return column.dictionary().isThere() && rowsOfEntries <= m_batch.rowCount();
}

// Null where it is no text, or there are several columns.
const BatchColumn* EntryColumns::columnOfText(std::size_t variable) const {
  const auto source = std::ranges::find(m_program.m_texts, variable, &TextSource::variable);
  return source == m_program.m_texts.end() || source->origin != TextSource::Origin::texts ||
                 source->columns.size() != 1
             ? nullptr
             : &m_batch.column(static_cast<std::size_t>(source->columns[0]));
}

EntryColumns::Numbers EntryColumns::numbersOf(const NumberSource& source) const {
  if (!source.isConverted() || source.columns.size() != 1) {
    return {};
  }
  const BatchColumn* column = &m_batch.column(static_cast<std::size_t>(source.columns[0]));
  if (!hasFewEntries(*column)) {
    return {};
  }
  return {column->dictionary().codes, m_program.m_entryNumbers->of(source.variable, *column, [&] {
            return std::make_shared<const EntryNumbers>(source, *column,
                                                        m_program.m_functions.dates);
          })};
}

void EntryColumns::compare(const EntryProgram& entries, std::size_t variable,
                           const BatchColumn& column, Output& chosen) const {
  const LateTexts::Rows rows{column.firstLate(), m_batch.selection(), m_batch.rowCount()};
  for (std::size_t i = 0; i < entries.comparisons().size(); ++i) {
    const EntryProgram::Comparison& comparison = entries.comparisons()[i];
    if (comparison.variable == variable) {
      Comparison& compared = chosen.comparisons.emplace_back(
          Comparison{entries.columnOfComparison(i), comparison.operation, {}});
      compared.orders.resize(rows.count);
      column.lateTexts()->compare(comparison.bytes, isEquality(comparison.operation),
                                  orderOfNull(comparison.bytes), rows, compared.orders.data());
    }
  }
}

EntryColumns::Output EntryColumns::chosen(const BatchProgram::Output& output) const {
  Output chosen{.program = output.program, .parts = {}, .comparisons = {}, .values = {}};
  if (output.entries == nullptr) {
    return chosen;
  }
  const EntryProgram& entries = *output.entries;
  EntryProgram::Variables taken = 0;
  EntryProgram::Variables compared = 0;
  for (std::size_t i = 0; i < entries.variables().size(); ++i) {
    const std::size_t variable = entries.variables()[i];
    const BatchColumn* column = columnOfText(variable);
    if (column != nullptr && column->isLate()) {
      compared |= EntryProgram::Variables{1} << i;
      compare(entries, variable, *column, chosen);
      continue;
    }
    if (column == nullptr || !hasFewEntries(*column)) {
      continue;
    }
    std::shared_ptr<const EntryValues> values = output.entryValues->of(variable, *column, [&] {
      return std::make_shared<const EntryValues>(entries, variable, *column, m_program.m_functions,
                                                 m_program.m_run);
    });
    if (!values->areKnown()) {
      continue;
    }
    taken |= EntryProgram::Variables{1} << i;
    for (std::size_t part = 0; part < entries.parts().size(); ++part) {
      if (entries.parts()[part].variable == variable) {
        chosen.parts.push_back({entries.columnOf(part), column->dictionary().codes,
                                values->numbers(part), values->texts(part)});
      }
    }
    chosen.values.push_back(std::move(values));
  }
  const ColumnProgram* rest = taken == 0 && compared == 0 ? nullptr : entries.rest(taken, compared);
  if (rest == nullptr) {
    return {.program = output.program, .parts = {}, .comparisons = {}, .values = {}};
  }
  chosen.program = rest;
  return chosen;
}

void EntryColumns::gather(int output, std::size_t begin, const StoredRows& rows,
                          const double** numbers, const ColumnText** texts) {
  const Output& chosen = m_outputs[static_cast<std::size_t>(output)];
  std::size_t next = 0;
  for (const Part& part : chosen.parts) {
    const std::size_t at = next++ * m_program.rowsAtOnce();
    if (part.numbers != nullptr) {
      numbers[part.column] = m_numbers.get() + at;
      gatherValues(part.codes, rows, part.numbers, m_numbers.get() + at);
    } else {
      texts[part.column] = m_texts.get() + at;
      gatherValues(part.codes, rows, part.texts, m_texts.get() + at);
    }
  }
  for (const Comparison& comparison : chosen.comparisons) {
    double* truths = m_numbers.get() + next++ * m_program.rowsAtOnce();
    numbers[comparison.column] = truths;
    decide(comparison.operation, {comparison.orders.data() + begin, rows.count}, truths);
  }
}

std::optional<std::size_t> EntryColumns::gatherNumbers(std::size_t index, const StoredRows& rows,
                                                       double* numbers) const {
  const Numbers& variable = m_variables[index];
  if (variable.ofEntries == nullptr) {
    return std::nullopt;
  }
  gatherValues(variable.codes, rows, variable.ofEntries->numbers(), numbers);
  if (!variable.ofEntries->hasRefused()) {
    return rows.count;
  }
  std::size_t row = 0;
  while (row < rows.count && !variable.ofEntries->isRefused(variable.codes[rows.at(row)])) {
    ++row;
  }
  return row;
}

}  // namespace kelvarin
