// What the parts of an expression come to for the entries of a column's dictionary.
//
// Batches of one block share a dictionary, so the values that were computed last are kept.
// Used by BatchEvaluation.
// Threads: any.
#pragma once

#include <array>
#include <memory>
#include <mutex>
#include <vector>

#include "expression/batches/column_evaluation.h"
#include "expression/batches/entry_program.h"
#include "host/contract/row_batch.h"

namespace kelvarin {

// The text as programs for columns take it.
ColumnText columnText(const unsigned char* bytes);

class EntryValues {
 public:
  // Of the parts with this text variable, which has the texts of the column.
  EntryValues(const EntryProgram& program, std::size_t variable, const BatchColumn& column,
              const FunctionContext& functions);

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
               ColumnEvaluation& evaluation, PartValues& values);

  std::vector<PartValues> m_parts;
  TextArena m_texts;
  bool m_areKnown = false;
};

using EntryValuesPointer = std::shared_ptr<const EntryValues>;

class RecentEntryValues {
 public:
  explicit RecentEntryValues(const EntryProgram& program) : m_program(program) {}

  EntryValuesPointer of(std::size_t variable, const BatchColumn& column,
                        const FunctionContext& functions);

 private:
  static constexpr std::size_t kKept = 8;

  struct Kept {
    std::size_t variable = 0;
    std::weak_ptr<const void> owner;  // of the dictionary
    EntryValuesPointer values;
  };

  EntryValuesPointer find(std::size_t variable, const BatchColumn& column);

  const EntryProgram& m_program;
  std::mutex m_mutex;
  std::array<Kept, kKept> m_kept;  // under m_mutex, like the next one
  std::size_t m_next = 0;          // which is replaced
};

}  // namespace kelvarin
