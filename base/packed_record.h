// A fixed structure of a file, described once: a record type has `static constexpr auto fields()`,
// a tuple of pointers to its members in file order, and is sized, read and written by that list.
#pragma once

#include <tuple>

#include "base/byte_cursor.h"

namespace kelvarin {

template <typename Record, typename Value>
Value valueOfMember(Value Record::* member);

template <typename Record>
constexpr std::size_t packedSize() {
  return std::apply([](auto... member) { return (sizeof(valueOfMember(member)) + ... + 0); },
                    Record::fields());
}

// False when the bytes end before the record does; the record is then partly read.
template <typename Record>
[[nodiscard]] bool readRecord(ByteReader& reader, Record& record) {
  return std::apply([&](auto... member) { return (reader.read(record.*member) && ...); },
                    Record::fields());
}

template <typename Record>
void writeRecord(ByteWriter& writer, const Record& record) {
  std::apply([&](auto... member) { (writer.put(record.*member), ...); }, Record::fields());
}

}  // namespace kelvarin
