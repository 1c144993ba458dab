#include "columnar/reader/gel_file.h"

#include <algorithm>
#include <numeric>

#include "columnar/codecs/descriptor_record.h"
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
  file->m_source = openSource(path);
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
  // A writer may finish the file at any time; what was told at first holds.
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
  return fitsRecord(kFewestDescriptorsInRecord * m_layout.width());
}

std::string GelFile::sidePath(int columnSet) const {
  return sideFileName(m_path, columnSet);
}

std::unique_ptr<ByteSource> GelFile::openSide(int columnSet) const {
  return m_openSource(sidePath(columnSet));
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
