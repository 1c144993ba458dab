#include "cli/install/graph_names.h"

#include <QFile>
#include <QXmlStreamReader>

namespace kelvarin {

namespace {

// The elements directly below the one that was just entered.
std::vector<NamedText> namesBelow(QXmlStreamReader& xml, bool areParameters) {
  std::vector<NamedText> names;
  while (xml.readNextStartElement()) {
    const QXmlStreamAttributes attributes = xml.attributes();
    const QString name = attributes.value(QLatin1String("name")).toString();
    if (!name.isEmpty()) {
      names.push_back({name, areParameters ? attributes.value(QLatin1String("value")).toString()
                                           : xml.name().toString()});
    }
    xml.skipCurrentElement();
  }
  return names;
}

}  // namespace

GraphNames namesInGraph(const std::string& path) {
  GraphNames names;
  QFile file(QString::fromStdString(path));
  if (path.empty() || !file.open(QIODevice::ReadOnly) || file.isSequential()) {
    return names;
  }
  QXmlStreamReader xml(&file);
  if (!xml.readNextStartElement()) {
    return names;
  }
  while (xml.readNextStartElement()) {
    if (xml.name() == QLatin1String("Actions")) {
      names.actions = namesBelow(xml, false);
    } else if (xml.name() == QLatin1String("Parameters")) {
      names.parameters = namesBelow(xml, true);
    } else {
      xml.skipCurrentElement();
    }
  }
  return names;
}

}  // namespace kelvarin
