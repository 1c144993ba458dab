#include <cmath>

#include <QStringView>

#include "host/xml/xml_node.h"

using kelvarin::qString;

namespace {

constexpr char16_t kReplacement = 0xFFFD;

// What a file of this kind can hold: no control characters but blanks, no half of a surrogate pair,
// no non-character.
bool isHalfSurrogate(QStringView text, qsizetype at) {
  const QChar c = text[at];
  if (c.isHighSurrogate()) {
    return at + 1 == text.size() || !text[at + 1].isLowSurrogate();
  }
  return c.isLowSurrogate() && (at == 0 || !text[at - 1].isHighSurrogate());
}

bool isRefusedByXml(QStringView text, qsizetype at) {
  const char16_t c = text[at].unicode();
  const bool isControl = c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r';
  return isControl || c == 0xFFFE || c == 0xFFFF || isHalfSurrogate(text, at);
}

// Null: the character stands for itself.
const char16_t* entityInText(char16_t c) {
  return c == u'&' ? u"&amp;" : c == u'<' ? u"&lt;" : nullptr;
}

const char16_t* entityInAttribute(char16_t c) {
  switch (c) {
    case u'>':
      return u"&gt;";
    case u'\'':
      return u"&apos;";
    case u'"':
      return u"&quot;";
    case u'\t':
      return u"&#9;";
    case u'\n':
      return u"&#10;";
    case u'\r':
      return u"&#13;";
    default:
      return entityInText(c);
  }
}

std::wstring escaped(const QString& text, const char16_t* (*entityOf)(char16_t)) {
  QString result;
  result.reserve(text.size() + text.size() / 8);
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (const char16_t* entity = entityOf(text[i].unicode())) {
      result += QStringView(entity);
    } else {
      result += isRefusedByXml(text, i) ? QChar(kReplacement) : text[i];
    }
  }
  return result.toStdWString();
}

}  // namespace

QString kelvarin::qString(const unsigned short* text) {
  return text == nullptr ? QString() : QString::fromUtf16(reinterpret_cast<const char16_t*>(text));
}

std::wstring kelvarin::elementText(const QString& text) {
  return escaped(text, entityInText);
}

int xmltoi(const unsigned short* text, int otherwise) {
  bool isNumber = false;
  const int number = qString(text).toInt(&isNumber);
  return isNumber ? number : otherwise;
}

char xmltob(const unsigned short* text, char otherwise) {
  const QString digit = qString(text).trimmed();
  return digit == u"1" ? 1 : digit == u"0" ? 0 : otherwise;
}

double xmltof(const unsigned short* text, double otherwise) {
  bool isNumber = false;
  const double number = qString(text).toDouble(&isNumber);
  return isNumber ? number : otherwise;
}

unsigned short xmltoc(const unsigned short* text, unsigned short otherwise) {
  const QString value = qString(text);
  return value.isEmpty() ? otherwise : value[0].unicode();
}

const unsigned short* xmltoa(const unsigned short* text, const unsigned short* otherwise) {
  return text == nullptr ? otherwise : text;
}

QStringList fromXMLSL(XMLNode node) {
  const XMLNode list = node.name() == u"SL" ? node : node.getChildNode(kelvarin::utf16(u"SL"));
  QStringList texts;
  for (int i = 0; i < list.nChildNode(); ++i) {
    const XMLNode child = list.getChildNode(i);
    if (child.name() == u"S") {
      texts += child.text();
    }
  }
  return texts;
}

void toXML(QStringList texts, std::wostringstream& out) {
  out << L"<SL>";
  for (const QString& text : texts) {
    out << L"<S>" << kelvarin::elementText(text) << L"</S>";
  }
  out << L"</SL>";
}

const wchar_t* ToXMLStringTool::toXML(const QString& text) {
  m_buffer = escaped(text, entityInAttribute);
  return m_buffer.c_str();
}

void ToXMLStringTool::freeBuffer() {
  std::wstring().swap(m_buffer);
}
