// What expressions and variables come to for the entries of a column's dictionary.
//
// Used by BatchEvaluation.
// Threads: read-only once they are made.
#pragma once

#include <memory>
#include <vector>

#include "expression/batches/column_evaluation.h"
#include "expression/batches/entry_program.h"
#include "expression/evaluator/row_binding.h"
#include "host/contract/global_parameters.h"
#include "host/contract/row_batch.h"

namespace kelvarin {

// The text as programs for columns take it.
ColumnText columnText(const unsigned char* bytes);

// The number or elapsed time that a text is, null for others. True where it is to be counted.
bool convertText(const NumberSource& source, const unsigned char* bytes, const DateContext& dates,
                 TextColumn& texts, double& number);

// Of the parts of an expression that depend on one text variable.
class EntryValues {
 public:
  // `variable` has the texts of the column. Where the user stops `run`, which may be null, nothing
  // is known.
  EntryValues(const EntryProgram& program, std::size_t variable, const BatchColumn& column,
              const FunctionContext& functions, const RunRecord* run);

  // False: an entry cannot be evaluated. Maybe no row has it, so the rows have to be.
  bool areKnown() const { return m_areKnown; }
  // Of each part of the program, numbers or texts of all entries; null for other variables.
  const double* numbers(std::size_t part) const { return m_parts[part].numbers.get(); }
  const ColumnText* texts(std::size_t part) const { return m_parts[part].texts.get(); }

 private:
  struct PartValues {
    std::unique_ptr<double[]> numbers;
    std::unique_ptr<ColumnText[]> texts;
  };

  bool compute(const EntryProgram::Part& part, const BatchColumn& column,
               ColumnEvaluation& evaluation, const RunRecord* run, PartValues& values);

  std::vector<PartValues> m_parts;
  TextArena m_texts;
  bool m_areKnown = false;
};

// The entries as the numbers of a variable over a column of texts.
class EntryNumbers {
 public:
  // `source` is a converted one.
  EntryNumbers(const NumberSource& source, const BatchColumn& column, const DateContext& dates);

  const double* numbers() const { return m_numbers.get(); }
  // Rows with such an entry are counted.
  bool isRefused(std::size_t entry) const { return m_hasRefused && m_isRefused[entry]; }
  bool hasRefused() const { return m_hasRefused; }

 private:
  std::unique_ptr<double[]> m_numbers;
  std::vector<bool> m_isRefused;
  bool m_hasRefused = false;
};

}  // namespace kelvarin
