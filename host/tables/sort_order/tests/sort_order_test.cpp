// Declared sort orders: how they are written, and which rows keep them.
#include <gtest/gtest.h>

#include <limits>

#include "host/contract/batch_collector.h"
#include "host/tables/sort_order/sort_order.h"

namespace kelvarin {
namespace {

PinOutMetaData columns() {
  PinOutMetaData metaData;
  metaData.setColumnCount(4);
  metaData.setNames({QStringLiteral("id"), QStringLiteral("last, first 0"), QStringLiteral("key"),
                     QStringLiteral("A")});
  metaData.setMeta(0, MetaInfo(MetaTypeColumn::number, 0));
  metaData.setMeta(2, MetaInfo(MetaTypeColumn::key, 0));
  return metaData;
}

std::string errorOf(const char* text) {
  const auto order = parseSortOrder(QString::fromUtf8(text), columns());
  return order ? std::string() : order.error().toStdString();
}

TEST(SortOrder, ReadsNamesWithBlanksAndCommas) {
  const auto order = parseSortOrder(QStringLiteral(" id 9 ,last, first 0 A,A Z, key 0"), columns());
  ASSERT_TRUE(order);
  EXPECT_EQ(*order, (QVector<SortInfos>{{0, SortType::numberDescending},
                                        {1, SortType::textAscending},
                                        {3, SortType::textDescending},
                                        {2, SortType::numberAscending}}));
  EXPECT_EQ(sortOrderText(*order, columns()), QStringLiteral("id 9, last, first 0 A, A Z, key 0"));
  EXPECT_TRUE(parseSortOrder(QStringLiteral(" "), columns())->isEmpty());
}

TEST(SortOrder, SaysWhatIsWrong) {
  EXPECT_EQ(errorOf("id A"),
            "sortedOn: the column 'id' holds numbers, so its direction is 0 or 9, not A.");
  EXPECT_EQ(errorOf("A 0"),
            "sortedOn: the column 'A' holds texts, so its direction is A or Z, not 0.");
  EXPECT_EQ(errorOf("nam A"),
            "sortedOn: there is no column 'nam'. The columns are: id, last, first 0, key, A.");
  EXPECT_EQ(errorOf("id 0, id 9"), "sortedOn: the column 'id' is listed twice.");
  for (const char* text : {"id", "id 0,", "id 7", "0"}) {
    EXPECT_EQ(errorOf(text).find("sortedOn: '"), 0u) << text;
  }
}

class Column {
 public:
  Column(MetaTypeColumn type, SortType direction) {
    m_metaData.setColumnCount(1);
    m_metaData.setMeta(0, MetaInfo(type, 0));
    m_checker = SortOrderChecker({SortInfos(0, direction)});
  }
  bool takes(double number) { return takes(bytesFromDouble(&m_buffer, number, 0)); }
  bool takes(const char* text) { return takes(bytesFromUtf8(&m_buffer, text)); }
  bool takesNull() { return takes(static_cast<unsigned char*>(nullptr)); }

 private:
  bool takes(unsigned char* bytes) {
    OneRow row(&m_metaData);
    row.getAllColForWrite()[0] = bytes;
    const bool isTaken = m_checker.accepts(row);
    EXPECT_EQ(isTaken, !isBreakInBatch(row));
    if (isTaken) {
      m_last.copyFrom(&row);
      m_hasLast = true;
    }
    m_buffer.reset();  // the checker keeps what it needs
    return isTaken;
  }

  bool isBreakInBatch(const OneRow& row) const {
    BatchCollector collector(typesOf(row), {});
    if (m_hasLast) {
      collector.append(m_last);
    }
    collector.append(row);
    return m_checker.breakIn(*collector.take()).has_value();
  }

  PinOutMetaData m_metaData;
  OneRow m_last{&m_metaData};
  bool m_hasLast = false;
  RowBuffer m_buffer{64};
  SortOrderChecker m_checker;
};

TEST(SortOrder, PutsMissingNumbersFirstAndOtherNaNsBehindAllNumbers) {
  Column up(MetaTypeColumn::number, SortType::numberAscending);
  EXPECT_TRUE(up.takesNull() && up.takesNull() && up.takes(-kInfinity) && up.takes(-0.0) &&
              up.takes(0.0));
  EXPECT_FALSE(up.takesNull());
  EXPECT_TRUE(up.takes(kInfinity) && up.takes(kNotANumber) && up.takes(kNotANumber));
  EXPECT_FALSE(up.takes(5.0));

  Column down(MetaTypeColumn::number, SortType::numberDescending);
  EXPECT_TRUE(down.takes(3.0) && down.takes(3.0) && down.takes(2.0));
  EXPECT_FALSE(down.takes(2.5));
  EXPECT_TRUE(down.takes(kNotANumber) && down.takesNull());
  EXPECT_FALSE(down.takes(kNotANumber));
}

TEST(SortOrder, ComparesTextsByTheirBytes) {
  Column up(MetaTypeColumn::text, SortType::textAscending);
  EXPECT_TRUE(up.takesNull() && up.takes("") && up.takes("Z") && up.takes("a") && up.takes("ab") &&
              up.takes("é"));
  EXPECT_FALSE(up.takes("b"));
  EXPECT_FALSE(up.takesNull());

  Column down(MetaTypeColumn::text, SortType::textDescending);
  EXPECT_TRUE(down.takes("b") && down.takes("ab") && down.takes("a") && down.takes("") &&
              down.takesNull());
  EXPECT_FALSE(down.takes(""));
}

TEST(SortOrder, ComparesLaterColumnsWhereEarlierOnesAgree) {
  PinOutMetaData metaData = columns();
  RowBuffer buffer(256);
  OneRow row(&metaData);
  SortOrderChecker checker(
      {SortInfos(2, SortType::numberAscending), SortInfos(0, SortType::numberDescending)});
  const auto accepts = [&](unsigned key, double number) {
    buffer.reset();
    row.getAllColForWrite()[2] = bytesFromKey(&buffer, key);
    row.getAllColForWrite()[0] = bytesFromDouble(&buffer, number, 0);
    return checker.accepts(row);
  };
  EXPECT_TRUE(accepts(1, 5) && accepts(1, 4) && accepts(2, 9));
  EXPECT_FALSE(accepts(2, 10));
  EXPECT_EQ(checker.refusedColumn(), 0);
  EXPECT_FALSE(accepts(1, 0));
  EXPECT_EQ(checker.refusedColumn(), 2);

  BatchCollector collector(typesOf(row), {});
  for (const auto& [key, number] : {std::pair{1u, 5.0}, {1u, 4.0}, {2u, 9.0}, {2u, 10.0}}) {
    buffer.reset();
    row.getAllColForWrite()[2] = bytesFromKey(&buffer, key);
    row.getAllColForWrite()[0] = bytesFromDouble(&buffer, number, 0);
    collector.append(row);
  }
  const auto found = checker.breakIn(*collector.take());
  ASSERT_TRUE(found);
  EXPECT_EQ(found->row, 3u);
  EXPECT_EQ(found->column, 0);
}

}  // namespace
}  // namespace kelvarin
