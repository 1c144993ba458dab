// The opening tag of an XML element as it is written in a file: every blank, quote and escape of it
// stays as it is, but for the attributes that are set.
//
// Used by: xml_text.h, and whatever changes attributes of a file.
// Errors: the text was parsed before; what is not well formed is kept as it is.
#pragma once

#include <optional>
#include <vector>

#include <QString>
#include <QStringList>

namespace kelvarin {

class XmlTag {
 public:
  // `text` begins with the "<" of the tag; what follows its ">" does not belong to it.
  explicit XmlTag(QStringView text);

  QString name() const { return m_name; }
  bool isSelfClosing() const { return m_end.contains(u'/'); }
  // Of the text that it was made of.
  qsizetype length() const { return m_length; }

  QStringList attributeNames() const;
  // Without escapes; nothing when the attribute is absent.
  std::optional<QString> value(QStringView attribute) const;
  // In the quotes of its neighbours; a value that is there already keeps its spelling.
  void set(const QString& attribute, const QString& value);
  void remove(QStringView attribute);
  // Makes "<a/>" the opening tag of an element with content.
  void open();

  QString text() const;
  // The whole text that it was made of, with this tag in it.
  QString textWithRest(QStringView source) const;

 private:
  struct Attribute {
    QString before;  // the blanks in front of it
    QString name;
    QString equals;  // with the blanks around it
    QChar quote;
    QString value;  // with escapes
  };

  Attribute* find(QStringView attribute);

  QString m_name;
  std::vector<Attribute> m_attributes;
  QString m_end;  // blanks, and ">" or "/>"
  qsizetype m_length = 0;
};

// Without entities and character references.
QString withoutXmlEscapes(QStringView text);
// For an attribute's value in either kind of quotes.
QString withXmlEscapes(const QString& value);

}  // namespace kelvarin
