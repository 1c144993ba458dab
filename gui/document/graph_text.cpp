#include "gui/document/graph_text.h"

#include "gui/document/xml_tag.h"
#include "host/contract/attribute_table.h"

namespace kelvarin {

namespace {

QString attributeText(const char* name, const QString& value) {
  return QStringLiteral(" %1='%2'").arg(QLatin1String(name), withXmlEscapes(value));
}

QString linkText(const QString& from, const QString& to, const DrawnLink& link) {
  const auto pin = [](const char* name, int number) {
    return number == 0 ? QString() : attributeText(name, QString::number(number));
  };
  return QStringLiteral("<Link") + attributeText("from", from) + pin("fromPin", link.fromPin) +
         attributeText("to", to) + pin("toPin", link.toPin) + QStringLiteral("/>");
}

QString noteText(const DrawnNote& note) {
  QString text = QStringLiteral("<Note");
  const QRectF& area = note.rectangle;
  text += attributeText("x", QString::number(area.x()));
  text += attributeText("y", QString::number(area.y()));
  text += attributeText("w", QString::number(area.width()));
  text += attributeText("h", QString::number(area.height()));
  if (note.colour.isValid()) {
    text += attributeText("color", note.colour.name());
  }
  return text + u'>' + QString::fromStdWString(elementText(note.text)) + QStringLiteral("</Note>");
}

QString section(const char* name, const QStringList& lines) {
  QString text = QStringLiteral("  <%1>\n").arg(QLatin1String(name));
  for (const QString& line : lines) {
    text += QStringLiteral("    ") + line + u'\n';
  }
  return text + QStringLiteral("  </%1>\n").arg(QLatin1String(name));
}

// A document, an element a line.
struct GraphLines {
  QStringList parameters;
  QStringList actions;
  QStringList links;
  QStringList notes;

  QByteArray document() const {
    QString text =
        QStringLiteral("<?xml version='1.0' encoding='UTF-8'?>\n<KelvarinGraph version='1.0'>\n");
    text += parameters.isEmpty() ? QString() : section("Parameters", parameters);
    text += section("Actions", actions) + section("Links", links);
    text += notes.isEmpty() ? QString() : section("Notes", notes);
    return (text + QStringLiteral("</KelvarinGraph>\n")).toUtf8();
  }
};

}  // namespace

QByteArray graphText(const EditedGraph::Parts& parts) {
  GraphLines lines;
  for (const DrawnParameter& each : parts.parameters) {
    lines.parameters += QStringLiteral("<Parameter") + attributeText("name", each.name) +
                        attributeText("value", each.value) + QStringLiteral("/>");
  }
  for (const auto& [id, record] : parts.records) {
    lines.actions += record.element;
  }
  for (const auto& [id, link] : parts.links) {
    lines.links +=
        linkText(link.absentFrom.isNull() ? parts.nameOf(link.drawn.from) : link.absentFrom,
                 link.absentTo.isNull() ? parts.nameOf(link.drawn.to) : link.absentTo, link.drawn);
  }
  for (const auto& [id, note] : parts.notes) {
    lines.notes += noteText(note);
  }
  return lines.document();
}

QByteArray newGraphText() {
  return GraphLines().document();
}

QByteArray graphText(const EditedGraph& graph, const GraphSelection& selection) {
  GraphLines lines;
  for (const ActionId id : graph.actions()) {
    if (selection.actions.contains(id)) {
      lines.actions += QString::fromUtf8(graph.element(id));
    }
  }
  for (const LinkId id : graph.links()) {
    const DrawnLink& link = graph.link(id);
    if (selection.actions.contains(link.from) && selection.actions.contains(link.to)) {
      lines.links += linkText(graph.name(link.from), graph.name(link.to), link);
    }
  }
  for (const NoteId id : graph.notes()) {
    if (selection.notes.contains(id)) {
      lines.notes += noteText(graph.note(id));
    }
  }
  return lines.document();
}

SavedGraph savedGraph(const EditedGraph::Parts& parts, const QByteArray& document) {
  EditedGraph file(parts.catalogue);
  SavedGraph saved;
  saved.isOther = !file.load(document, parts.graph.file) || file.document() != graphText(parts);
  return saved.isOther ? saved : parts.now();
}

void EditedGraph::Parts::takeNotes(const QByteArray& document) {
  const auto root = parseXml(document);
  const XMLNode section = root ? root->getChildNode(utf16(u"Notes")) : XMLNode();
  for (int i = 0; i < section.nChildNode(); ++i) {
    const XMLNode node = section.getChildNode(i);
    if (node.name() != u"Note") {
      continue;
    }
    const auto number = [&](const char16_t* name, double otherwise) {
      readAttribute(node, name, otherwise, graph.settings.get());
      return otherwise;
    };
    const NoteId id = nextId++;
    const QRectF area(number(u"x", 0), number(u"y", 0), number(u"w", 160), number(u"h", 80));
    const QColor colour(qString(node.getAttribute(utf16(u"color"))));
    notes.emplace_hint(notes.end(), id, DrawnNote{id, area, colour, node.text()});
  }
}

}  // namespace kelvarin
