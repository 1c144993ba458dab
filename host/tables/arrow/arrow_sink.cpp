#include "host/tables/arrow/arrow_sink.h"


namespace kelvarin {

void ArrowSink::saveXML(std::wostringstream& out, QString name) {
  saveHead(out, name);
  out << L"/>\n";
}

// A program without the library says so before the file is created.
Status<QString> ArrowSink::checkSettings() {
  const auto formats = ArrowFormats::load();
  if (!formats) {
    return Failure{formats.error()};
  }
  return Done{};
}

Status<QString> ArrowSink::begin(const OneRow& columns) {
  const auto formats = ArrowFormats::load();
  m_writer = (*formats)->makeWriter(arrowFormat(), output(), expandedFile());
  return m_writer->begin(columns);
}

}  // namespace kelvarin
