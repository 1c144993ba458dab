// For one batch, what of a program is known without looking at the texts of each row: by the codes
// of dictionaries the parts of outputs that depend on one text, and texts that enter as numbers;
// and comparisons with late texts.
//
// Used by BatchEvaluation.
// Threads: one at a time.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "expression/evaluator/batch_program.h"

namespace kelvarin {

// Some rows of a batch, by where they are stored.
struct StoredRows {
  std::size_t first = 0;
  const std::uint32_t* selection = nullptr;  // null: they are contiguous from `first` on
  std::size_t count = 0;

  std::size_t at(std::size_t row) const {
    return selection == nullptr ? first + row : selection[row];
  }
};

class EntryColumns {
 public:
  // Program and batch outlive it.
  EntryColumns(const BatchProgram& program, const RowBatch& batch);

  // The end of the indices of variables and parts.
  std::size_t endOfColumns() const { return m_endOfColumns; }
  // What is to be evaluated for an output with a column program, when gather() has filled the
  // columns of its parts.
  const ColumnProgram& program(int output) const {
    return *m_outputs[static_cast<std::size_t>(output)].program;
  }
  // The texts of the variable are needed as they are.
  bool needsText(std::size_t variable) const { return m_needsText[variable]; }
  // For rows of which the first one is the batch's row `begin`. `numbers` and `texts` are by the
  // index of a variable or part. Valid until the next call.
  void gather(int output, std::size_t begin, const StoredRows& rows, const double** numbers,
              const ColumnText** texts);
  // The numbers of a variable over texts, whose index is that in the program, up to the first one
  // that is to be counted. Returns how many; nothing where they have no dictionary.
  std::optional<std::size_t> gatherNumbers(std::size_t index, const StoredRows& rows,
                                           double* numbers) const;

 private:
  struct Part {
    std::size_t column = 0;
    const std::uint16_t* codes = nullptr;
    const double* numbers = nullptr;  // one of both, of the entries
    const ColumnText* texts = nullptr;
  };
  // With late texts.
  struct Comparison {
    std::size_t column = 0;
    Operation operation = Operation::equal;
    std::vector<std::int8_t> orders;  // of the rows of the batch
  };
  struct Output {
    const ColumnProgram* program = nullptr;
    std::vector<Part> parts;
    std::vector<Comparison> comparisons;
    std::vector<std::shared_ptr<const EntryValues>> values;  // which the parts refer to
  };

  struct Numbers {
    const std::uint16_t* codes = nullptr;
    std::shared_ptr<const EntryNumbers> ofEntries;  // null: there is no dictionary
  };

  Output chosen(const BatchProgram::Output& output) const;
  void noteTexts(const ColumnProgram& program);
  void compare(const EntryProgram& entries, std::size_t variable, const BatchColumn& column,
               Output& chosen) const;
  const BatchColumn* columnOfText(std::size_t variable) const;
  bool hasFewEntries(const BatchColumn& column) const;
  Numbers numbersOf(const NumberSource& source) const;

  const BatchProgram& m_program;
  const RowBatch& m_batch;
  std::vector<Output> m_outputs;
  std::vector<Numbers> m_variables;  // by their index in the program; empty where none is converted
  std::size_t m_endOfColumns = 0;
  std::vector<bool> m_needsText;        // by the index of the variable
  std::unique_ptr<double[]> m_numbers;  // gathered, of the parts of one output
  std::unique_ptr<ColumnText[]> m_texts;
};

}  // namespace kelvarin
