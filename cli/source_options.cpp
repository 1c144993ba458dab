#include "cli/source_options.h"

#include <sstream>

#include "cli/command_graph.h"
#include "cli/messages.h"
#include "host/contract/attribute_table.h"
#include "host/tables/settings/text_list.h"
#include "host/xml/xml_node.h"

namespace kelvarin {

namespace {

QString attribute(const char16_t* name, const QString& value) {
  std::wostringstream out;
  writeAttribute(out, name, literalText(value));
  return QString::fromStdWString(out.str());
}

QString columnsToRead(const QStringList& names) {
  ToXMLStringTool escape;
  QString list;
  for (const QString& name : names) {
    list +=
        QStringLiteral("<S>%1</S>").arg(QString::fromWCharArray(escape.toXML(literalText(name))));
  }
  return QStringLiteral("<ColumnsToRead><SL>") + list + QStringLiteral("</SL></ColumnsToRead>");
}

}  // namespace

void SourceOptions::addTo(CLI::App& command) {
  command.add_option("--columns", columns, "read these alone, in this order: A,B; \\, is a comma")
      ->type_name("COLUMNS");
  command.add_option("--unreadable", unreadable, "columns such as lists: error, text (JSON), skip")
      ->check(CLI::IsMember({"error", "text", "skip"}))
      ->option_text("WHAT");
  csv.addTo(command);
}

QString SourceOptions::fault(const TableKind& kind, const std::string& file) const {
  const QString name = QString::fromStdString(file);
  if (!kind.isCsv() && csv.areGiven()) {
    return program_messages::noCsvFile(name);
  }
  const bool hasUnreadableTypes = !kind.isCsv() && !kind.isColumnar();
  return !unreadable.empty() && !hasUnreadableTypes ? program_messages::nothingUnreadable(name)
                                                    : QString();
}

QString SourceOptions::element(const TableKind& kind, const QString& action,
                               const QString& file) const {
  const QStringList names = textsOfList(QString::fromStdString(columns), u',');
  QString attributes = kind.isCsv() ? csv.attributes(kind) : QString();
  if (!unreadable.empty()) {
    attributes += attribute(u"unreadable", QString::fromStdString(unreadable));
  }
  if (kind.isColumnar()) {
    return names.isEmpty() ? kind.readElement(action, {}, file)
                           : kind.readElement(action, QStringLiteral("readAllColumns='0'"), file,
                                              columnsToRead(names));
  }
  if (!names.isEmpty()) {
    attributes += attribute(u"columns", listOfTexts(names, u'|'));
  }
  return kind.readElement(action, attributes, file, kind.isCsv() ? csv.columns() : QString());
}

}  // namespace kelvarin
