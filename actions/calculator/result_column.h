// A column that a calculator makes of the results of one output, for some rows of a batch after
// others.
//
// Where rows are selected, it has a value for every stored row; those of the other rows are null.
// Used by CalculatorStage.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "expression/evaluator/batch_evaluation.h"
#include "expression/evaluator/variables.h"
#include "host/contract/row_batch.h"

namespace kelvarin {

class ResultColumn {
 public:
  // Of the type of the output's column, for the rows of `batch`.
  ResultColumn(MetaTypeColumn type, const RowBatch& batch);

  // Evaluates the output for the rows that are loaded. Of these it leaves those before one whose
  // result cannot be stored.
  void store(BatchEvaluation& rows, int output, const KeyCast& keyCast);
  // Forgets the rows that were stored last but for those that `rows` still has.
  void dropRowsBehind(const BatchEvaluation& rows);
  BatchColumn take();
  // Of the texts so far.
  std::size_t textBytes() const { return m_size; }

 private:
  void storeNumbers(BatchEvaluation& rows, int output);
  void storeKeys(BatchEvaluation& rows, int output, const KeyCast& keyCast);
  void storePrintedNumbers(BatchEvaluation& rows, int output);
  void storeTexts(BatchEvaluation& rows, std::size_t begin, const ColumnText* texts,
                  std::size_t count);
  std::size_t reserveFor(const ColumnText* texts, std::size_t count);
  void append(std::size_t storedRow, std::string_view text);
  void reserve(std::size_t size);

  static constexpr std::uint32_t kPositionOfNull = 0;

  MetaTypeColumn m_type;
  std::shared_ptr<double[]> m_numbers;  // one of the three
  std::shared_ptr<std::uint32_t[]> m_keys;
  std::shared_ptr<std::uint32_t[]> m_positions;
  std::shared_ptr<unsigned char[]> m_bytes;  // of texts, the null text first
  std::size_t m_size = 0;
  std::size_t m_sizeBefore = 0;  // without the rows that were stored last
  std::size_t m_capacity = 0;
};

}  // namespace kelvarin
