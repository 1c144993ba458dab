// Expressions that have been compiled against the columns of a stream: outputs, a condition, or
// both. They are the actions Calculator and FilterRows in a graph made in memory, whose rows come
// from a stream and go to one.
//
// Used by: the functions of the interface.
// Threads: any.
// Errors: those of the actions, with the expression, its token and the row.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "host/contract/action_report.h"
#include "library/expressions/compiled_stages.h"
#include "library/expressions/dependence.h"
#include "library/expressions/expression_graph.h"
#include "library/runs/pulled_stream.h"

namespace kelvarin {

struct ExpressionInfo {
  OutputReport report;
  int type = 0;  // of the result; 0 for the condition
  Dependence dependence;
  // As the interface returns them, in UTF-8.
  struct Texts {
    std::string name;
    std::string engine;
    std::string slowedBy;
    std::string reason;
    std::string batchRefusal;
    std::string dependenceToken;
  } texts;
};

class CompiledExpressions {
 public:
  static Outcome<std::shared_ptr<CompiledExpressions>> compile(ExpressionSettings settings,
                                                               const ArrowSchema& schema);

  const TableColumns& inputColumns() const { return m_input; }
  // Of the rows that come out.
  const TableColumns& outputColumns() const { return m_output; }
  // Of these, the results of outputs.
  const std::vector<bool>& computedColumns() const { return m_computed; }
  // The outputs in their order, then the condition.
  const std::vector<ExpressionInfo>& infos() const { return m_infos; }
  const InputSettings& inputSettings() const { return m_settings.input; }

  // A run of the rows of `stream`, of which the first has the number `firstRow`.
  Outcome<std::unique_ptr<PulledStream>> run(InputStream stream, const WorkSettings& work,
                                             const BatchForm& form, long long firstRow) const;
  // The stages of the actions, compiled at the first row of a batch and kept for all that come
  // later. Null: the rows have to go through the actions themselves.
  std::shared_ptr<const CompiledStages> stages(const RowBatchPointer& batch);

 private:
  explicit CompiledExpressions(ExpressionSettings settings) : m_settings(std::move(settings)) {}

  Outcome<Done> settleInput(const ArrowSchema& schema);
  Outcome<Done> settleTypes();
  Outcome<Done> tryWithoutRows();
  void noteComputed();
  void noteInfos(PulledRun& run);
  ExpressionGraph graph() const { return {m_settings, m_input}; }
  bool mayKeepStages() const;

  ExpressionSettings m_settings;
  TableColumns m_input;
  TableColumns m_output;
  std::vector<bool> m_computed;  // by column of the output
  std::vector<ExpressionInfo> m_infos;

  std::mutex m_mutex;  // guards what follows
  std::shared_ptr<const CompiledStages> m_stages;
  bool m_hasNoStages = false;
};

}  // namespace kelvarin
