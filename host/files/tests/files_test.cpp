#include <cstring>
#include <functional>

#include <gtest/gtest.h>
#include <QFile>
#include <QTemporaryDir>

#include "host/files/buffer_writer.h"
#include "host/files/read_file.h"
#include "host/files/saved_table.h"

namespace {

TEST(BufferWriter, ABufferIsLittleEndianAndCanBeCorrected) {
  BufferWriter out;
  out.put(std::uint32_t{0});
  out.put(std::uint16_t{0x0102});
  out.putText(QString("a"));
  out.putAt(0, std::uint32_t{7});
  const unsigned char expected[] = {7, 0, 0, 0, 2, 1, 1, 0, 0, 0, 'a'};
  ASSERT_EQ(out.size(), sizeof expected);
  EXPECT_EQ(std::memcmp(out.data(), expected, sizeof expected), 0);
}

class Files : public ::testing::Test {
 protected:
  QString write(const QByteArray& bytes) {
    const QString path = folder.filePath("file");
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    return path;
  }
  QTemporaryDir folder;
};

TEST_F(Files, ACachedFileReadsLikeADirectOne) {
  QByteArray bytes;
  for (int i = 0; i < 1000; ++i) {
    bytes += static_cast<char>(i * 7);
  }
  const QString path = write(bytes);
  MyReadFile direct;
  MyReadFileCached cached(64);
  ASSERT_TRUE(direct.open(path) && cached.open(path));
  unsigned state = 1;
  for (int i = 0; i < 500; ++i) {
    state = state * 1103515245u + 12345u;
    const long long offset = state / 65536 % 1001;
    const long long size = state / 256 % 200;
    if (state % 3 == 0) {
      ASSERT_EQ(direct.seek(offset), cached.seek(offset));
    }
    char fromDirect[200] = {};
    char fromCached[200] = {};
    ASSERT_EQ(direct.read(fromDirect, size), cached.read(fromCached, size));
    ASSERT_EQ(std::memcmp(fromDirect, fromCached, 200), 0);
    ASSERT_EQ(direct.position(), cached.position());
  }
  EXPECT_FALSE(cached.seek(1001));
  EXPECT_FALSE(cached.seek(-1));
  EXPECT_EQ(cached.size(), 1000);
}

TEST_F(Files, WhatCannotBeReadIsNamed) {
  MyReadFile file;
  EXPECT_FALSE(file.open(folder.filePath("absent")));
  EXPECT_TRUE(file.errorText().contains("absent"));
  EXPECT_FALSE(file.open(folder.path()));
  EXPECT_TRUE(file.errorText().contains("folder"));
  EXPECT_FALSE(QUBiFileInfo(folder.filePath("absent")).exists());
  EXPECT_EQ(QUBiFileInfo(write("abc")).size(), 3);
}

class SavedTables : public Files {
 protected:
  SavedTables() {
    columns.setColumnCount(3);
    columns.setNames({"n", "k", QString::fromUtf8("t\xC3\xA9")});
    columns.setMetas(
        {{MetaTypeColumn::number, 0}, {MetaTypeColumn::key, 0}, {MetaTypeColumn::text, 0}});
    columns.setSortOrder({{0, SortType::numberDescending}});
    OneRow row(&columns);
    RowBuffer buffer(64);
    putTableHead(out, row);
    for (int i = 0; i < 3; ++i) {
      row.getAllColForWrite()[0] = bytesFromDouble(&buffer, i, 0);
      row.getAllColForWrite()[1] = i == 1 ? nullptr : bytesFromKey(&buffer, 7);
      row.getAllColForWrite()[2] = bytesFromQString(&buffer, i == 2 ? QString() : QString("text"));
      putTableRow(out, row);
    }
  }
  QByteArray bytes() const {
    return {reinterpret_cast<const char*>(out.data()), static_cast<qsizetype>(out.size())};
  }

  PinOutMetaData columns;
  BufferWriter out;
};

TEST_F(SavedTables, AreReadBack) {
  CItemHDReader reader;
  ASSERT_TRUE(reader.open(write(bytes()))) << reader.errorText().toStdString();
  EXPECT_EQ(reader.columns().getColNamesDeep(), columns.names());
  EXPECT_EQ(reader.columns().sortInfos(), columns.sortOrder());
  const OneRow* row = reader.next();
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->col(2, nullptr), "text");
  row = reader.next();
  EXPECT_TRUE(row->col(1, nullptr).isNull());
  row = reader.next();
  EXPECT_EQ(row->colAsDouble(0, nullptr), 2);
  EXPECT_TRUE(row->col(2, nullptr).isNull());
  EXPECT_EQ(reader.next(), nullptr);
  EXPECT_TRUE(reader.errorText().isEmpty());
}

// Reads all rows of a file that may be anything; false when the reader found it damaged.
bool isWhole(const QString& path) {
  CItemHDReader reader;
  if (!reader.open(path)) {
    return false;
  }
  while (const OneRow* row = reader.next()) {
    for (int i = 0; i < row->sz(); ++i) {
      (void)row->col(i, nullptr);
    }
  }
  return reader.errorText().isEmpty();
}

TEST_F(SavedTables, CutAnywhereAreSeenToBeCut) {
  int whole = 0;
  for (qsizetype length = 0; length < bytes().size(); ++length) {
    whole += isWhole(write(bytes().left(length))) ? 1 : 0;
  }
  EXPECT_EQ(whole, 3);  // behind the head, the first and the second row
}

TEST_F(SavedTables, ForgedAnywhereAreReadWithinBounds) {
  for (qsizetype i = 0; i < bytes().size(); ++i) {
    for (const char forged : {'\xFF', '\x00', '\x7F'}) {
      QByteArray forgedBytes = bytes();
      forgedBytes[i] = forged;
      (void)isWhole(write(forgedBytes));
    }
  }
  QByteArray wrongMagic = bytes();
  wrongMagic[0] = 'X';
  EXPECT_FALSE(isWhole(write(wrongMagic)));
}

}  // namespace
