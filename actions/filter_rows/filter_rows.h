// Sends each row, unchanged, to output pin 0 where an expression holds and to pin 1 where it does
// not.
//
// It can stop at the first row that fails; an expression that only limits the row number (`_n <
// 100`) then takes the first rows without evaluating anything. plan.cpp works at the first row,
// row.cpp at every row; whole batches go through the FilterStage.
// Threads: those of ActionItem.
// Errors: logged at level 1, the run fails.
#pragma once

#include <cstdint>

#include "actions/filter_rows/filter_stage.h"
#include "actions/frame/catalogued.h"
#include "actions/frame/expression_action.h"
#include "host/contract/batch_steps.h"
#include "host/contract/column_user.h"
#include "host/contract/named_pins.h"

namespace kelvarin {

// What is an attribute of the action, but for the evaluation's options.
struct FilterSettings {
  bool truncate = false;  // stop at the first row for which the expression is false
  QString expression = QStringLiteral("");
  QString comments = QStringLiteral("");
};

class FilterRows : public Catalogued<FilterRows, ExpressionAction>,
                   public BatchTransform,
                   public ColumnUser,
                   public NamedPins {
 public:
  FilterRows(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  void saveXML(std::wostringstream& out, QString name) override;
  char init() override;
  void setComputeRoutine() override;
  float computeCompletion() const override;
  std::vector<ElementFault> settingFaults() const override;

  // For editors; see ExpressionAction. A limit on the row number truncates only where `truncate`
  // says so: an editor has asked the user.
  const FilterSettings& settings() const { return m_settings; }
  void setSettings(FilterSettings settings);

  ColumnFate followColumn(const QString& oldName, const QString& newName) override;
  void renameParameter(const QString& oldName, const QString& newName) override;
  QStringList expressions() const override;
  QString pinName(int pin, bool isOutput) const override;

  const BatchStage* stage() const override {
    return m_evaluator.rows.shouldGoRowByRow() ? nullptr : m_stage.get();
  }
  void passRows(std::size_t count) override { m_evaluator.rows.advanceRows(count); }
  void countRows(const StageResult& result, std::size_t begin, std::size_t end) override;

  // The run ended at a row for which the expression was false.
  bool wasTruncated() const { return m_wasTruncated; }

 protected:
  QString expressionFailureText(const RowFailure& failure) const override;
  QString checkText(const QString& output, const QString& text) const override;
  QString referenceTimeWarning() const override;
  LogDetails detailsOfOutput(int output) const override;
  QStringList resultNames() override;
  QString failedRowsText(const FailureCount& failures) const override;
  // The first row stops it in any case.
  bool mayFailedRowStop() const override { return true; }
  bool goesOnAfter(const RowFailure& failure) const override { return failure.row != 0.0; }

 private:
  static bool computeFirstRow(ActionItem* action);
  void buildOutputRows(const OneRow& columns);
  [[nodiscard]] bool plan(const OneRow& columns);
  bool startRows(const OneRow& firstRow);
  bool isSampling() const { return m_sampleSize > 0; }

  void passTo(int pin, const OneRow& row) {
    getOutputRowForOutputPin(pin)->showValuesOf(&row);
    setRowReadyForOutput(pin);
  }
  // To both pins, where only the columns are asked for.
  void passToBoth(const OneRow& row);
  template <bool kTruncates>
  static bool computeRow(ActionItem* action);
  template <bool kTruncates>
  RowStep filterRow(const OneRow& row);
  RowOutcome evaluateRow(const OneRow& row, bool& isKept);
  static bool computeSampledRow(ActionItem* action);
  RowStep sampleRow(const OneRow& row);
  static bool computeObservedRow(ActionItem* action);
  RowStep filterObservedRow(const OneRow& row);
  RowStep sampleObservedRow(const OneRow& row);

  FilterSettings m_settings;
  std::uint64_t m_sampleSize = 0;  // 0: not sampling
  std::uint64_t m_rowsSampled = 0;
  bool m_wasTruncated = false;
  std::unique_ptr<const FilterStage> m_stage;  // of the run; null: row by row
};

}  // namespace kelvarin
