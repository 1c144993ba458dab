#include "host/engine/linear_graph.h"

#include <sstream>

#include "host/contract/attribute_table.h"

namespace kelvarin {

QByteArray linearGraph(const QString& elements, const QStringList& names,
                       const std::vector<GraphParameter>& parameters) {
  std::wostringstream document;
  document << L"<KelvarinGraph version='1.0'><Parameters>";
  for (const GraphParameter& parameter : parameters) {
    document << L"<Parameter";
    writeAttribute(document, u"name", parameter.name);
    writeAttribute(document, u"value", parameter.value);
    document << L"/>";
  }
  document << L"</Parameters><Actions>" << elements.toStdWString() << L"</Actions><Links>";
  for (qsizetype i = 1; i < names.size(); ++i) {
    document << L"<Link";
    writeAttribute(document, u"from", names[i - 1]);
    writeAttribute(document, u"to", names[i]);
    document << L"/>";
  }
  document << L"</Links></KelvarinGraph>";
  return QString::fromStdWString(document.str()).toUtf8();
}

}  // namespace kelvarin
