#include "expression/evaluator/entry_columns.h"

#include <algorithm>

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

}  // namespace

EntryColumns::EntryColumns(const BatchProgram& program, const RowBatch& batch)
    : m_program(program), m_batch(batch), m_needsText(program.m_endOfTexts) {
  m_outputs.reserve(program.m_outputs.size());
  std::size_t parts = 0;
  bool hasTexts = false;
  for (const BatchProgram::Output& output : program.m_outputs) {
    const Output& added = m_outputs.emplace_back(chosen(output));
    parts = std::max(parts, added.parts.size());
    for (const Part& part : added.parts) {
      m_endOfColumns = std::max(m_endOfColumns, part.column + 1);
      hasTexts |= part.texts != nullptr;
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

// Null where there are several columns, or one without a dictionary of few entries.
const BatchColumn* EntryColumns::columnWithEntries(const std::vector<int>& columns) const {
  if (columns.size() != 1) {
    return nullptr;
  }
  const BatchColumn& column = m_batch.column(static_cast<std::size_t>(columns[0]));
  const std::size_t rowsOfEntries = column.dictionary().positions.size() * kRowsOfEntry;
  return column.dictionary().isThere() && rowsOfEntries <= m_batch.rowCount() ? &column : nullptr;
}

const BatchColumn* EntryColumns::columnOfText(std::size_t variable) const {
  const auto source = std::ranges::find(m_program.m_texts, variable, &TextSource::variable);
  return source == m_program.m_texts.end() || source->origin != TextSource::Origin::texts
             ? nullptr
             : columnWithEntries(source->columns);
}

EntryColumns::Numbers EntryColumns::numbersOf(const NumberSource& source) const {
  const BatchColumn* column = source.isConverted() ? columnWithEntries(source.columns) : nullptr;
  if (column == nullptr) {
    return {};
  }
  return {column->dictionary().codes, m_program.m_entryNumbers->of(source.variable, *column, [&] {
            return std::make_shared<const EntryNumbers>(source, *column,
                                                        m_program.m_functions.dates);
          })};
}

EntryColumns::Output EntryColumns::chosen(const BatchProgram::Output& output) const {
  Output chosen{.program = output.program, .parts = {}, .values = {}};
  if (output.entries == nullptr) {
    return chosen;
  }
  const EntryProgram& entries = *output.entries;
  EntryProgram::Variables taken = 0;
  for (std::size_t i = 0; i < entries.variables().size(); ++i) {
    const std::size_t variable = entries.variables()[i];
    const BatchColumn* column = columnOfText(variable);
    if (column == nullptr) {
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
  const ColumnProgram* rest = taken == 0 ? nullptr : entries.rest(taken);
  if (rest == nullptr) {
    return {.program = output.program, .parts = {}, .values = {}};
  }
  chosen.program = rest;
  return chosen;
}

void EntryColumns::gather(int output, const StoredRows& rows, const double** numbers,
                          const ColumnText** texts) {
  const std::vector<Part>& parts = m_outputs[static_cast<std::size_t>(output)].parts;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const Part& part = parts[i];
    const std::size_t begin = i * m_program.rowsAtOnce();
    if (part.numbers != nullptr) {
      numbers[part.column] = m_numbers.get() + begin;
      gatherValues(part.codes, rows, part.numbers, m_numbers.get() + begin);
    } else {
      texts[part.column] = m_texts.get() + begin;
      gatherValues(part.codes, rows, part.texts, m_texts.get() + begin);
    }
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
