#include "columnar/files/exchange_journal.h"

#include "columnar/format/checksum.h"

namespace kelvarin {

namespace {

constexpr std::uint32_t kMagic = 0x4A474C47;  // the bytes GLGJ

void putName(ByteWriter& writer, const std::string& name) {
  writer.put(static_cast<std::uint32_t>(name.size()));
  writer.putBytes(asBytes(name));
}

// A name must not lead out of its folder.
bool readName(ByteReader& reader, std::string& name) {
  std::uint32_t size = 0;
  Bytes bytes;
  if (!reader.read(size) || !reader.readBytes(size, bytes)) {
    return false;
  }
  name = asText(bytes);
  return !name.empty() && name != "." && name != ".." &&
         name.find_first_of(std::string_view("/\0", 2)) == std::string::npos;
}

bool readLists(ByteReader& reader, ExchangeJournal& journal) {
  std::uint32_t count = 0;
  if (!reader.read(count)) {
    return false;
  }
  for (; count > 0; --count) {
    if (!readName(reader, journal.removed.emplace_back())) {
      return false;
    }
  }
  if (!reader.read(count)) {
    return false;
  }
  for (; count > 0; --count) {
    auto& [from, to] = journal.moves.emplace_back();
    if (!readName(reader, from) || !readName(reader, to)) {
      return false;
    }
  }
  return true;
}

}  // namespace

std::vector<unsigned char> encoded(const ExchangeJournal& journal) {
  std::vector<unsigned char> lists;
  ByteWriter writer(lists);
  writer.put(static_cast<std::uint32_t>(journal.removed.size()));
  for (const std::string& name : journal.removed) {
    putName(writer, name);
  }
  writer.put(static_cast<std::uint32_t>(journal.moves.size()));
  for (const auto& [from, to] : journal.moves) {
    putName(writer, from);
    putName(writer, to);
  }
  std::vector<unsigned char> bytes;
  ByteWriter whole(bytes);
  whole.put(kMagic);
  whole.put(static_cast<std::uint32_t>(lists.size()));
  whole.put(checksum(lists));
  whole.putBytes(lists);
  return bytes;
}

std::optional<ExchangeJournal> decodedJournal(Bytes bytes) {
  ByteReader reader(bytes);
  std::uint32_t magic = 0;
  std::uint32_t size = 0;
  std::uint32_t sum = 0;
  Bytes lists;
  if (!reader.read(magic) || magic != kMagic || !reader.read(size) || !reader.read(sum) ||
      !reader.readBytes(size, lists) || reader.remaining() != 0 || checksum(lists) != sum) {
    return std::nullopt;
  }
  ByteReader listReader(lists);
  ExchangeJournal journal;
  if (!readLists(listReader, journal) || listReader.remaining() != 0) {
    return std::nullopt;
  }
  return journal;
}

}  // namespace kelvarin
