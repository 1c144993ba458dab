#include "gui/host_editors/csv_raw_lines.h"

#include <algorithm>
#include <cstring>

#include "host/tables/csv/csv_indexer.h"
#include "host/tables/csv/csv_scanner.h"

namespace kelvarin {

namespace {

constexpr std::size_t kMaxLines = 50;
constexpr std::size_t kMaxBytes = 2000;  // of a line

struct Byte {
  std::size_t offset;
  bool isQuote;
};

std::size_t columnCountOf(std::string_view text, const CsvDialect& dialect) {
  CsvScanner scanner(dialect, true, 1, 0);
  const char* next = text.data();
  const bool hasRecord = scanner.scan(next, text.data() + text.size()) || scanner.finish();
  return hasRecord ? scanner.record().fieldCount : 0;
}

// In their order.
std::vector<Byte> meaningfulBytes(std::string_view text, const CsvDialect& dialect, bool isWhole) {
  const std::size_t columnCount = columnCountOf(text, dialect);
  if (columnCount == 0) {
    return {};
  }
  CsvBlock block;
  block.reserve(text.size() + CsvIndexer::spareBytes(dialect, columnCount), 0);
  std::memcpy(block.bytes(), text.data(), text.size());
  const CsvIndex index = CsvIndexer(dialect, columnCount).index(block, text.size(), isWhole);
  block.setRows(index.rowCount, columnCount);
  std::vector<Byte> bytes;
  for (long long row = 0; row < index.rowCount; ++row) {
    for (std::size_t column = 0; column < columnCount; ++column) {
      const CsvField field = block.field(row, column);
      const auto begin = static_cast<std::size_t>(field.bytes.data() - block.bytes());
      for (std::size_t i = 0; field.isQuoted && i < field.bytes.size(); ++i) {
        if (field.bytes[i] == dialect.quote) {
          bytes.push_back({begin + i, true});
        }
      }
      const std::size_t end = begin + field.bytes.size();
      if (column + 1 < columnCount && end < text.size() && text[end] == dialect.separator) {
        bytes.push_back({end, false});
      }
    }
  }
  return bytes;
}

CsvRawLine lineOf(std::string_view text, std::size_t begin, std::size_t end,
                  std::vector<Byte>::const_iterator& byte,
                  std::vector<Byte>::const_iterator lastByte) {
  CsvRawLine line;
  line.isCut = end - begin > kMaxBytes;
  const std::size_t shownEnd = line.isCut ? begin + kMaxBytes : end;
  std::size_t done = begin;
  const auto append = [&](std::size_t until) {
    line.text += QString::fromUtf8(text.data() + done, static_cast<qsizetype>(until - done));
    done = until;
  };
  for (; byte != lastByte && byte->offset < end; ++byte) {
    if (byte->offset < shownEnd) {
      append(byte->offset);
      line.marks.push_back({static_cast<int>(line.text.size()), byte->isQuote});
    }
  }
  append(shownEnd);
  return line;
}

}  // namespace

std::vector<CsvRawLine> csvRawLines(std::string_view start, const CsvDialect& dialect,
                                    bool isWhole) {
  const std::vector<Byte> bytes = meaningfulBytes(start, dialect, isWhole);
  auto byte = bytes.begin();
  std::vector<CsvRawLine> lines;
  std::size_t begin = 0;
  while (begin < start.size() && lines.size() < kMaxLines) {
    const std::size_t end = std::min(start.find_first_of("\r\n", begin), start.size());
    lines.push_back(lineOf(start, begin, end, byte, bytes.end()));
    const std::string_view rest = start.substr(end, 2);
    const std::size_t endSize = rest == "\r\n" ? 2 : std::min<std::size_t>(rest.size(), 1);
    if (endSize > 0) {
      lines.back().lineEnd = endSize == 2      ? QStringLiteral("CR LF")
                             : rest[0] == '\n' ? QStringLiteral("LF")
                                               : QStringLiteral("CR");
    }
    begin = end + endSize;
  }
  return lines;
}

}  // namespace kelvarin
