// This system: by the batch, as a Calculator does it, and by the String Parser, which gets one row
// after the other.
#include <cstring>

#include "actions/calculator/calculator_stage.h"
#include "benchmarks/texts/contender.h"
#include "expression/evaluator/expression_evaluator.h"

namespace kelvarin {

namespace {

OutputVariable outputOf(const std::string& expression, bool yieldsText) {
  OutputVariable output;
  output.name = QStringLiteral("result");
  output.expression = QString::fromStdString(expression);
  output.meta = yieldsText ? MetaTypeColumn::text : MetaTypeColumn::number;
  return output;
}

void configure(ExpressionSet& expressions, const OutputVariable& output) {
  EvaluationOptions options;
  options.time.dateFormat = QStringLiteral("yyyy-MM-dd");
  options.time.referenceTime = QStringLiteral("20000101 00:00:00");
  options.time.elapsedTimeUnit = 3;  // days
  std::vector<InputVariable> inputs;
  const auto add = [&inputs](const char* name, bool isNumber) {
    InputVariable& input = inputs.emplace_back();
    input.label = QString::fromLatin1(name);
    input.columns = {input.label};
    input.isNumber = isNumber;
  };
  for (const char* name : TextTable::kTextNames) {
    add(name, false);
  }
  for (const char* name : TextTable::kNumberNames) {
    add(name, true);
  }
  expressions.configure(options, inputs, nullptr, false);
  expressions.prepareDateContext({output.expression});
}

class BatchContender final : public Contender {
 public:
  bool compile(const OutputVariable& output) {
    configure(m_expressions, output);
    PinOutMetaData described;
    OneRow columns(&described);
    announceColumns(columns);
    if (!m_expressions.bind(columns, [](const QString& name) { return name; }) ||
        !m_expressions.compile(output)) {
      return false;
    }
    const auto layout = layOutColumns(columns, {output});
    m_stage = CalculatorStage::of(m_expressions, *layout, nullptr);
    return m_stage != nullptr;
  }

  void run(const TextTable& table) override {
    std::vector<RowBatchPointer> results;
    results.reserve(table.batches.size());
    for (const RowBatchPointer& batch : table.batches) {
      results.push_back(m_stage->process(*batch, -1).outputs[0]);
    }
    m_results = std::move(results);
  }

  ContenderResults results() const override {
    ContenderResults found;
    for (const RowBatchPointer& batch : m_results) {
      const BatchColumn& column = batch->columns().back();
      for (std::size_t row = 0; row < batch->rowCount(); ++row) {
        if (column.type() == MetaTypeColumn::number) {
          found.numbers.push_back(column.numbers()[row]);
        } else {
          std::uint32_t length = 0;
          std::memcpy(&length, column.text(row), sizeof length);
          found.texts.emplace_back(reinterpret_cast<const char*>(column.text(row)) + sizeof length,
                                   length);
        }
      }
    }
    return found;
  }

 private:
  ExpressionSet m_expressions;
  std::unique_ptr<const CalculatorStage> m_stage;
  std::vector<RowBatchPointer> m_results;
};

class StringParserContender final : public Contender {
 public:
  bool compile(const OutputVariable& output) {
    configure(m_expressions, output);
    m_expressions.requireBackend(BackendKind::string);
    return static_cast<bool>(m_expressions.compile(output));
  }

  void run(const TextTable& table) override {
    CompiledExpression& expression = *m_expressions.output(0).expression;
    VariableStore& store = m_expressions.variables();
    Results results;
    EvaluatedValue value;
    for (std::size_t row = 0; row < table.rows(); ++row) {
      for (std::size_t i = 0; i < TextTable::kTexts; ++i) {
        store.text(i) = {table.texts[i][row], false};
      }
      for (std::size_t i = 0; i < TextTable::kNumbers; ++i) {
        store.numbers()[1 + i] = table.numbers[i][row];  // behind the row number
      }
      m_expressions.stringBackend().load(store);
      expression.evaluate(value);
      if (value.isText()) {
        results.bytes += value.text;
        results.ends.push_back(results.bytes.size());
      } else {
        results.numbers.push_back(value.number);
      }
    }
    m_results = std::move(results);
  }

  ContenderResults results() const override {
    ContenderResults found;
    found.numbers = m_results.numbers;
    std::size_t begin = 0;
    for (const std::size_t end : m_results.ends) {
      found.texts.push_back(m_results.bytes.substr(begin, end - begin));
      begin = end;
    }
    return found;
  }

 private:
  struct Results {
    std::string bytes;
    std::vector<std::size_t> ends;
    std::vector<double> numbers;
  };

  ExpressionSet m_expressions;
  Results m_results;
};

template <typename Kind>
std::unique_ptr<Contender> compiled(const std::string& expression, bool yieldsText) {
  auto contender = std::make_unique<Kind>();
  if (!contender->compile(outputOf(expression, yieldsText))) {
    return nullptr;
  }
  return contender;
}

}  // namespace

std::unique_ptr<Contender> batchContender(const std::string& expression, bool yieldsText) {
  return compiled<BatchContender>(expression, yieldsText);
}

std::unique_ptr<Contender> stringParserContender(const std::string& expression, bool yieldsText) {
  return compiled<StringParserContender>(expression, yieldsText);
}

}  // namespace kelvarin
