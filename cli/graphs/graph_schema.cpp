#include "cli/graphs/graph_schema.h"

#include <QXmlStreamWriter>

#include "host/contract/declared_content.h"

namespace kelvarin {

namespace {

// A type that allows the value or anything with a parameter in it.
QString typeOf(const AttributeDescription& attribute) {
  switch (attribute.kind) {
    case AttributeKind::flag:
      return QStringLiteral("flag");
    case AttributeKind::wholeNumber:
      return QStringLiteral("wholeNumber");
    case AttributeKind::cutNumber:
    case AttributeKind::number:
      return QStringLiteral("number");
    case AttributeKind::text:
    case AttributeKind::typeCode:
    case AttributeKind::sample:
      break;
  }
  return QStringLiteral("xs:string");
}

class SchemaWriter {
 public:
  QByteArray schema(const ElementDescription& graph) {
    m_out.setAutoFormatting(true);
    m_out.setAutoFormattingIndent(1);
    m_out.writeStartDocument();
    m_out.writeStartElement(QStringLiteral("xs:schema"));
    attribute("xmlns:xs", QStringLiteral("http://www.w3.org/2001/XMLSchema"));
    annotation(QStringLiteral("Graph files. Made by 'kelvarin graph schema'."));
    valueType("flag", "\\s*[01]\\s*");
    valueType("wholeNumber", "\\s*[+\\-]?[0-9]+\\s*");
    valueType("number",
              "\\s*[+\\-]?(([0-9]+\\.?[0-9]*|\\.[0-9]+)([eE][+\\-]?[0-9]+)?|[iI][nN][fF]|"
              "[nN][aA][nN])\\s*");
    element(graph, QString());
    m_out.writeEndDocument();
    return m_text;
  }

 private:
  void attribute(const char* name, const QString& value) {
    m_out.writeAttribute(QString::fromLatin1(name), value);
  }

  void annotation(const QString& text) {
    m_out.writeStartElement(QStringLiteral("xs:annotation"));
    m_out.writeTextElement(QStringLiteral("xs:documentation"), text);
    m_out.writeEndElement();
  }

  // An empty value is no mistake of any kind.
  void valueType(const char* name, const char* pattern) {
    m_out.writeStartElement(QStringLiteral("xs:simpleType"));
    attribute("name", QString::fromLatin1(name));
    m_out.writeStartElement(QStringLiteral("xs:restriction"));
    attribute("base", QStringLiteral("xs:string"));
    for (const char* each : {pattern, "\\s*", ".*[$]\\{[^}]*\\}.*"}) {
      m_out.writeEmptyElement(QStringLiteral("xs:pattern"));
      attribute("value", QString::fromLatin1(each));
    }
    m_out.writeEndElement();
    m_out.writeEndElement();
  }

  void element(const ElementDescription& described, const QString& parent) {
    m_out.writeStartElement(QStringLiteral("xs:element"));
    attribute("name", described.name);
    const QString text =
        described.textMeaning.isEmpty()
            ? described.meaning
            : described.meaning + QStringLiteral("; its text is ") + described.textMeaning;
    annotation(text);
    m_out.writeStartElement(QStringLiteral("xs:complexType"));
    if (!described.textMeaning.isEmpty()) {
      attribute("mixed", QStringLiteral("true"));
    }
    children(described);
    for (const AttributeDescription& each : described.attributes) {
      attributeElement(each, isNeeded(described, each, parent), parent.isEmpty());
    }
    m_out.writeEndElement();
    m_out.writeEndElement();
  }

  // In any order, as they are read.
  void children(const ElementDescription& described) {
    if (described.children.empty()) {
      return;
    }
    m_out.writeStartElement(QStringLiteral("xs:choice"));
    attribute("minOccurs", QStringLiteral("0"));
    attribute("maxOccurs", QStringLiteral("unbounded"));
    for (const ElementDescription& child : described.children) {
      element(child, described.name);
    }
    m_out.writeEndElement();
  }

  // Without them a graph is refused.
  static bool isNeeded(const ElementDescription& element, const AttributeDescription& attribute,
                       const QString& parent) {
    const bool isNameOfAction = parent == u"Actions" && attribute.name == u"name";
    const bool isEndOfLink =
        element.name == u"Link" && (attribute.name == u"from" || attribute.name == u"to");
    return isNameOfAction || isEndOfLink || element.name == u"Parameter";
  }

  void attributeElement(const AttributeDescription& described, bool isNeeded, bool isOfRoot) {
    m_out.writeStartElement(QStringLiteral("xs:attribute"));
    attribute("name", described.name);
    attribute("type", typeOf(described));
    if (isNeeded) {
      attribute("use", QStringLiteral("required"));
    } else if (isOfRoot) {
      attribute("fixed", described.defaultText);
    } else if (!described.defaultText.isEmpty()) {
      attribute("default", described.defaultText);
    }
    annotation(described.meaning + QStringLiteral(" (") + valuesInWords(described) + u')');
    m_out.writeEndElement();
  }

  QByteArray m_text;
  QXmlStreamWriter m_out{&m_text};
};

}  // namespace

QByteArray schemaOf(const ElementDescription& graph) {
  return SchemaWriter().schema(graph);
}

}  // namespace kelvarin
