#include "columnar/reader/gel_file.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include <sys/stat.h>

#include "columnar/codecs/descriptor_record.h"
#include "columnar/files/table_files.h"
#include "columnar/format/file_names.h"

namespace kelvarin {

namespace {

using Problem = OpenFailure::Problem;

}  // namespace

Result<std::unique_ptr<GelFile>, OpenFailure> GelFile::open(const std::string& path,
                                                            IncompleteFiles incomplete,
                                                            const OpenSource& openSource) {
  std::unique_ptr<GelFile> file(new GelFile);
  file->m_path = path;
  file->m_openSource = openSource;
  if (!file->openMain()) {
    return Failure{OpenFailure{Problem::exchangeDamaged, false}};
  }
  if (!file->m_source) {
    return Failure{OpenFailure{Problem::cannotOpen, false}};
  }
  unsigned char opening[kOpeningSize];
  if (file->m_source->readAt(0, opening, kOpeningSize) < kOpeningSize ||
      loadPacked<std::uint32_t>(opening) != kGelMagic || opening[kCompleteFlagOffset] > 1) {
    return Failure{OpenFailure{Problem::unreadable, false}};
  }
  const bool isIncomplete = opening[kCompleteFlagOffset] == 0;
  if (isIncomplete && incomplete == IncompleteFiles::refuse) {
    return Failure{OpenFailure{Problem::incomplete, true}};
  }
  file->m_header.restLength = loadPacked<std::uint32_t>(opening + kCompleteFlagOffset + 1);
  if (!file->readHeader()) {
    return Failure{OpenFailure{Problem::unreadable, isIncomplete}};
  }
  // A writer may finish the file at any time; the first state counts.
  file->m_header.isComplete = isIncomplete ? 0 : 1;
  return file;
}

bool GelFile::readHeader() {
  const std::uint64_t size = firstRecordOffset();
  if (size < kHeaderSize || size > m_source->size()) {
    return false;
  }
  std::vector<unsigned char> bytes(size);
  if (m_source->readAt(0, bytes.data(), bytes.size()) < bytes.size()) {
    return false;
  }
  ByteReader reader(bytes);
  if (!readRecord(reader, m_header) || m_header.columnCount > reader.remaining() / kSlotSize ||
      !reader.skip(m_header.columnCount * kSlotSize)) {
    return false;
  }
  Bytes metadata;
  if (!reader.readBytes(reader.remaining(), metadata) ||
      readMetadata(metadata, m_header.columnCount, m_metadata) != ReadStatus::ok) {
    return false;
  }
  m_layout = DescriptorLayout(m_metadata.columns, m_metadata.columnSetCount);
  return fitsRecord(kMinDescriptorsInRecord * m_layout.width());
}

GelFile::Identity GelFile::identityOf(const std::string& path) {
  struct stat status{};
  return ::stat(path.c_str(), &status) == 0 ? Identity{status.st_dev, status.st_ino} : Identity{};
}

// Finishes an open exchange; where that is impossible, the files are read under their current
// names.
bool GelFile::openMain() {
  constexpr int kMaxAttempts = 10;
  for (int i = 0; i < kMaxAttempts; ++i) {
    (void)finishExchangeBeforeReading(m_path);
    auto location = TableLocation::of(m_path);
    if (!location) {
      return false;
    }
    m_location = std::move(*location);
    const std::string path = m_location.pathOf(m_path);
    m_identity = identityOf(path);
    m_source = m_openSource(path);
    if (isCurrent()) {
      return true;
    }
  }
  return true;
}

bool GelFile::isCurrent() const {
  return identityOf(m_location.pathOf(m_path)) == m_identity &&
         (m_location.isMoved() || !isSomethingThere(journalFile(m_path)));
}

std::string GelFile::sidePath(int columnSet) const {
  std::string path = m_location.pathOf(sideFileName(m_path, columnSet));
  std::string former = formerSideFileName(m_path, columnSet);
  return isSomethingThere(path) || !isSomethingThere(former) ? std::move(path) : std::move(former);
}

std::unique_ptr<ByteSource> GelFile::openSide(int columnSet) const {
  auto side = m_openSource(sidePath(columnSet));
  if (!side && m_location.isMoved()) {
    side = m_openSource(sidePath(columnSet));  // it has just been renamed
  }
  return side && isCurrent() ? std::move(side) : nullptr;
}

MetaInfo GelFile::meta(std::size_t index) const {
  const GelColumn& gelColumn = column(index);
  return {static_cast<MetaTypeColumn>(gelColumn.type), gelColumn.typeArgument};
}

std::vector<std::size_t> GelFile::columnsInRowOrder() const {
  std::vector<std::size_t> order(m_metadata.columns.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [this](std::size_t left, std::size_t right) {
    return column(left).inputPosition < column(right).inputPosition;
  });
  return order;
}

std::uint64_t GelFile::firstRecordOffset() const {
  return std::uint64_t{m_header.restLength} + kOpeningSize;
}

}  // namespace kelvarin
