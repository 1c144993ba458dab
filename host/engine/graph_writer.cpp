#include "host/engine/graph_writer.h"

#include <sstream>

#include "host/contract/attribute_table.h"
#include "host/engine/messages.h"
#include "host/files/replace_file.h"

namespace kelvarin {

namespace {

void writeParameters(const Graph& graph, std::wostringstream& out) {
  if (graph.parameters.empty()) {
    return;
  }
  ToXMLStringTool escape;
  out << L"  <Parameters>\n";
  for (const GraphParameter& parameter : graph.parameters) {
    out << L"    <Parameter name='" << escape.toXML(parameter.name);
    out << L"' value='" << escape.toXML(parameter.value) << L"'/>\n";
  }
  out << L"  </Parameters>\n";
}

void writeLinks(const Graph& graph, const std::vector<char>& isWritten, std::wostringstream& out) {
  ToXMLStringTool escape;
  out << L"  <Links>\n";
  for (const GraphLink& link : graph.links) {
    if (isWritten[static_cast<std::size_t>(link.from)] == 0 ||
        isWritten[static_cast<std::size_t>(link.to)] == 0) {
      continue;
    }
    out << L"    <Link from='"
        << escape.toXML(graph.actions[static_cast<std::size_t>(link.from)].name) << L'\'';
    if (link.fromPin != 0) {
      out << L" fromPin='" << link.fromPin << L'\'';
    }
    out << L" to='" << escape.toXML(graph.actions[static_cast<std::size_t>(link.to)].name) << L'\'';
    if (link.toPin != 0) {
      out << L" toPin='" << link.toPin << L'\'';
    }
    out << L"/>\n";
  }
  out << L"  </Links>\n";
}

void writeNotes(const Graph& graph, std::wostringstream& out) {
  if (graph.notes.empty()) {
    return;
  }
  out << L"  <Notes>\n";
  for (const GraphNote& note : graph.notes) {
    out << L"    <Note";
    writeAttribute(out, u"x", textOfValue(note.x));
    writeAttribute(out, u"y", textOfValue(note.y));
    writeAttribute(out, u"w", textOfValue(note.width));
    writeAttribute(out, u"h", textOfValue(note.height));
    if (!note.colour.isEmpty()) {
      writeAttribute(out, u"color", note.colour);
    }
    out << L'>' << elementText(note.text) << L"</Note>\n";
  }
  out << L"  </Notes>\n";
}

// Of the actions with a 1 in `isWritten` and the links between them; all notes, or none.
QByteArray documentOf(const Graph& graph, const std::vector<char>& isWritten, bool hasNotes) {
  std::wostringstream out;
  out << L"<?xml version='1.0' encoding='UTF-8'?>\n<KelvarinGraph version='1.0'>\n";
  writeParameters(graph, out);
  out << L"  <Actions>\n";
  for (std::size_t i = 0; i < graph.actions.size(); ++i) {
    if (isWritten[i] != 0) {
      graph.actions[i].item->saveXML(out, graph.actions[i].name);
    }
  }
  out << L"  </Actions>\n";
  writeLinks(graph, isWritten, out);
  if (hasNotes) {
    writeNotes(graph, out);
  }
  out << L"</KelvarinGraph>\n";
  return QString::fromStdWString(out.str()).toUtf8();
}

}  // namespace

QByteArray graphDocument(const Graph& graph) {
  return documentOf(graph, std::vector<char>(graph.actions.size(), 1), true);
}

QByteArray graphDocument(const Graph& graph, const std::vector<char>& isWritten) {
  return documentOf(graph, isWritten, false);
}

Status<QString> saveGraph(const Graph& graph, const QString& file) {
  return saveGraphDocument(graphDocument(graph), file);
}

Status<QString> saveGraphDocument(const QByteArray& document, const QString& file) {
  if (const auto outcome = replaceFile(file, document); !outcome) {
    return Failure{engine_messages::cannotSaveGraph(file, outcome.error())};
  }
  return Done{};
}

}  // namespace kelvarin
