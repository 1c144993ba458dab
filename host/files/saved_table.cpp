#include "host/files/saved_table.h"

#include <cstring>
#include <optional>

#include "host/files/messages.h"

namespace messages = kelvarin::messages;

namespace {

constexpr std::string_view kMagic = "KelvTbl1";

// Takes pieces of the bytes, one after another; each take returns null where too few are left.
class PieceReader {
 public:
  explicit PieceReader(std::vector<unsigned char>& bytes)
      : m_next(bytes.data()), m_left(bytes.size()) {}

  unsigned char* take(std::size_t size) {
    if (size > m_left) {
      return nullptr;
    }
    m_next += size;
    m_left -= size;
    return m_next - size;
  }

  std::optional<std::uint32_t> takeCount() {
    const unsigned char* bytes = take(4);
    return bytes == nullptr ? std::nullopt : std::optional(qFromLittleEndian<std::uint32_t>(bytes));
  }

  // A count and as many bytes after it; the address of the count.
  unsigned char* takeText() {
    unsigned char* start = m_next;
    const auto count = takeCount();
    if (!count) {
      return nullptr;
    }
    return *count == kelvarin::kNullTextLength || take(*count) != nullptr ? start : nullptr;
  }

  unsigned char* takeValue(MetaTypeColumn type) {
    switch (type) {
      case MetaTypeColumn::number:
        return take(sizeof(double));
      case MetaTypeColumn::key:
        return take(sizeof(std::uint32_t));
      default:
        return takeText();
    }
  }

  bool isAtEnd() const { return m_left == 0; }

 private:
  unsigned char* m_next;
  std::size_t m_left;
};

bool takeColumns(PieceReader& pieces, PinOutMetaData& columns) {
  const auto count = pieces.takeCount();
  for (std::uint32_t i = 0; count && i < *count; ++i) {
    const unsigned char* meta = pieces.take(static_cast<std::size_t>(MetaInfo::memSize()));
    const unsigned char* name = meta == nullptr ? nullptr : pieces.takeText();
    if (name == nullptr) {
      return false;
    }
    const int column = static_cast<int>(i);
    columns.setColumnCount(column + 1);
    columns.setMeta(column, MetaInfo(meta));
    columns.setName(column, qStringFromBytes(name));
  }
  return count.has_value();
}

bool takeSortOrder(PieceReader& pieces, PinOutMetaData& columns) {
  const auto count = pieces.takeCount();
  QVector<SortInfos> order;
  for (std::uint32_t i = 0; count && i < *count; ++i) {
    unsigned char* entry = pieces.take(static_cast<std::size_t>(SortInfos::memSize()));
    if (entry == nullptr) {
      return false;
    }
    int position = 0;
    order.push_back(SortInfos(entry, &position));
    if (order.back().column() < 0 || order.back().column() >= columns.columnCount()) {
      return false;
    }
  }
  columns.setSortOrder(order);
  return count.has_value();
}

}  // namespace

void putTableHead(BufferWriter& out, const OneRow& columns) {
  out.putBytes(kMagic.data(), kMagic.size());
  const std::size_t start = out.size();
  out.put(std::uint32_t{0});
  out.put(static_cast<std::uint32_t>(columns.sz()));
  for (int i = 0; i < columns.sz(); ++i) {
    out.putMeta(columns.vMetaData()[i]);
    out.putText(columns.colName(i));
  }
  out.put(static_cast<std::uint32_t>(columns.sortInfos().size()));
  for (const SortInfos& entry : columns.sortInfos()) {
    unsigned char bytes[8];
    int size = 0;
    entry.write(bytes, &size);
    out.putBytes(bytes, static_cast<std::size_t>(size));
  }
  out.putAt(start, static_cast<std::uint32_t>(out.size() - start - 4));
}

void putTableRow(BufferWriter& out, const OneRow& row) {
  const std::size_t start = out.size();
  out.put(std::uint32_t{0});
  for (int i = 0; i < row.sz(); ++i) {
    const unsigned char* bytes = row.getAllColForRead()[i];
    out.put(static_cast<std::uint8_t>(bytes == nullptr ? 1 : 0));
    if (bytes != nullptr) {
      out.putBytes(bytes, kelvarin::sizeOfValue(row.getMetaType(i), bytes));
    }
  }
  out.putAt(start, static_cast<std::uint32_t>(out.size() - start - 4));
}

bool CItemHDReader::fail(const QString& text) {
  m_errorText = text;
  m_file.close();
  return false;
}

bool CItemHDReader::open(const QString& path) {
  m_errorText.clear();
  if (!m_file.open(path)) {
    return fail(m_file.errorText());
  }
  return readHead() || fail(messages::noSavedTable(path));
}

bool CItemHDReader::readHead() {
  char magic[kMagic.size()];
  unsigned char length[4];
  if (m_file.read(magic, sizeof magic) != sizeof magic ||
      std::string_view(magic, sizeof magic) != kMagic ||
      m_file.read(length, sizeof length) != sizeof length) {
    return false;
  }
  const long long size = qFromLittleEndian<std::uint32_t>(length);
  if (size > m_file.size() - m_file.position()) {
    return false;
  }
  m_bytes.resize(static_cast<std::size_t>(size));
  m_metaData = PinOutMetaData();
  PieceReader pieces(m_bytes);
  if (m_file.read(m_bytes.data(), size) != size || !takeColumns(pieces, m_metaData) ||
      !takeSortOrder(pieces, m_metaData)) {
    return false;
  }
  m_row.setNumberOfColumns(m_metaData.columnCount());
  return pieces.isAtEnd();
}

const OneRow* CItemHDReader::next() {
  if (!m_file.isOpen()) {
    return nullptr;
  }
  unsigned char length[4];
  const long long offset = m_file.position();
  const long long taken = m_file.read(length, sizeof length);
  if (taken == 0) {
    return nullptr;
  }
  const long long size = taken == sizeof length ? qFromLittleEndian<std::uint32_t>(length) : -1;
  if (size < 0 || size > m_file.size() - m_file.position()) {
    fail(messages::damagedTable(m_file.path(), offset));
    return nullptr;
  }
  m_bytes.resize(static_cast<std::size_t>(size));
  if (m_file.read(m_bytes.data(), size) != size || !pointAtValues()) {
    fail(messages::damagedTable(m_file.path(), offset));
    return nullptr;
  }
  return &m_row;
}

bool CItemHDReader::pointAtValues() {
  PieceReader pieces(m_bytes);
  unsigned char** columns = m_row.getAllColForWrite();
  for (int i = 0; i < m_row.sz(); ++i) {
    const unsigned char* isMissing = pieces.take(1);
    if (isMissing == nullptr || *isMissing > 1) {
      return false;
    }
    columns[i] = *isMissing == 1 ? nullptr : pieces.takeValue(m_row.getMetaType(i));
    if (columns[i] == nullptr && *isMissing == 0) {
      return false;
    }
  }
  return pieces.isAtEnd();
}
