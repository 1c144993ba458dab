// A table of one row and an evaluator on it, for tests.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include <QString>
#include <QStringList>

#include "expression/evaluator/expression_evaluator.h"
#include "host/contract/column_bytes.h"
#include "host/contract/pin_out_meta_data.h"
#include "host/contract/row_buffer.h"

namespace kelvarin {

class TestTable {
 public:
  // Types are the codes of MetaTypeColumn.
  TestTable(const QStringList& names, const QString& types) {
    QVector<QString> columnNames(names.begin(), names.end());
    QVector<MetaInfo> metas;
    for (const QChar type : types) {
      metas.append(MetaInfo(static_cast<MetaTypeColumn>(type.toLatin1()), 0));
    }
    m_metaData.setColumnCount(static_cast<int>(names.size()));
    m_metaData.setNames(columnNames);
    m_metaData.setMetas(metas);
    m_row = std::make_unique<OneRow>(&m_metaData);
  }

  OneRow& row() { return *m_row; }
  void set(int column, double number) { slot(column) = bytesFromDouble(&m_buffer, number, 8); }
  void setKey(int column, unsigned key) { slot(column) = bytesFromKey(&m_buffer, key); }
  void set(int column, const QString& text) { slot(column) = bytesFromQString(&m_buffer, text); }
  void setNull(int column) { slot(column) = nullptr; }

 private:
  unsigned char*& slot(int column) { return m_row->getAllColForWrite()[column]; }

  PinOutMetaData m_metaData;
  std::unique_ptr<OneRow> m_row;
  RowBuffer m_buffer{1024};
};

inline InputVariable inputOf(const char* column, char kind = 'F') {
  InputVariable input;
  input.columns = {QString::fromUtf8(column)};
  input.isNumber = kind == 'F';
  input.meta = kind == 'D' ? MetaTypeColumn::date : MetaTypeColumn::text;
  return input;
}

inline OutputVariable outputOf(const char* expression, char meta = 'F') {
  OutputVariable output;
  output.name = QStringLiteral("out");
  output.expression = QString::fromUtf8(expression);
  output.meta = static_cast<MetaTypeColumn>(meta);
  return output;
}

// Leaves native code out, so that the back-end of numbers is the Fast one.
inline EvaluationOptions withoutNative() {
  EvaluationOptions options;
  options.useJIT = false;
  return options;
}

inline QString asWritten(const QString& name) {
  return name;
}

// One evaluator bound to a table of one row.
class TableRun {
 public:
  TableRun(const QStringList& names, const QString& types, std::vector<InputVariable> inputs,
           EvaluationOptions options = {}, bool isObserved = false)
      : table(names, types) {
    evaluator.expressions.configure(options, inputs, nullptr, isObserved);
    evaluator.expressions.prepareDateContext({});
    const auto bound = evaluator.expressions.bind(table.row(), asWritten);
    bindError = bound ? QString() : bound.error().text;
  }

  // Compiles, starts anew and returns the error's message.
  QString add(const OutputVariable& output, ResultUse use = ResultUse::column) {
    const auto compiled = evaluator.expressions.compile(output, use);
    evaluator.start();
    return compiled ? QString() : compiled.error().message;
  }
  RowOutcome next(int output = 0) {
    const RowOutcome loaded = evaluator.rows.loadRow(table.row());
    const RowOutcome outcome = loaded == RowOutcome::ok ? evaluator.rows.evaluate(output) : loaded;
    evaluator.rows.advanceRow();
    return outcome;
  }
  double number(int output = 0) { return numberFromBytes(evaluator.rows.resultCell(output)); }
  std::uint32_t key(int output = 0) { return keyFromBytes(evaluator.rows.resultCell(output)); }

  TestTable table;
  ExpressionEvaluator evaluator;
  QString bindError;
};

}  // namespace kelvarin
