#include "host/xml_source/xml_tag.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/xml/xml_node.h"

namespace kelvarin {

namespace {

constexpr std::array<std::pair<QStringView, char16_t>, 5> kEntities{
    {{u"lt", u'<'}, {u"gt", u'>'}, {u"amp", u'&'}, {u"apos", u'\''}, {u"quot", u'"'}}};

bool isBlank(QChar c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

// The character of "&name;"; the null text for an unknown name.
QString characterOf(QStringView name) {
  for (const auto& [entity, character] : kEntities) {
    if (name == entity) {
      return {QChar(character)};
    }
  }
  if (!name.startsWith(u'#')) {
    return {};
  }
  const bool isHexadecimal = name.startsWith(u"#x");
  bool isNumber = false;
  const char32_t code =
      name.sliced(isHexadecimal ? 2 : 1).toUInt(&isNumber, isHexadecimal ? 16 : 10);
  return isNumber ? QString::fromUcs4(&code, 1) : QString();
}

// Reads a tag piece by piece.
class TagReader {
 public:
  explicit TagReader(QStringView text) : m_text(text) {}

  qsizetype offset() const { return m_offset; }
  bool isAtEnd() const { return m_offset >= m_text.size(); }
  QChar current() const { return m_text[m_offset]; }
  bool isAtTagEnd() const { return isAtEnd() || current() == u'>' || current() == u'/'; }

  template <typename Belongs>
  QString take(Belongs belongs) {
    const qsizetype start = m_offset;
    while (!isAtEnd() && belongs(current())) {
      ++m_offset;
    }
    return m_text.sliced(start, m_offset - start).toString();
  }
  QString takeBlanks() { return take(isBlank); }
  QString takeName() {
    return take([](QChar c) { return !isBlank(c) && c != u'=' && c != u'>' && c != u'/'; });
  }
  QString takeEquals() {
    return take([](QChar c) { return isBlank(c) || c == u'='; });
  }
  QChar takeOne() { return isAtEnd() ? QChar() : m_text[m_offset++]; }
  QString takeEnd() {
    QString end = take([](QChar c) { return c != u'>'; });
    if (!isAtEnd()) {
      end += takeOne();
    }
    return end;
  }

 private:
  QStringView m_text;
  qsizetype m_offset = 0;
};

}  // namespace

QString withoutXmlEscapes(QStringView text) {
  QString plain;
  plain.reserve(text.size());
  for (qsizetype i = 0; i < text.size(); ++i) {
    const qsizetype end = text[i] == u'&' ? text.indexOf(u';', i) : -1;
    const QString character = end < 0 ? QString() : characterOf(text.sliced(i + 1, end - i - 1));
    if (character.isNull()) {
      plain += text[i];
    } else {
      plain += character;
      i = end;
    }
  }
  return plain;
}

QString withXmlEscapes(const QString& value) {
  ToXMLStringTool escape;
  return QString::fromWCharArray(escape.toXML(value));
}

XmlTag::XmlTag(QStringView text) {
  TagReader reader(text);
  reader.takeOne();
  m_name = reader.takeName();
  for (;;) {
    QString before = reader.takeBlanks();
    if (reader.isAtTagEnd()) {
      m_end = before + reader.takeEnd();
      break;
    }
    Attribute attribute{
        std::move(before), reader.takeName(), reader.takeEquals(), reader.takeOne(), {}};
    attribute.value = reader.take([&attribute](QChar c) { return c != attribute.quote; });
    reader.takeOne();
    m_attributes.push_back(std::move(attribute));
  }
  m_length = reader.offset();
}

QStringList XmlTag::attributeNames() const {
  QStringList names;
  for (const Attribute& attribute : m_attributes) {
    names += attribute.name;
  }
  return names;
}

XmlTag::Attribute* XmlTag::find(QStringView attribute) {
  const auto found = std::ranges::find(m_attributes, attribute, &Attribute::name);
  return found == m_attributes.end() ? nullptr : &*found;
}

std::optional<QString> XmlTag::value(QStringView attribute) const {
  const auto found = std::ranges::find(m_attributes, attribute, &Attribute::name);
  if (found == m_attributes.end()) {
    return std::nullopt;
  }
  QString value = found->value;  // blanks of a value are read as spaces
  value.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
  std::ranges::replace_if(value, isBlank, u' ');
  return withoutXmlEscapes(value);
}

void XmlTag::set(const QString& attribute, const QString& value) {
  if (this->value(attribute) == value) {
    return;
  }
  if (Attribute* present = find(attribute)) {
    present->value = withXmlEscapes(value);
    return;
  }
  Attribute added{QStringLiteral(" "), attribute, QStringLiteral("="), u'\'',
                  withXmlEscapes(value)};
  if (!m_attributes.empty()) {
    added.before = m_attributes.back().before;
    added.quote = m_attributes.back().quote;
  }
  m_attributes.push_back(added);
}

void XmlTag::remove(QStringView attribute) {
  std::erase_if(m_attributes,
                [attribute](const Attribute& each) { return each.name == attribute; });
}

void XmlTag::open() {
  m_end = QStringLiteral(">");
}

QString XmlTag::text() const {
  QString text = u'<' + m_name;
  for (const Attribute& attribute : m_attributes) {
    text += attribute.before + attribute.name + attribute.equals + attribute.quote +
            attribute.value + attribute.quote;
  }
  return text + m_end;
}

QString XmlTag::textWithRest(QStringView source) const {
  return text().append(source.sliced(m_length));
}

}  // namespace kelvarin
