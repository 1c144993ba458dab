#include "cli/graph_tests/case_report.h"

#include <algorithm>

#include <QXmlStreamWriter>

#include "cli/graph_tests/messages.h"

namespace kelvarin {

namespace {

QString indentedLines(QString text, const char* indentation) {
  return text.replace(u'\n', u'\n' + QLatin1String(indentation));
}

QString secondsOf(double seconds) {
  return QString::number(seconds, 'f', 3);
}

// XML cannot hold control characters.
QString cleaned(QString text) {
  std::ranges::replace_if(
      text, [](QChar c) { return c < u' ' && c != u'\n' && c != u'\t'; },
      QChar(QChar::ReplacementCharacter));
  return text;
}

}  // namespace

std::size_t failuresOf(const std::vector<JudgedCase>& cases) {
  return static_cast<std::size_t>(std::ranges::count_if(
      cases, [](const JudgedCase& each) { return !each.result.failure.isNull(); }));
}

QString reportForPeople(const std::vector<JudgedCase>& cases) {
  QString text;
  for (const JudgedCase& each : cases) {
    const QString& failure = each.result.failure;
    text += failure.isNull()
                ? test_messages::passed(each.test.name)
                : test_messages::failed(each.test.name, indentedLines(failure, "      "));
    text += u'\n';
    for (const QString& file : each.result.updated) {
      text += QStringLiteral("      ") + test_messages::updated(file) + u'\n';
    }
  }
  return text + test_messages::summary(cases.size(), failuresOf(cases)) + u'\n';
}

QString reportAsTap(const std::vector<JudgedCase>& cases) {
  QString text = QStringLiteral("TAP version 13\n1..%1\n").arg(cases.size());
  int number = 0;
  for (const JudgedCase& each : cases) {
    const QString& failure = each.result.failure;
    QString name = each.test.name;
    name.replace(u'#', QStringLiteral("\\#"));
    text += QStringLiteral("%1 %2 - %3\n")
                .arg(failure.isNull() ? QStringLiteral("ok") : QStringLiteral("not ok"),
                     QString::number(++number), name);
    if (!failure.isNull()) {
      text += QStringLiteral("  ---\n  message: |\n    ") + indentedLines(failure, "    ") +
              QStringLiteral("\n  ...\n");
    }
  }
  return text;
}

QByteArray reportAsJUnit(const std::vector<JudgedCase>& cases) {
  QByteArray bytes;
  QXmlStreamWriter out(&bytes);
  out.setAutoFormatting(true);
  out.writeStartDocument();
  double seconds = 0.0;
  for (const JudgedCase& each : cases) {
    seconds += each.result.seconds;
  }
  out.writeStartElement(QStringLiteral("testsuite"));
  out.writeAttribute(QStringLiteral("name"), QStringLiteral("kelvarin"));
  out.writeAttribute(QStringLiteral("tests"), QString::number(cases.size()));
  out.writeAttribute(QStringLiteral("failures"), QString::number(failuresOf(cases)));
  out.writeAttribute(QStringLiteral("time"), secondsOf(seconds));
  for (const JudgedCase& each : cases) {
    out.writeStartElement(QStringLiteral("testcase"));
    out.writeAttribute(QStringLiteral("classname"), each.test.name.section(u'/', 0, 0));
    out.writeAttribute(QStringLiteral("name"), each.test.name);
    out.writeAttribute(QStringLiteral("time"), secondsOf(each.result.seconds));
    if (!each.result.failure.isNull()) {
      const QString failure = cleaned(each.result.failure);
      out.writeStartElement(QStringLiteral("failure"));
      out.writeAttribute(QStringLiteral("message"), failure.section(u'\n', 0, 0));
      out.writeCharacters(failure);
      out.writeEndElement();
    }
    out.writeEndElement();
  }
  out.writeEndDocument();
  return bytes;
}

}  // namespace kelvarin
