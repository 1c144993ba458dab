#include "expression/evaluator/batch_evaluation.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "base/number_texts.h"
#include "expression/evaluator/number_text.h"

namespace kelvarin {

BatchEvaluation::BatchEvaluation(const BatchProgram& program, const RowBatch& batch,
                                 long long firstRow)
    : m_program(program),
      m_batch(batch),
      m_firstRow(static_cast<double>(firstRow)),
      m_entries(program, batch),
      m_numbers(std::max(program.m_endOfNumbers, m_entries.endOfColumns())),
      m_texts(std::max(program.m_endOfTexts, m_entries.endOfColumns())),
      m_buffers(std::make_unique_for_overwrite<double[]>((program.m_numbers.size() + 1) *
                                                         program.rowsAtOnce())),
      m_textBuffers(std::make_unique<ColumnText[]>(program.m_texts.size() * program.rowsAtOnce())) {
  if (program.usesColumnPrograms()) {
    m_columns.emplace(program.m_functions);
  }
  if (program.convertsTexts()) {
    m_convertedTexts.assign(program.m_numbers.size(), TextColumn({}));
  }
}

bool BatchEvaluation::load(std::size_t begin, std::size_t end) {
  if (m_program.isStopped()) [[unlikely]] {
    m_rowCount = 0;
    return false;
  }
  m_begin = begin;
  m_rowCount = std::min(end - begin, m_program.rowsAtOnce());
  m_firstStoredRow = m_batch.storedRow(begin);
  const bool isContiguous =
      m_batch.storedRow(begin + m_rowCount - 1) == m_firstStoredRow + m_rowCount - 1;
  m_selection = isContiguous ? nullptr : m_batch.selection() + begin;
  m_printedNumbers.clear();
  for (std::size_t i = 0; i < m_program.m_numbers.size(); ++i) {
    loadNumber(i, 0);
  }
  for (std::size_t i = 0; i < m_program.m_texts.size(); ++i) {
    loadText(i, 0);
  }
  return m_rowCount > 0;
}

void BatchEvaluation::loadElement(int element) {
  for (std::size_t i = 0; i < m_program.m_numbers.size(); ++i) {
    if (m_program.m_numbers[i].columns.size() > 1) {
      loadNumber(i, element);
    }
  }
  for (std::size_t i = 0; i < m_program.m_texts.size(); ++i) {
    if (m_program.m_texts[i].columns.size() > 1) {
      loadText(i, element);
    }
  }
}

void BatchEvaluation::loadNumber(std::size_t index, int element) {
  const NumberSource& source = m_program.m_numbers[index];
  const double*& numbers = m_numbers[source.variable];
  if (source.origin == NumberSource::Origin::rowNumber) {
    double* rowNumbers = buffer(index);
    std::iota(rowNumbers, rowNumbers + m_rowCount, m_firstRow + static_cast<double>(m_begin));
    numbers = rowNumbers;
    return;
  }
  const std::size_t ofElement = source.columns.size() > 1 ? static_cast<std::size_t>(element) : 0;
  const BatchColumn& column = m_batch.column(static_cast<std::size_t>(source.columns[ofElement]));
  if (source.isConverted()) {
    numbers = convertedTexts(index, column);
  } else if (source.origin == NumberSource::Origin::keys) {
    numbers = converted(index, column.keys(), [&source](std::uint32_t key) {
      return isNullKey(key) ? source.ofNull : static_cast<double>(key);
    });
  } else if (!isNullNumber(source.ofNull)) {
    numbers = converted(index, column.numbers(), [&source](double number) {
      return isNullNumber(number) ? source.ofNull : number;
    });
  } else if (isContiguous()) {
    numbers = column.numbers() + m_firstStoredRow;
  } else {
    numbers = converted(index, column.numbers(), [](double number) { return number; });
  }
}

// Values of selected rows are gathered, so that the code for columns gets them one after another.
template <typename Value, typename Convert>
const double* BatchEvaluation::converted(std::size_t index, const Value* values, Convert convert) {
  double* numbers = buffer(index);
  if (isContiguous()) {
    std::transform(values + m_firstStoredRow, values + m_firstStoredRow + m_rowCount, numbers,
                   convert);
    return numbers;
  }
  for (std::size_t i = 0; i < m_rowCount; ++i) {
    numbers[i] = convert(values[m_selection[i]]);
  }
  return numbers;
}

// Up to the first text that is to be counted.
const double* BatchEvaluation::convertedTexts(std::size_t index, const BatchColumn& column) {
  double* numbers = buffer(index);
  if (const auto count = m_entries.gatherNumbers(index, storedRows(), numbers)) {
    keepFirst(*count);
    return numbers;
  }
  const NumberSource& source = m_program.m_numbers[index];
  TextColumn& texts = m_convertedTexts[index];
  for (std::size_t i = 0; i < m_rowCount; ++i) {
    if (convertText(source, column.text(storedRow(i)), m_program.m_functions.dates, texts,
                    numbers[i])) [[unlikely]] {
      keepFirst(i);
    }
  }
  return numbers;
}

void BatchEvaluation::loadText(std::size_t index, int element) {
  const TextSource& source = m_program.m_texts[index];
  if (!m_entries.needsText(source.variable)) {
    return;
  }
  const std::size_t ofElement = source.columns.size() > 1 ? static_cast<std::size_t>(element) : 0;
  const BatchColumn& column = m_batch.column(static_cast<std::size_t>(source.columns[ofElement]));
  ColumnText* texts = m_textBuffers.get() + index * m_program.rowsAtOnce();
  m_texts[source.variable] = texts;
  switch (source.origin) {
    case TextSource::Origin::texts:
      return loadTexts(column, texts);
    case TextSource::Origin::numbers:
      return printNumbers(column.numbers(), texts);
    case TextSource::Origin::keys:
      return printKeys(column.keys(), texts);
  }
}

void BatchEvaluation::loadTexts(const BatchColumn& column, ColumnText* texts) const {
  for (std::size_t i = 0; i < m_rowCount; ++i) {
    texts[i] = columnText(column.text(storedRow(i)));
  }
}

void BatchEvaluation::printNumbers(const double* numbers, ColumnText* texts) {
  std::array<double, kNumbersPrinted> gathered;
  std::array<NumberText, kNumbersPrinted> printed;
  for (std::size_t begin = 0; begin < m_rowCount; begin += kNumbersPrinted) {
    const std::size_t count = std::min(kNumbersPrinted, m_rowCount - begin);
    for (std::size_t i = 0; i < count; ++i) {
      gathered[i] = numbers[storedRow(begin + i)];
    }
    kelvarin::printNumbers(gathered.data(), count, printed.data());
    for (std::size_t i = 0; i < count; ++i) {
      texts[begin + i] = printed[i].size == 0
                             ? ColumnText()
                             : ColumnText(m_printedNumbers.copy(printed[i].text()));
    }
  }
}

void BatchEvaluation::printKeys(const std::uint32_t* keys, ColumnText* texts) {
  ShortestNumber printed;
  for (std::size_t i = 0; i < m_rowCount; ++i) {
    const std::uint32_t key = keys[storedRow(i)];
    texts[i] =
        isNullKey(key) ? ColumnText() : ColumnText(m_printedNumbers.copy(printed.print(key)));
  }
}

void BatchEvaluation::evaluateColumns(int output) {
  if (m_program.isStopped()) [[unlikely]] {
    m_rowCount = 0;
    return;
  }
  m_entries.gather(output, m_begin, storedRows(), m_numbers.data(), m_texts.data());
  m_rowCount = m_columns->evaluate(m_entries.program(output), {m_numbers.data(), m_texts.data()},
                                   m_rowCount);
}

const double* BatchEvaluation::numbers(int output) {
  if (outputAt(output).program != nullptr) {
    evaluateColumns(output);
    return m_columns->numbers();
  }
  double* results = buffer(m_program.m_numbers.size());
  evaluateInto(output, results);
  return results;
}

const ColumnText* BatchEvaluation::texts(int output) {
  evaluateColumns(output);
  return m_columns->texts();
}

const double* BatchEvaluation::truths(int output) {
  if (!m_program.yieldsText(output)) {
    return numbers(output);
  }
  const ColumnText* ofOutput = texts(output);
  double* truths = buffer(m_program.m_numbers.size());
  std::transform(ofOutput, ofOutput + m_rowCount, truths,
                 [](const ColumnText& text) { return text.view().empty() ? 0.0 : 1.0; });
  return truths;
}

void BatchEvaluation::evaluateInto(int output, double* numbers) {
  if (outputAt(output).program != nullptr) {
    const double* results = this->numbers(output);
    std::copy_n(results, m_rowCount, numbers);
    return;
  }
  outputAt(output).native(m_numbers.data(), m_rowCount, numbers);
}

}  // namespace kelvarin
