#include "base/byte_cursor.h"

#include <gtest/gtest.h>

#include "base/packed_record.h"

namespace kelvarin {

namespace {

using Buffer = std::vector<unsigned char>;

TEST(ByteCursor, BytesAreLittleEndianAndWithoutPadding) {
  Buffer bytes;
  ByteWriter writer(bytes);
  writer.put(std::uint8_t{0x01});
  writer.put(std::uint32_t{0x05040302});
  writer.putZeros(2);
  writer.put(-2.0);
  writer.putBytes(asBytes("ab"));
  EXPECT_EQ(bytes, (Buffer{1, 2, 3, 4, 5, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xC0, 'a', 'b'}));
}

TEST(ByteCursor, AReadPastTheEndChangesNothing) {
  const Buffer bytes{1, 2, 3, 4, 5};
  ByteReader reader(bytes);
  std::uint32_t number = 77;
  Bytes piece;
  ASSERT_TRUE(reader.skip(2));
  EXPECT_FALSE(reader.read(number));
  EXPECT_FALSE(reader.readBytes(4, piece));
  EXPECT_FALSE(reader.skip(static_cast<std::size_t>(-1)));
  EXPECT_EQ(number, 77u);
  EXPECT_EQ(reader.position(), 2u);
  ASSERT_TRUE(reader.readBytes(3, piece));
  EXPECT_EQ(asText(piece), "\3\4\5");
  EXPECT_EQ(reader.remaining(), 0u);
  EXPECT_TRUE(reader.readBytes(0, piece) && piece.empty());
}

struct Mixed {
  std::uint8_t kind = 0;
  double number = 0.0;
  std::uint16_t count = 0;

  static constexpr auto fields() { return std::tuple(&Mixed::kind, &Mixed::number, &Mixed::count); }
};

TEST(PackedRecord, HasItsFieldsInTheirOrder) {
  static_assert(packedSize<Mixed>() == 11);
  Buffer bytes;
  ByteWriter writer(bytes);
  writeRecord(writer, Mixed{7, 1.5, 0x0201});
  ASSERT_EQ(bytes.size(), packedSize<Mixed>());
  EXPECT_EQ(bytes.front(), 7);
  EXPECT_EQ(loadPacked<double>(bytes.data() + 1), 1.5);
  EXPECT_EQ(bytes[9], 1);

  Mixed read;
  ByteReader reader(bytes);
  ASSERT_TRUE(readRecord(reader, read));
  EXPECT_EQ(read.kind, 7);
  EXPECT_EQ(read.number, 1.5);
  EXPECT_EQ(read.count, 0x0201);
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    ByteReader cut(Bytes(bytes).first(size));
    EXPECT_FALSE(readRecord(cut, read)) << size;
  }
}

}  // namespace

}  // namespace kelvarin
