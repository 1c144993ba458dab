#include "columnar/actions/block_filter.h"

#include "actions/frame/variables_xml.h"
#include "expression/options/evaluation_attributes.h"

namespace kelvarin {

namespace {

constexpr char16_t kBlockFilter[] = u"CFilterRows";
constexpr char16_t kExpression[] = u"Expression";
constexpr char16_t kVariable[] = u"CInputVar";

constexpr Attribute<BlockFilter> kAttributes[] = {attribute<&BlockFilter::addRowNumbers>(
    u"addN", "offers the numbers of the block's first and last row as _n_min and _n_max")};

struct NameAttribute {
  const char16_t* name;
  const char* meaning;
  QString BlockVariable::* member;
};

constexpr NameAttribute kNames[] = {
    {u"varNameMax", "name for the largest value; without it the column's with _max",
     &BlockVariable::maximumName},
    {u"varNameMin", "name for the smallest value; without it the column's with _min",
     &BlockVariable::minimumName},
    {u"varNameHasNull",
     "name for 1 where the block has nulls, else 0; without it the column's with _hasNull",
     &BlockVariable::hasNullName},
};

struct SampleAttribute {
  const char16_t* name;
  const char* meaning;
  BlockVariable::Sample BlockVariable::* member;
};

constexpr SampleAttribute kSamples[] = {
    {u"valueMax", "the sample of the largest value with which a check evaluates",
     &BlockVariable::maximum},
    {u"valueMin", "the sample of the smallest value with which a check evaluates",
     &BlockVariable::minimum},
};

constexpr char16_t kIsNumber[] = u"isNumber";
constexpr char16_t kMeta[] = u"meta";

BlockVariable readVariable(const XMLNode& node, const GlobalParameters* parameters) {
  BlockVariable variable(qString(node.getAttribute(utf16(u"column"))));
  for (const NameAttribute& line : kNames) {
    readAttribute(node, line.name, variable.*line.member, parameters);
  }
  readAttribute(node, kIsNumber, variable.isNumber, parameters);
  readAttribute(node, kMeta, variable.meta, parameters);
  for (const SampleAttribute& line : kSamples) {
    BlockVariable::Sample& sample = variable.*line.member;
    if (variable.isNumber) {
      readAttribute(node, line.name, sample.number, parameters);
    } else {
      readAttribute(node, line.name, sample.text, parameters);
    }
  }
  return variable;
}

// The value as it is written; empty for the default.
QString sampleText(const BlockVariable::Sample& sample, bool isNumber) {
  if (isNumber) {
    return sample.number == 0.0 ? QString() : textOfValue(sample.number);
  }
  return sample.text;
}

void writeVariable(std::wostringstream& out, const BlockVariable& variable) {
  const BlockVariable defaults(variable.column);
  out << L"    <CInputVar";
  writeAttribute(out, u"column", variable.column);
  for (const NameAttribute& line : kNames) {
    if (variable.*line.member != defaults.*line.member) {
      writeAttribute(out, line.name, variable.*line.member);
    }
  }
  if (!variable.isNumber) {
    writeAttribute(out, kIsNumber, textOfValue(variable.isNumber));
  }
  if (variable.meta != defaults.meta) {
    writeAttribute(out, kMeta, textOfValue(variable.meta));
  }
  for (const SampleAttribute& line : kSamples) {
    const QString value = sampleText(variable.*line.member, variable.isNumber);
    if (!value.isEmpty()) {
      writeAttribute(out, line.name, value);
    }
  }
  out << L"/>\n";
}

InputVariable numberInput(const QString& name, double sample) {
  InputVariable input;
  input.label = name;
  input.number = sample;
  return input;
}

InputVariable boundInput(const BlockVariable& variable, const QString& name,
                         const BlockVariable::Sample& sample) {
  InputVariable input = numberInput(name, sample.number);
  input.isNumber = variable.isNumber;
  input.meta = variable.meta;
  input.text = sample.text;
  return input;
}

ElementDescription variableElement() {
  const BlockVariable defaults{QString()};
  ElementDescription element{
      .name = QString::fromUtf16(kVariable),
      .meaning = QStringLiteral("what the file says about one column of a block"),
      .mayRepeat = true};
  element.attributes = {{QStringLiteral("column"), AttributeKind::text,
                         QStringLiteral("the column; it need not be among those that are read"),
                         QStringLiteral("")}};
  for (const NameAttribute& line : kNames) {
    element.attributes.push_back({QString::fromUtf16(line.name), AttributeKind::text,
                                  QString::fromUtf8(line.meaning), QString()});
  }
  element.attributes.push_back({QString::fromUtf16(kIsNumber), AttributeKind::flag,
                                QStringLiteral("0: a text column"),
                                textOfValue(defaults.isNumber)});
  element.attributes.push_back(
      {QString::fromUtf16(kMeta), AttributeKind::typeCode,
       QStringLiteral("D: the texts are dates, and enter as elapsed times"),
       textOfValue(defaults.meta), kInputTypes});
  for (const SampleAttribute& line : kSamples) {
    element.attributes.push_back({QString::fromUtf16(line.name), AttributeKind::sample,
                                  QString::fromUtf8(line.meaning), QStringLiteral("")});
  }
  return element;
}

}  // namespace

BlockVariable::BlockVariable(const QString& columnName)
    : column(columnName),
      maximumName(columnName + QStringLiteral("_max")),
      minimumName(columnName + QStringLiteral("_min")),
      hasNullName(columnName + QStringLiteral("_hasNull")) {}

std::vector<InputVariable> inputsOf(const BlockFilter& filter) {
  std::vector<InputVariable> inputs;
  for (const BlockVariable& variable : filter.variables) {
    inputs.push_back(boundInput(variable, variable.maximumName, variable.maximum));
    inputs.push_back(boundInput(variable, variable.minimumName, variable.minimum));
    inputs.push_back(numberInput(variable.hasNullName, 0.0));
  }
  if (filter.addRowNumbers) {
    inputs.push_back(numberInput(QStringLiteral("_n_min"), 0.0));
    inputs.push_back(numberInput(QStringLiteral("_n_max"), 0.0));
  }
  return inputs;
}

ElementDescription blockFilterElement() {
  ElementDescription expression{.name = QString::fromUtf16(kExpression),
                                .meaning = QStringLiteral("the condition on a block"),
                                .textMeaning = QStringLiteral("the expression")};
  ElementDescription variables{.name = QString::fromUtf16(kInputVars),
                               .meaning = QStringLiteral("the variables of the expression"),
                               .children = {variableElement()}};
  ElementDescription filter{.name = QString::fromUtf16(kBlockFilter),
                            .meaning = QStringLiteral("the filter that passes over whole blocks"),
                            .children = {std::move(expression), std::move(variables)}};
  describe<BlockFilter>(filter.attributes, kAttributes);
  describe(filter.attributes, timeAttributes());
  return filter;
}

BlockFilter readBlockFilter(const XMLNode& action, const GlobalParameters* parameters) {
  const XMLNode node = action.getChildNode(utf16(kBlockFilter));
  BlockFilter filter;
  readAttributes<BlockFilter>(node, kAttributes, filter, parameters);
  EvaluationOptions options;
  readAttributes(node, timeAttributes(), options, parameters);
  filter.time = options.time;
  filter.expression = node.getChildNode(utf16(kExpression)).text();
  const XMLNode variables = node.getChildNode(utf16(kInputVars));
  for (int i = 0; i < variables.nChildNode(); ++i) {
    const XMLNode child = variables.getChildNode(i);
    if (child.name() == kVariable) {
      filter.variables.push_back(readVariable(child, parameters));
    }
  }
  return filter;
}

void writeBlockFilter(std::wostringstream& out, const BlockFilter& filter) {
  out << L"  <CFilterRows";
  writeAttributes<BlockFilter>(out, kAttributes, filter);
  EvaluationOptions options;
  options.time = filter.time;
  writeAttributes(out, timeAttributes(), options);
  out << L">\n   <Expression>" << elementText(filter.expression)
      << L"</Expression>\n   <InputVars>\n";
  for (const BlockVariable& variable : filter.variables) {
    writeVariable(out, variable);
  }
  out << L"   </InputVars>\n  </CFilterRows>\n";
}

}  // namespace kelvarin
