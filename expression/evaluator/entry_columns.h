// For one batch, the outputs of a program whose parts are looked up by the codes of dictionaries.
//
// Used by BatchEvaluation.
// Threads: one at a time.
#pragma once

#include <memory>
#include <vector>

#include "expression/evaluator/batch_program.h"

namespace kelvarin {

// Some rows of a batch, by where they are stored.
struct StoredRows {
  std::size_t first = 0;
  const std::uint32_t* selection = nullptr;  // null: they are contiguous from `first` on
  std::size_t count = 0;
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
  // `numbers` and `texts` are by the index of a variable or part. Valid until the next call.
  void gather(int output, const StoredRows& rows, const double** numbers, const ColumnText** texts);

 private:
  struct Part {
    std::size_t column = 0;
    const std::uint16_t* codes = nullptr;
    const double* numbers = nullptr;  // one of both, of the entries
    const ColumnText* texts = nullptr;
  };
  struct Output {
    const ColumnProgram* program = nullptr;
    std::vector<Part> parts;
    std::vector<EntryValuesPointer> values;  // which the parts refer to
  };

  Output chosen(const BatchProgram::Output& output, const FunctionContext& functions) const;
  void noteTexts(const ColumnProgram& program);
  const BatchColumn* columnOf(std::size_t variable) const;

  const BatchProgram& m_program;
  const RowBatch& m_batch;
  std::vector<Output> m_outputs;
  std::size_t m_endOfColumns = 0;
  std::vector<bool> m_needsText;        // by the index of the variable
  std::unique_ptr<double[]> m_numbers;  // gathered, of the parts of one output
  std::unique_ptr<ColumnText[]> m_texts;
};

}  // namespace kelvarin
