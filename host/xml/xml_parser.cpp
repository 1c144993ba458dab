#include <algorithm>
#include <memory>

#include <QStringDecoder>
#include <QXmlStreamReader>

#include "host/xml/messages.h"
#include "host/xml/xml_element.h"
#include "host/xml/xml_scanner.h"

namespace kelvarin {

namespace {

constexpr std::size_t kMaximumDepth = 200;

bool isBlank(const QString& text) {
  return QStringView(text).trimmed().isEmpty();
}

bool isUnicode(const QString& encoding) {
  return encoding.isEmpty() || encoding.startsWith(u"utf-", Qt::CaseInsensitive) ||
         encoding.compare(u"us-ascii", Qt::CaseInsensitive) == 0;
}

// Builds the tree from the reader's tokens, the open elements on a stack of its own.
class TreeBuilder {
 public:
  explicit TreeBuilder(const ScannedXml& scanned) : m_scanned(scanned), m_reader(scanned.text) {
    m_reader.setNamespaceProcessing(false);
  }

  Result<XMLNode, XmlError> build() {
    if (m_scanned.documentType.line > 0) {
      return Failure{XmlError{messages::documentTypeRefused(), m_scanned.documentType}};
    }
    while (!m_reader.atEnd()) {
      m_reader.readNext();
      take();
      if (m_open.size() > kMaximumDepth) {
        return Failure{
            XmlError{messages::tooManyLevels(kMaximumDepth), m_open.back().element->position}};
      }
    }
    if (m_reader.hasError()) {
      return Failure{XmlError{whatIsWrong(), m_scanned.positionOf(m_reader.characterOffset())}};
    }
    if (!isUnicode(m_encoding)) {
      return Failure{XmlError{messages::otherEncoding(m_encoding), {1, 1}}};
    }
    return XmlElement::handle(&m_document.release()->elements.front());
  }

 private:
  struct Open {
    XmlElement* element;
    QString run;  // the text since the last child
  };

  void take() {
    switch (m_reader.tokenType()) {
      case QXmlStreamReader::StartDocument:
        m_encoding = m_reader.documentEncoding().toString();
        break;
      case QXmlStreamReader::StartElement:
        openElement();
        break;
      case QXmlStreamReader::EndElement:
        endRun();
        m_open.pop_back();
        break;
      case QXmlStreamReader::Characters:
        if (!m_open.empty()) {
          m_open.back().run += m_reader.text();
        }
        break;
      default:
        break;
    }
  }

  void openElement() {
    XmlElement& element = m_document->elements.emplace_back();
    element.document = m_document.get();
    element.name = m_reader.qualifiedName().toString();
    element.position = m_scanned.tags.at(m_document->elements.size() - 1);
    for (const QXmlStreamAttribute& attribute : m_reader.attributes()) {
      element.attributes.push_back(
          {attribute.qualifiedName().toString(), attribute.value().toString()});
    }
    if (!m_open.empty()) {
      m_open.back().element->children.push_back(&element);
      endRun();
    }
    m_open.push_back({&element, {}});
  }

  void endRun() {
    Open& open = m_open.back();
    const bool isIndentation = isBlank(open.run) && !open.element->children.empty();
    if (!open.run.isEmpty() && !isIndentation) {
      open.element->texts.push_back(open.run);
    }
    open.run.clear();
  }

  // The reader stops at a sign of an expression that markup needs for itself, or right behind it.
  bool stopsAtBareSign() const {
    constexpr qsizetype kBehind = 2;
    const qsizetype offset = std::min<qsizetype>(m_reader.characterOffset(), m_scanned.text.size());
    const QStringView nearby =
        QStringView(m_scanned.text).first(offset).last(std::min(kBehind, offset));
    return nearby.contains(u'&') || (nearby.contains(u'<') && !nearby.endsWith(u'/'));
  }

  QString whatIsWrong() const {
    if (m_open.empty()) {
      return m_document->elements.empty() &&
                     m_reader.error() == QXmlStreamReader::PrematureEndOfDocumentError
                 ? messages::noElement()
                 : messages::notWellFormed(m_reader.errorString());
    }
    const XmlElement& open = *m_open.back().element;
    return m_reader.error() == QXmlStreamReader::PrematureEndOfDocumentError
               ? messages::elementNotClosed(open.name, open.position.line)
               : messages::notWellFormedInside(m_reader.errorString(), open.name,
                                               open.position.line) +
                     (stopsAtBareSign() ? messages::bareSign() : QString());
  }

  const ScannedXml& m_scanned;
  QXmlStreamReader m_reader;
  QString m_encoding;  // as the file names it; empty when it does not
  std::unique_ptr<XmlDocument> m_document = std::make_unique<XmlDocument>();
  std::vector<Open> m_open;
};

// The length of the longest prefix that the decoder takes without an error.
qsizetype validPrefix(const QByteArray& document, QStringConverter::Encoding encoding) {
  QStringDecoder decoder(encoding);
  qsizetype valid = 0;
  while (valid < document.size()) {
    [[maybe_unused]] const QString character = decoder(QByteArrayView(document).sliced(valid, 1));
    if (decoder.hasError()) {
      break;
    }
    ++valid;
  }
  return valid;
}

}  // namespace

Result<XMLNode, XmlError> parseXml(const QByteArray& document) {
  const auto encoding =
      QStringConverter::encodingForData(document).value_or(QStringConverter::Utf8);
  QStringDecoder decoder(encoding, QStringConverter::Flag::Stateless);
  const QString text = decoder(document);
  if (decoder.hasError()) {
    const QByteArray valid = document.left(validPrefix(document, encoding));
    const QString before = QStringDecoder(encoding)(valid);
    return Failure{XmlError{
        messages::invalidEncoding(QLatin1String(QStringConverter::nameForEncoding(encoding))),
        positionInText(before, before.size())}};
  }
  const ScannedXml scanned = scanXml(text);
  return TreeBuilder(scanned).build();
}

}  // namespace kelvarin
