#include "columnar/actions/block_filter.h"

#include "actions/frame/attributes.h"
#include "actions/frame/evaluation_attributes.h"
#include "actions/frame/variables_xml.h"
#include "host/contract/one_row.h"

namespace kelvarin {

namespace {

constexpr Attribute<BlockFilter> kAttributes[] = {attribute<&BlockFilter::addRowNumbers>(u"addN")};

struct NameAttribute {
  const char16_t* name;
  QString BlockVariable::*member;
};

constexpr NameAttribute kNames[] = {
    {u"varNameMax", &BlockVariable::maximumName},
    {u"varNameMin", &BlockVariable::minimumName},
    {u"varNameHasNull", &BlockVariable::hasNullName},
};

struct SampleAttribute {
  const char16_t* name;
  BlockVariable::Sample BlockVariable::*member;
};

constexpr SampleAttribute kSamples[] = {
    {u"valueMax", &BlockVariable::maximum},
    {u"valueMin", &BlockVariable::minimum},
};

BlockVariable readVariable(const XMLNode& node) {
  BlockVariable variable(qString(node.getAttribute(utf16(u"column"))));
  for (const NameAttribute& line : kNames) {
    readAttribute(node, line.name, variable.*line.member);
  }
  readAttribute(node, u"isNumber", variable.isNumber);
  variable.meta = readMeta(node, variable.meta, kInputMetas);
  for (const SampleAttribute& line : kSamples) {
    BlockVariable::Sample& sample = variable.*line.member;
    if (variable.isNumber) {
      readAttribute(node, line.name, sample.number);
    } else {
      readAttribute(node, line.name, sample.text);
    }
  }
  return variable;
}

// The value as it is written; empty for the default.
QString sampleText(const BlockVariable::Sample& sample, bool isNumber) {
  if (isNumber) {
    return sample.number == 0.0 ? QString() : shortestText(sample.number);
  }
  return sample.text;
}

void writeVariable(std::wostringstream& out, const BlockVariable& variable) {
  const BlockVariable defaults(variable.column);
  ToXMLStringTool escape;
  const auto writeMore = [&](const char16_t* name, const QString& value) {
    out << L"' " << QString::fromUtf16(name).toStdWString() << L"='" << escape.toXML(value);
  };
  out << L"    <CInputVar column='" << escape.toXML(variable.column);
  for (const NameAttribute& line : kNames) {
    if (variable.*line.member != defaults.*line.member) {
      writeMore(line.name, variable.*line.member);
    }
  }
  if (!variable.isNumber) {
    out << L"' isNumber='0";
  }
  if (variable.meta != defaults.meta) {
    out << L"' meta='" << metaCharacter(variable.meta);
  }
  for (const SampleAttribute& line : kSamples) {
    const QString value = sampleText(variable.*line.member, variable.isNumber);
    if (!value.isEmpty()) {
      writeMore(line.name, value);
    }
  }
  out << L"'/>\n";
}

}  // namespace

BlockVariable::BlockVariable(const QString& columnName)
    : column(columnName),
      maximumName(columnName + QStringLiteral("_max")),
      minimumName(columnName + QStringLiteral("_min")),
      hasNullName(columnName + QStringLiteral("_hasNull")) {}

BlockFilter readBlockFilter(const XMLNode& node) {
  BlockFilter filter;
  readAttributes<BlockFilter>(node, kAttributes, filter);
  readTimeParameters(node, filter.time);
  filter.expression = node.getChildNode(utf16(u"Expression")).text();
  const XMLNode variables = node.getChildNode(utf16(kInputVars));
  for (int i = 0; i < variables.nChildNode(); ++i) {
    const XMLNode child = variables.getChildNode(i);
    if (child.name() == u"CInputVar") {
      filter.variables.push_back(readVariable(child));
    }
  }
  return filter;
}

void writeBlockFilter(std::wostringstream& out, const BlockFilter& filter) {
  out << L"  <CFilterRows";
  writeAttributes<BlockFilter>(out, kAttributes, filter);
  writeTimeParameters(out, filter.time);
  out << L">\n   <Expression>" << elementText(filter.expression)
      << L"</Expression>\n   <InputVars>\n";
  for (const BlockVariable& variable : filter.variables) {
    writeVariable(out, variable);
  }
  out << L"   </InputVars>\n  </CFilterRows>\n";
}

}  // namespace kelvarin
