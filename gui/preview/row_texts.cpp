#include "gui/preview/row_texts.h"

#include <algorithm>
#include <numeric>

#include "base/shortest_number.h"
#include "host/contract/column_bytes.h"

namespace kelvarin {

namespace {

constexpr long long kRowsInPiece = 500;

class Writer {
 public:
  Writer(const PreviewRows& rows, const RowTextRequest& request)
      : m_rows(rows),
        m_request(request),
        m_separator(request.format == TextFormat::csv ? ',' : '\t') {}

  QByteArray header() const {
    QByteArray line;
    for (const int column : m_request.columns) {
      line += line.isNull() ? "" : QByteArray(1, m_separator);
      appendText(m_rows.columns()[static_cast<std::size_t>(column)].name.toUtf8(), line);
    }
    return line + lineEnd();
  }

  // Column by column, as the values lie together.
  bool append(long long first, long long end, QByteArray& piece) const {
    RowNumbers rows(static_cast<std::size_t>(end - first));
    std::iota(rows.begin(), rows.end(), static_cast<std::uint32_t>(first));
    if (m_request.order != nullptr) {
      const auto from = m_request.order->begin() + static_cast<std::ptrdiff_t>(first);
      std::copy_n(from, rows.size(), rows.begin());
    }
    std::vector<QByteArray> lines(rows.size());
    bool isFirst = true;
    for (const int column : m_request.columns) {
      const MetaTypeColumn type = m_rows.columns()[static_cast<std::size_t>(column)].meta;
      std::size_t line = 0;
      const bool isRead = m_rows.visit(column, rows, [&](long long, const unsigned char* bytes) {
        if (!isFirst) {
          lines[line] += m_separator;
        }
        appendValue(type, bytes, lines[line]);
        ++line;
        return true;
      });
      if (!isRead) {
        return false;
      }
      isFirst = false;
    }
    for (const QByteArray& line : lines) {
      piece += line;
      piece += lineEnd();
    }
    return true;
  }

 private:
  static QByteArray lineEnd() { return QByteArrayLiteral("\n"); }

  void appendValue(MetaTypeColumn type, const unsigned char* bytes, QByteArray& line) const {
    char digits[kLongestNumberText];
    const char* end = digits;
    if (type == MetaTypeColumn::number) {
      const double number = numberFromBytes(bytes);
      end = isNullNumber(number) ? digits : appendShortest(digits, number);
    } else if (type == MetaTypeColumn::key) {
      const std::uint32_t key = keyFromBytes(bytes);
      end = isNullKey(key) ? digits : appendWhole(digits, key);
    } else if (!isNullText(bytes)) {
      const std::string_view text = textFromBytes(bytes);
      appendText(QByteArray(text.data(), static_cast<qsizetype>(text.size())), line);
      return;
    }
    line.append(digits, end - digits);
  }

  void appendText(const QByteArray& text, QByteArray& line) const {
    const bool isCsv = m_request.format == TextFormat::csv;
    const bool needsQuotes = text.contains(m_separator) || text.contains('"') ||
                             text.contains('\n') || text.contains('\r') ||
                             (isCsv && text.isEmpty());
    if (!needsQuotes) {
      line += text;
      return;
    }
    line += '"';
    line += QByteArray(text).replace("\"", "\"\"");
    line += '"';
  }

  const PreviewRows& m_rows;
  const RowTextRequest& m_request;
  const char m_separator;
};

}  // namespace

bool writeRowTexts(const PreviewRows& rows, const RowTextRequest& request,
                   const StopFlag& isStopped, const std::function<bool(const QByteArray&)>& write) {
  const Writer writer(rows, request);
  if (request.hasHeader && !write(writer.header())) {
    return false;
  }
  for (long long first = request.first; first < request.end; first += kRowsInPiece) {
    QByteArray piece;
    const long long end = std::min(request.end, first + kRowsInPiece);
    if (isStopped || !writer.append(first, end, piece) || !write(piece)) {
      return false;
    }
  }
  return true;
}

}  // namespace kelvarin
