// The expressions of one action as they are evaluated for whole batches.
//
// Only for expressions of native code or with a ColumnProgram: their results depend on the row
// alone. Rows that fail, or might, and rows with values to be counted are left to RowEvaluation.
// Used by the stages of the expression actions, through BatchEvaluation.
// Threads: made on the engine's, then read by any number at once.
#pragma once

#include <memory>
#include <vector>

#include "expression/evaluator/entry_values.h"
#include "expression/evaluator/expression_set.h"
#include "expression/evaluator/recent_by_dictionary.h"
#include "host/contract/row_batch.h"

namespace kelvarin {

class BatchProgram {
 public:
  // To be called when the last output has been compiled; `expressions` outlive the program. Null
  // where rows must be evaluated one by one.
  // `run` outlives it, too: its evaluations end early where the user has stopped it. Null: none.
  static std::unique_ptr<const BatchProgram> of(const ExpressionSet& expressions,
                                                const RunRecord* run = nullptr);

  int outputCount() const { return static_cast<int>(m_outputs.size()); }
  // The results of an output are texts, else numbers.
  bool yieldsText(int output) const {
    const ColumnProgram* program = m_outputs[static_cast<std::size_t>(output)].program;
    return program != nullptr && program->yieldsText();
  }
  bool needsRowNumbers() const { return m_needsRowNumbers; }
  // The batch with the texts that outputs do more with than compare them with constants; null where
  // none of these are late.
  RowBatchPointer withNeededTexts(const RowBatch& batch) const;
  // The rows before the first one with a null key that stops the run.
  std::size_t rowsBeforeFailure(const RowBatch& batch) const;
  // Rows that do not count may be evaluated, too, which takes less time than to leave some out.
  bool mayEvaluateAnyRow() const;
  // So many that their values stay in the processor's nearer caches.
  std::size_t rowsAtOnce() const { return m_rowsAtOnce; }
  // What is computed from now on is of no use.
  bool isStopped() const { return m_run != nullptr && m_run->isStoppedByUser(); }

 private:
  friend class BatchEvaluation;
  friend class EntryColumns;

  // Native code or a column program.
  struct Output {
    ColumnsCall native;
    const ColumnProgram* program = nullptr;
    const EntryProgram* entries = nullptr;  // of the column program; null: there is none
    std::unique_ptr<RecentByDictionary<EntryValues>> entryValues;
  };
  struct Sources {
    std::vector<NumberSource> numbers;
    std::vector<TextSource> texts;
  };

  explicit BatchProgram(const FunctionContext& functions) : m_functions(functions) {}
  bool addOutput(const CompiledOutput& output, const Sources& sources);
  bool addNumber(std::size_t variable, const std::vector<NumberSource>& sources);
  bool addText(std::size_t variable, const std::vector<TextSource>& sources);
  bool usesColumnPrograms() const;
  bool convertsTexts() const;
  bool comparesOnly(const TextSource& source) const;
  void findNeededTexts();

  std::vector<Output> m_outputs;
  // Those that the outputs use, and the end of their indices in the store.
  std::vector<NumberSource> m_numbers;
  std::vector<TextSource> m_texts;
  std::size_t m_endOfNumbers = 0;
  std::size_t m_endOfTexts = 0;
  std::vector<int> m_columnsOfKeys;           // of which a null stops the run
  std::vector<std::size_t> m_columnsOfTexts;  // that are not only compared
  std::size_t m_rowsAtOnce = 0;
  bool m_needsRowNumbers = false;
  const RunRecord* m_run = nullptr;
  const std::unique_ptr<RecentByDictionary<EntryNumbers>> m_entryNumbers =
      std::make_unique<RecentByDictionary<EntryNumbers>>();
  const FunctionContext m_functions;
};

}  // namespace kelvarin
