#include "host/tables/files/write_behind.h"

#include <atomic>

#include <gtest/gtest.h>

namespace kelvarin {

namespace {

// Rows of a number, a key and a text, which are null where the row's number says so.
class RowMaker {
 public:
  RowMaker() {
    m_row.setNumberOfColumns(3);
    m_row.setMetaType(0, MetaInfo(MetaTypeColumn::number, 0));
    m_row.setMetaType(1, MetaInfo(MetaTypeColumn::key, 0));
    m_row.setColName(2, QStringLiteral("text"));
  }
  const OneRow& row(int number) {
    m_buffer.reset();
    unsigned char** values = m_row.getAllColForWrite();
    values[0] = number % 3 == 0 ? nullptr : bytesFromDouble(&m_buffer, number, 0);
    values[1] = number % 5 == 0 ? nullptr : bytesFromKey(&m_buffer, static_cast<unsigned>(number));
    values[2] = number % 7 == 0 ? nullptr : bytesFromUtf8(&m_buffer, textOf(number));
    return m_row;
  }
  static std::string textOf(int number) {
    return number % 1000 == 999 ? std::string(300000, 'x')
                                : std::string(static_cast<std::size_t>(number % 40), 'a');
  }

 private:
  PinOutMetaData m_metaData;
  OneRow m_row{&m_metaData};
  RowBuffer m_buffer{1024};
};

bool isRow(const OneRow& row, int number) {
  bool isMissing[3];
  const double first = row.colAsDouble(0, &isMissing[0]);
  const double second = row.colAsDouble(1, &isMissing[1]);
  const std::string_view third = row.colAsUtf8(2, &isMissing[2]);
  return isMissing[0] == (number % 3 == 0) && (isMissing[0] || first == number) &&
         isMissing[1] == (number % 5 == 0) && (isMissing[1] || second == number) &&
         isMissing[2] == (number % 7 == 0) && (isMissing[2] || third == RowMaker::textOf(number));
}

}  // namespace

TEST(WriteBehind, writesEveryRowInOrder) {
  for (const int rowCount : {0, 1, 20000}) {
    RowMaker maker;
    int written = 0;
    int wrong = 0;
    WriteBehind behind(maker.row(0), nullptr, [&](const OneRow& row) {
      wrong += isRow(row, written++) && row.colName(2) == QLatin1String("text") ? 0 : 1;
      return Status<QString>(Done{});
    });
    for (int i = 0; i < rowCount; ++i) {
      ASSERT_TRUE(behind.push(maker.row(i)));
    }
    EXPECT_TRUE(behind.finish());
    EXPECT_EQ(written, rowCount);
    EXPECT_EQ(wrong, 0);
  }
}

TEST(WriteBehind, afterAFailureNothingMoreIsWritten) {
  RowMaker maker;
  int written = 0;
  WriteBehind behind(maker.row(0), nullptr, [&](const OneRow&) {
    return ++written < 3 ? Status<QString>(Done{}) : Failure{QStringLiteral("full")};
  });
  int pushed = 0;
  while (pushed < 1000000 && behind.push(maker.row(1))) {
    ++pushed;
  }
  EXPECT_LT(pushed, 1000000);
  const auto status = behind.finish();
  ASSERT_FALSE(status);
  EXPECT_EQ(status.error(), QLatin1String("full"));
  EXPECT_EQ(written, 3);

  // The failure of the last rows is found at the end.
  WriteBehind last(maker.row(0), nullptr,
                   [](const OneRow&) -> Status<QString> { return Failure{QStringLiteral("no")}; });
  EXPECT_TRUE(last.push(maker.row(1)));
  EXPECT_FALSE(last.finish());
}

TEST(WriteBehind, stopsWithoutWritingTheRest) {
  RowMaker maker;
  std::atomic<bool> mayGoOn{false};
  std::atomic<int> written{0};
  {
    WriteBehind behind(maker.row(0), nullptr, [&](const OneRow&) {
      mayGoOn.wait(false);
      ++written;
      return Status<QString>(Done{});
    });
    // Three packets of them, of which the first is being written.
    int pushed = 0;
    for (; pushed < 3 * 128 * 1024 / 32; ++pushed) {
      behind.push(maker.row(22));
    }
    std::thread opener([&] {
      mayGoOn = true;
      mayGoOn.notify_all();
    });
    behind.stop();
    opener.join();
    EXPECT_LT(written, pushed);
  }
}

}  // namespace kelvarin
