// What may be wrong with the text of an XML file.
#pragma once

#include <QString>

namespace kelvarin::messages {

inline QString documentTypeRefused() {
  return QStringLiteral(
      "The file has a document type (<!DOCTYPE ...>), which is not allowed here. Remove it.");
}
inline QString tooManyLevels(std::size_t maximum) {
  return QStringLiteral("The elements are nested more than %1 levels deep.").arg(maximum);
}
inline QString otherEncoding(const QString& encoding) {
  return QStringLiteral("The file says that its encoding is \"%1\". Save it as UTF-8.")
      .arg(encoding);
}
inline QString invalidEncoding(const QString& encoding) {
  return QStringLiteral("The file is not valid %1 text from here on. Save it as UTF-8.")
      .arg(encoding);
}
inline QString noElement() {
  return QStringLiteral("The file holds no XML element.");
}
inline QString notWellFormed(const QString& reason) {
  return QStringLiteral("The XML is not well formed: %1").arg(reason);
}
inline QString notWellFormedInside(const QString& reason, const QString& element, long long line) {
  return QStringLiteral("The XML is not well formed: %1 (inside <%2>, which opens at line %3)")
      .arg(reason, element, QString::number(line));
}
inline QString bareSign() {
  return QStringLiteral(
      ". In the text of an element, write & as &amp; and < as &lt;, or wrap the text: "
      "<![CDATA[a < 5 && b > 2]]>");
}
inline QString elementNotClosed(const QString& element, long long line) {
  return QStringLiteral("The file ends before <%1>, which opens at line %2, is closed.")
      .arg(element, QString::number(line));
}

}  // namespace kelvarin::messages
