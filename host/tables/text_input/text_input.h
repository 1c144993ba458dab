// The text of a file: uncompressed, in UTF-8, and read once from its start to its end.
//
// gzip and zstd are known by their first bytes. A file of plain UTF-8 is read into the caller's
// memory at once.
// Used by: the reader of CSV files, and whoever looks at the start of one.
// Threads: one at a time; fractionRead() any.
// Errors: texts for the user.
#pragma once

#include <climits>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "host/tables/text_input/file_stream.h"
#include "host/tables/text_input/peeked_stream.h"
#include "host/tables/text_input/text_encoding.h"

namespace kelvarin {

class TextInput {
 public:
  using IsStopped = std::function<bool()>;

  // "-" is standard input. Without `encoding` it is the one that the text seems to have.
  Status<QString> open(
      const QString& path, std::optional<TextEncoding> encoding,
      IsStopped isStopped = [] { return false; });

  const QString& path() const { return m_path; }
  TextEncoding encoding() const { return m_encoding; }
  // No pipe.
  bool canOpenAgain() const { return m_file.file().canReadAgain(); }
  // Not compressed, and UTF-8 in the file.
  bool isPlain() const { return m_stages.size() == 1; }
  // In bytes of the file; -1 where that is unknown.
  long long fileSize() const { return m_file.file().size(); }
  // Of the file, 0 to 1; -1 where that is unknown.
  float fractionRead() const;

  // Before open(): start() of a pipe has what has come when its writer pauses after so many lines,
  // which are waited for in any case.
  void endStartAtPauseAfter(long long lines) { m_linesBeforePause = lines; }
  // As many bytes of the start as a look at a file takes, before anything is read; the whole text
  // where it is shorter.
  Result<std::string_view, QString> start() { return look(startSize(), m_linesBeforePause); }
  // The first bytes, before anything is read, by which other formats are known.
  Result<std::string_view, QString> signature();
  // start() was the whole text.
  bool isStartWhole() const { return m_stages.back()->isWhole(); }
  Result<ByteStream::Piece, QString> readNext(char* bytes, std::size_t size,
                                              std::size_t atLeast = 1) {
    return m_stages.back()->readNext(bytes, size, atLeast);
  }

 private:
  // At so many bytes of the start, or at what has come of a pipe when its writer pauses after so
  // many lines.
  Result<std::string_view, QString> look(std::size_t size, long long lines);
  std::size_t startSize() const;
  void add(std::unique_ptr<ByteStream> stage);

  QString m_path;
  long long m_linesBeforePause = LLONG_MAX;
  TextEncoding m_encoding = TextEncoding::utf8;
  FileStream m_file;
  std::vector<std::unique_ptr<ByteStream>> m_conversions;
  std::vector<std::unique_ptr<PeekedStream>> m_stages;  // of the file and of each conversion
};

}  // namespace kelvarin
