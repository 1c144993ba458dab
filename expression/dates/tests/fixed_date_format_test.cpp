#include "expression/dates/fixed_date_format.h"

#include <gtest/gtest.h>

namespace kelvarin {
namespace {

TEST(FixedDateFormat, ReadsWhatTheGeneralParserReads) {
  const char* formats[] = {"yyyy-MM-dd",
                           "yyyyMMdd",
                           "dd/MM/yyyy",
                           "yyyy-MM-dd hh:mm:ss",
                           "yyyyMMdd HHmmss",
                           "dd.MM.yyyy hh:mm",
                           "yyyy-MM-dd hh:mm:ss.zzz",
                           "yyyy-MM-ddThh:mm:ss.zzzZ",
                           "yyyy-MM-dd'T'hh:mm:ss.zzz"};
  const char* texts[] = {"2024-02-29",
                         "2023-02-29",
                         "0000-01-01",
                         "20240229",
                         "29/02/2024",
                         "2024-02-29 23:59:59",
                         "20240229 240000",
                         "29.02.2024 00:00",
                         "2024-02-29 23:59:59.007",
                         "2024-02-29T23:59:59.007",
                         "2024-02-29T23:59:59.007Z",
                         "2024-02-29T23:59:59Z",
                         "2024-13-01",
                         "2024-2-9",
                         "",
                         "+024-02-29",
                         "2024-02-29 23:59:60",
                         "2024/02/29",
                         "-024-02-29"};
  for (const char* format : formats) {
    const std::optional<FixedDateFormat> fixed = FixedDateFormat::of(format);
    ASSERT_TRUE(fixed) << format;
    for (const char* text : texts) {
      const QDateTime general = QDateTime::fromString(text, QString(format));
      EXPECT_EQ(fixed->parse(text), QDateTime(general.date(), general.time(), Qt::UTC))
          << format << " of " << text;
    }
  }
}

TEST(FixedDateFormat, DropsDigitsBelowTheMillisecond) {
  const auto parsed = [](const char* format, const char* text) {
    return FixedDateFormat::of(QString(format))->parse(text);
  };
  const QDateTime time(QDate(1969, 12, 31), QTime(23, 59, 59, 999), Qt::UTC);
  constexpr const char* kZoned = "yyyy-MM-ddThh:mm:ss.zzzZ";
  EXPECT_EQ(parsed(kZoned, "1969-12-31T23:59:59.999Z"), time);
  EXPECT_EQ(parsed(kZoned, "1969-12-31T23:59:59.999999Z"), time);
  EXPECT_EQ(parsed("zzz ss:mm:hh dd.MM.yyyy", "999999999 59:59:23 31.12.1969"), time);
  for (const char* bad : {"1969-12-31T23:59:59.99Z", "1969-12-31T23:59:59.999x99Z",
                          "1969-12-31T23:59:59.999Z9", "1969-12-31T23:59:59.999999"}) {
    EXPECT_FALSE(parsed(kZoned, bad).isValid()) << bad;
  }
  EXPECT_FALSE(parsed("yyyy-MM-dd hh:mm:ss", "1969-12-31 23:59:599").isValid());
}

TEST(FixedDateFormat, LeavesOtherFormatsAlone) {
  for (const char* format :
       {"", "yyyy", "hh:mm:ss", "yy-MM-dd", "d/M/yyyy", "yyyy-MMM-dd", "yyyyy-MM-dd",
        "yyyy-MM-dd yyyy", "yyyy-MM-dd'x'hh:mm", "yyyy-MM-dd hh:mm ap", "yyyy-MM-dd t"}) {
    EXPECT_FALSE(FixedDateFormat::of(format)) << format;
  }
}

}  // namespace
}  // namespace kelvarin
