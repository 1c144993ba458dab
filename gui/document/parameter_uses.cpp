#include "gui/document/parameter_uses.h"

#include <QRegularExpression>

#include "host/contract/parameter_expansion.h"
#include "host/xml/xml_node.h"

namespace kelvarin {

namespace {

const QRegularExpression& reference() {
  static const QRegularExpression pattern(QStringLiteral("\\$\\{([^}]*)\\}"));
  return pattern;
}

void collect(const XMLNode& element, QStringList& names) {
  for (int i = 0; i < element.nAttribute(); ++i) {
    if (!isFreeText(element.attributeName(i))) {
      names += parametersIn(element.attributeValue(i));
    }
  }
  for (int i = 0; i < element.nChildNode(); ++i) {
    collect(element.getChildNode(i), names);
  }
}

}  // namespace

QStringList parametersIn(const QString& text) {
  QStringList names;
  for (const QRegularExpressionMatch& match : reference().globalMatch(text)) {
    names += match.captured(1);
  }
  return names;
}

QStringList parametersOfElement(const QString& element) {
  QStringList names;
  if (!element.contains(QLatin1String("${"))) {
    return names;
  }
  if (const auto node = parseXml(element.toUtf8())) {
    collect(*node, names);
  }
  names.removeDuplicates();
  return names;
}

QString withRenamedParameters(const QString& text, const QHash<QString, QString>& newNames) {
  QString renamed;
  qsizetype done = 0;
  for (const QRegularExpressionMatch& match : reference().globalMatch(text)) {
    const auto newName = newNames.constFind(match.captured(1));
    if (newName != newNames.constEnd()) {
      renamed += QStringView(text).mid(done, match.capturedStart(1) - done);
      renamed += *newName;
      done = match.capturedEnd(1);
    }
  }
  return renamed + text.mid(done);
}

}  // namespace kelvarin
