#include "columnar/actions/opened_table.h"

#include "columnar/actions/messages.h"
#include "columnar/actions/system_paths.h"
#include "columnar/reader/failure_texts.h"
#include "host/files/file_hints.h"

namespace kelvarin {

Result<std::unique_ptr<GelFile>, QString> openTable(const QString& file) {
  if (file.isEmpty()) {
    return Failure{columnar_messages::noFileChosen()};
  }
  const std::string path = systemPath(file);
  auto opened = GelFile::open(path, IncompleteFiles::accept);
  if (opened) {
    return std::move(*opened);
  }
  QString text = openFailureText(path, opened.error().problem);
  const QString missing = missingFileHint(file);
  const QString hint = missing.isEmpty() ? foreignFormatHint(file, FileFormat::columnar) : missing;
  return Failure{hint.isEmpty() ? text : text + u' ' + hint};
}

}  // namespace kelvarin
