#include "library/runs/graph_text.h"

#include <QDir>

#include "host/contract/attribute_table.h"
#include "host/engine/linear_graph.h"

namespace kelvarin {

namespace {

std::wstring wide(const char16_t* text) {
  return QString::fromUtf16(text).toStdWString();
}

}  // namespace

void GraphText::open(const char16_t* element) {
  closeStartTag();
  m_actions << L'<' << wide(element);
  m_open.push_back(element);
  m_isStartTagOpen = true;
}

void GraphText::openAction(const char16_t* type, const char16_t* name) {
  open(type);
  m_names.push_back(QString::fromUtf16(name));
  attribute(u"name", m_names.back());
}

void GraphText::attribute(const char16_t* name, const QString& value) {
  writeAttribute(m_actions, name, literal(value));
}

void GraphText::attribute(const char16_t* name, long long value) {
  writeAttribute(m_actions, name, QString::number(value));
}

void GraphText::text(const QString& text) {
  closeStartTag();
  m_actions << elementText(text);
}

void GraphText::close() {
  closeStartTag();
  m_actions << L"</" << wide(m_open.back()) << L'>';
  m_open.pop_back();
}

void GraphText::closeStartTag() {
  if (m_isStartTagOpen) {
    m_actions << L'>';
    m_isStartTagOpen = false;
  }
}

// A parameter stands for a text that looks like one. Its name is none of a variable, so that no
// expression sees it.
QString GraphText::literal(const QString& text) {
  if (!text.contains(QLatin1String("${"))) {
    return text;
  }
  m_parameters.push_back({QString::number(m_parameters.size()), text});
  return QStringLiteral("${%1}").arg(m_parameters.back().name);
}

Outcome<Graph> GraphText::parse(const ActionCatalogue& catalogue) const {
  std::vector<GraphParameter> declared;
  declared.reserve(m_parameters.size());
  for (const ParameterOverride& parameter : m_parameters) {
    declared.push_back({parameter.name, {}});
  }
  auto graph =
      parseGraph(linearGraph(QString::fromStdWString(m_actions.str()), m_names, declared),
                 QDir::current().filePath(QStringLiteral("graph")), catalogue, m_parameters);
  if (!graph) {
    return Failure{errorOf(graph.error())};
  }
  return std::move(*graph);
}

ErrorDetails errorOf(const GraphErrors& faults) {
  QStringList lines;
  for (const GraphError& fault : faults) {
    lines += fault.text();
  }
  return errorOf(KELVARIN_FAILED, lines.join(u'\n'));
}

}  // namespace kelvarin
