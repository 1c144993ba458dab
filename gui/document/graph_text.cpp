#include "gui/document/graph_text.h"

#include "host/xml/xml_node.h"
#include "host/xml_source/xml_text.h"

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

QList<std::pair<QString, QString>> attributesOf(const DrawnNote& note) {
  const QRectF& area = note.rectangle;
  QList<std::pair<QString, QString>> attributes{
      {QStringLiteral("x"), QString::number(area.x())},
      {QStringLiteral("y"), QString::number(area.y())},
      {QStringLiteral("w"), QString::number(area.width())},
      {QStringLiteral("h"), QString::number(area.height())}};
  if (note.colour.isValid()) {
    const bool isOpaque = note.colour.alpha() == 255;
    attributes.append(
        {QStringLiteral("color"), note.colour.name(isOpaque ? QColor::HexRgb : QColor::HexArgb)});
  }
  return attributes;
}

QString noteText(const DrawnNote& note) {
  QString text = QStringLiteral("<Note");
  for (const auto& [name, value] : attributesOf(note)) {
    text += attributeText(qPrintable(name), value);
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

int childOf(const EditedGraph::Parts& parts, int id) {
  return parts.childrenOfSource.value(id, -1);
}

// An element of the source, with other names of actions where they are called otherwise.
QString changedLinkText(const QString& source, const EditedGraph::Parts& parts,
                        const LinkRecord& link) {
  XmlTag tag(source);
  if (link.absentFrom.isNull()) {
    tag.set(QStringLiteral("from"), parts.nameOf(link.drawn.from));
  }
  if (link.absentTo.isNull()) {
    tag.set(QStringLiteral("to"), parts.nameOf(link.drawn.to));
  }
  return tag.textWithRest(source);
}

QString changedNoteText(const QString& source, const DrawnNote& before, const DrawnNote& now) {
  XmlText text(source);
  for (const auto& [name, value] : attributesOf(now)) {
    text.tag.set(name, value);
  }
  if (!now.colour.isValid()) {
    text.tag.remove(u"color");
  }
  if (now.text != before.text) {
    text.setPlainText(now.text);
  }
  return text.text();
}

std::vector<XmlEntry> actionEntries(const EditedGraph::Parts& parts) {
  std::vector<XmlEntry> entries;
  entries.reserve(parts.records.size());
  for (const auto& [id, record] : parts.records) {
    entries.push_back({childOf(parts, id), record.element});
  }
  return entries;
}

std::vector<XmlEntry> linkEntries(const EditedGraph::Parts& parts) {
  std::vector<XmlEntry> entries;
  for (const auto& [id, link] : parts.links) {
    const int child = childOf(parts, id);
    entries.push_back(
        {child,
         child < 0
             ? linkText(parts.nameOf(link.drawn.from), parts.nameOf(link.drawn.to), link.drawn)
             : changedLinkText(parts.source->element(GraphSource::links, child), parts, link)});
  }
  return entries;
}

std::vector<XmlEntry> noteEntries(const EditedGraph::Parts& parts) {
  std::vector<XmlEntry> entries;
  for (const auto& [id, note] : parts.notes) {
    const int child = childOf(parts, id);
    if (child < 0) {
      entries.push_back({child, noteText(note)});
      continue;
    }
    const QString& source = parts.source->element(GraphSource::notes, child);
    const DrawnNote before = parts.notesInSource.value(id);
    entries.push_back({child, note == before ? source : changedNoteText(source, before, note)});
  }
  return entries;
}

// Parameters are known by their names.
std::vector<XmlEntry> parameterEntries(const EditedGraph::Parts& parts) {
  QHash<QString, int> children;
  for (const int child : parts.source->elements(GraphSource::parameters)) {
    const XmlTag tag(parts.source->element(GraphSource::parameters, child));
    if (const auto name = tag.value(u"name"); name && !children.contains(*name)) {
      children.insert(*name, child);
    }
  }
  std::vector<XmlEntry> entries;
  for (const DrawnParameter& parameter : parts.parameters) {
    const int child = children.value(parameter.name, -1);
    QString text = child < 0 ? QStringLiteral("<Parameter/>")
                             : parts.source->element(GraphSource::parameters, child);
    XmlTag tag(text);
    tag.set(QStringLiteral("name"), parameter.name);
    tag.set(QStringLiteral("value"), parameter.value);
    entries.push_back({child, tag.textWithRest(text)});
  }
  return entries;
}

// A document, an element a line.
struct GraphLines {
  QStringList actions;
  QStringList links;
  QStringList notes;

  QByteArray document() const {
    QString text =
        QStringLiteral("<?xml version='1.0' encoding='UTF-8'?>\n<KelvarinGraph version='1.0'>\n");
    text += section("Actions", actions) + section("Links", links);
    text += notes.isEmpty() ? QString() : section("Notes", notes);
    return (text + QStringLiteral("</KelvarinGraph>\n")).toUtf8();
  }
};

}  // namespace

QByteArray graphText(const EditedGraph::Parts& parts) {
  if (!parts.source) {
    return newGraphText();  // none was loaded yet
  }
  return parts.source->document(
      {parameterEntries(parts), actionEntries(parts), linkEntries(parts), noteEntries(parts)});
}

QString parameterText(const DrawnParameter& parameter) {
  return QStringLiteral("<Parameter") + attributeText("name", parameter.name) +
         attributeText("value", parameter.value) + QStringLiteral("/>");
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

}  // namespace kelvarin
