#include "cli/graph_tests/compared_files.h"

#include <algorithm>

#include <QFile>

#include "cli/graph_tests/compared_tables.h"
#include "cli/graph_tests/messages.h"

namespace kelvarin {

namespace {

QByteArray contentOf(const QString& file) {
  QFile input(file);
  return input.open(QIODevice::ReadOnly) ? input.readAll() : QByteArray();
}

QString shownLine(const QByteArray& content, qsizetype start) {
  constexpr qsizetype kLongest = 200;
  const qsizetype end = content.indexOf('\n', start);
  const QByteArray line = content.sliced(start, (end < 0 ? content.size() : end) - start);
  return start >= content.size()
             ? QStringLiteral("the end of the file")
             : u'\'' + QString::fromUtf8(line.first(std::min(line.size(), kLongest))) + u'\'';
}

QString contentDifference(const QByteArray& expected, const QByteArray& found) {
  if (expected == found) {
    return {};
  }
  const auto [one, other] = std::ranges::mismatch(expected, found);
  const qsizetype offset = one - expected.begin();
  if (expected.contains('\0') || found.contains('\0')) {
    return test_messages::bytesDiffer(offset);
  }
  const QByteArray before = expected.first(offset);
  const qsizetype start = before.lastIndexOf('\n') + 1;
  return test_messages::lineDiffers(before.count('\n') + 1, shownLine(expected, start),
                                    shownLine(found, std::min(start, found.size())));
}

// Of tables only; a text file may be anything.
const TableKind* kindOfTable(const QString& file) {
  return file.endsWith(QStringLiteral(".txt")) ? nullptr : tableKindOf(file.toStdString());
}

}  // namespace

QString fileDifference(const QString& expected, const QString& found, const QString& name,
                       const ComparedFile& comparison, const std::string& plugin) {
  const TableKind* expectedKind = kindOfTable(expected);
  const TableKind* foundKind = kindOfTable(name);
  if (expectedKind == nullptr || foundKind == nullptr) {
    return contentDifference(contentOf(expected), contentOf(found));
  }
  return tableDifference(expected, *expectedKind, found, *foundKind, comparison, plugin);
}

}  // namespace kelvarin
