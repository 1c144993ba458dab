// One output of an action: its expression as the user wrote it, compiled for the engine that
// evaluates it.
#pragma once

#include <memory>

#include <QString>

#include "expression/backends/compiled_expression.h"
#include "expression/batches/column_program.h"
#include "expression/batches/entry_program.h"
#include "expression/evaluator/engine_choice.h"
#include "host/contract/meta_info.h"

namespace kelvarin {

// What the result of an expression is for.
enum class ResultUse {
  column,   // a value of the output's meta
  truth,    // a condition
  anyValue  // whatever type it has
};

struct CompiledOutput {
  QString name;
  QString text;  // as the user wrote it
  MetaTypeColumn meta = MetaTypeColumn::number;
  ResultUse use = ResultUse::column;
  std::unique_ptr<CompiledExpression> expression;
  EngineChoice engine;
  // Where another engine than native code evaluates rows, the same for batches; null: there is no
  // such program.
  std::unique_ptr<const ColumnProgram> columnProgram;
  // For texts with a dictionary; null: nothing in it depends on one text alone.
  std::unique_ptr<const EntryProgram> entryProgram;
};

inline bool isNumberMeta(MetaTypeColumn meta) {
  return meta == MetaTypeColumn::number || meta == MetaTypeColumn::key;
}

}  // namespace kelvarin
