// Compiled formats read and print what QDateTime does, and say so where they do not know.

#include <gtest/gtest.h>

#include <QDateTime>
#include <QLocale>

#include "expression/dates/date_printer.h"
#include "expression/dates/date_reader.h"
#include "expression/dates/date_text_format.h"
#include "expression/dates/tests/date_samples.h"

namespace kelvarin {
namespace {

constexpr const char* kFormats[] = {"yyyy-MM-dd",
                                    "yyyyMMdd",
                                    "yyMMdd",
                                    "dd/MM/yyyy",
                                    "d/M/yyyy",
                                    "M/d/yy",
                                    "dd.MM.yyyy hh:mm",
                                    "yyyy-MM-dd hh:mm:ss",
                                    "yyyyMMdd HHmmss",
                                    "yyyy-MM-ddThh:mm:ss",
                                    "yyyy-MM-dd'T'HH:mm:ss",
                                    "hh:mm:ss",
                                    "H:m:s",
                                    "MM/yyyy",
                                    "yyyy",
                                    "h:mm ap",
                                    "d MMM yyyy h:mm AP",
                                    "ddd, d MMM yyyy",
                                    "dddd d MMMM yyyy HH:mm",
                                    "MMM d, yyyy",
                                    "yyyy'年'M'月'd'日'"};

struct GeneralFormat {
  QString format;
  bool isOfLocale = false;

  QDateTime read(const std::string& text) const {
    const QString whole = QString::fromStdString(text) + QChar(0xE000) + "UTC";
    const QString pattern = format + QChar(0xE000) + "t";
    return isOfLocale ? QLocale::system().toDateTime(whole, pattern)
                      : QDateTime::fromString(whole, pattern);
  }
  std::string print(Instant instant) const {
    const auto date = QDateTime::fromMSecsSinceEpoch(instant, Qt::UTC);
    return (isOfLocale ? QLocale::system().toString(date, format) : date.toString(format))
        .toStdString();
  }
};

class Comparison {
 public:
  explicit Comparison(GeneralFormat general)
      : m_general(std::move(general)),
        m_reader(DateReader::of(m_general.format, m_general.isOfLocale)),
        m_printer(m_general.format, m_general.isOfLocale) {}

  bool isCompiled() const { return m_reader.has_value() && m_printer.isCompiled(); }

  void compare(Instant instant, DateSamples& samples) {
    const std::string text = m_printer.print(instant, ClockZone::utc()).toStdString();
    EXPECT_EQ(text, m_general.print(instant))
        << m_general.format.toStdString() << " of " << instant;
    if (m_reader) {
      compareReading(text);
      compareReading(samples.spoilt(text));
    }
  }

  std::size_t readCount() const { return m_readCount; }
  std::size_t refusedCount() const { return m_refusedCount; }

 private:
  void compareReading(const std::string& text) {
    const DateReader::Reading reading = m_reader->read(text);
    const bool isAnswered = reading.legibility != Legibility::unknown && reading.zone.empty();
    if (!isAnswered || text.empty()) {
      return;
    }
    const QDateTime date = m_general.read(text);
    const bool isDate = reading.legibility == Legibility::date;
    ++(isDate ? m_readCount : m_refusedCount);
    EXPECT_EQ(date.isValid(), isDate) << m_general.format.toStdString() << " of " << text;
    if (isDate) {
      EXPECT_EQ(QDateTime(date.date(), date.time(), Qt::UTC).toMSecsSinceEpoch(),
                reading.clock.milliseconds)
          << m_general.format.toStdString() << " of " << text;
    }
  }

  GeneralFormat m_general;
  std::optional<DateReader> m_reader;
  DatePrinter m_printer;
  std::size_t m_readCount = 0;
  std::size_t m_refusedCount = 0;
};

TEST(CompiledDates, KnownFormatsAgreeWithTheGeneralParser) {
  DateSamples samples(1);
  const std::size_t count = dateSampleCount(20'000) / std::size(kFormats);
  for (const char* format : kFormats) {
    Comparison comparison({QString::fromUtf8(format)});
    ASSERT_TRUE(comparison.isCompiled()) << format;
    for (std::size_t i = 0; i < count; ++i) {
      comparison.compare(samples.instant(), samples);
    }
    EXPECT_GT(comparison.readCount(), count / 2) << format;
  }
}

TEST(CompiledDates, RandomFormatsAgreeWithTheGeneralParser) {
  constexpr std::size_t instants = 20;
  DateSamples samples(2);
  std::size_t readCount = 0;
  std::size_t refusedCount = 0;
  for (std::size_t count = dateSampleCount(20'000) / instants; count > 0; --count) {
    Comparison comparison({samples.format()});
    for (std::size_t i = 0; i < instants; ++i) {
      comparison.compare(samples.instant(), samples);
    }
    readCount += comparison.readCount();
    refusedCount += comparison.refusedCount();
  }
  EXPECT_GT(readCount, 1000U);
  EXPECT_GT(refusedCount, 100U);
}

// The names are those of the locale that the variable LC_ALL names.
TEST(CompiledDates, FormatsOfTheLocaleAgreeWithTheGeneralParser) {
  DateSamples samples(3);
  const QLocale locale = QLocale::system();
  for (const QLocale::FormatType form : {QLocale::ShortFormat, QLocale::LongFormat}) {
    for (const QString& format :
         {locale.dateFormat(form), locale.timeFormat(form), locale.dateTimeFormat(form)}) {
      Comparison comparison({format, true});
      for (std::size_t i = 0; i < dateSampleCount(6'000) / 6; ++i) {
        comparison.compare(samples.instant(), samples);
      }
    }
  }
}

TEST(CompiledDates, DigitsBelowTheMillisecondAreDropped) {
  const auto reading = [](const char* format, const char* text) {
    return DateTextFormat(QString::fromLatin1(format), false).read(text);
  };
  const Instant lastOf1969 = -1;
  constexpr const char* zoned = "yyyy-MM-ddThh:mm:ss.zzzZ";
  EXPECT_EQ(reading(zoned, "1969-12-31T23:59:59.999Z").clock().milliseconds, lastOf1969);
  EXPECT_EQ(reading(zoned, "1969-12-31T23:59:59.999999Z").clock().milliseconds, lastOf1969);
  EXPECT_EQ(
      reading("zzz ss:mm:hh dd.MM.yyyy", "999999999 59:59:23 31.12.1969").clock().milliseconds,
      lastOf1969);
  for (const char* bad : {"1969-12-31T23:59:59.99Z", "1969-12-31T23:59:59.999x99Z",
                          "1969-12-31T23:59:59.999Z9", "1969-12-31T23:59:59.999999"}) {
    EXPECT_FALSE(reading(zoned, bad).isDate()) << bad;
  }
  EXPECT_FALSE(reading("yyyy-MM-dd hh:mm:ss", "1969-12-31 23:59:599").isDate());
  EXPECT_FALSE(reading("d.M.yyyy h:m:s.zzz", "31.12.1969 23:59:59.9999").isDate());
}

TEST(CompiledDates, UnclearFormatsAreNotCompiled) {
  for (const char* format : {"", "dMyyyy", "yyyy-MM-dd yyyy", "yyyyy-MM-dd", "d''M", "ddd hh:mm",
                             "yyyy t MM", "mm ap", "s.z", "yyyy-MM-dd'", "hh:mmAPt"}) {
    EXPECT_FALSE(DateReader::of(QString::fromLatin1(format), false)) << format;
  }
}

TEST(CompiledDates, ZonesFollowTheReading) {
  const DateTextFormat format("yyyy-MM-ddThh:mm:sst", false);
  for (const char* zone : {"Z", "+02:00", "-0530", "Europe/Berlin", "CEST"}) {
    const DateReading reading = format.read(std::string("2021-07-01T12:00:00") + zone);
    ASSERT_TRUE(reading.isDate()) << zone;
    EXPECT_EQ(reading.zone(), zone);
    EXPECT_EQ(reading.clock().milliseconds, 1'625'140'800'000);
  }
  const std::string longest(kLongestZone, 'A');
  EXPECT_TRUE(format.read("2021-07-01T12:00:00" + longest).isDate());
  for (const std::string& none : {std::string(), longest + "A", std::string("+"), std::string("5"),
                                  std::string("UTC\n"), std::string(" UTC")}) {
    EXPECT_FALSE(format.read("2021-07-01T12:00:00" + none).isDate()) << none;
  }
}

TEST(CompiledDates, LongFormatsAreLeftToTheGeneralPrinter) {
  const QString literal = QString(100, u'-');
  const Instant newYear2000 = 946'684'800'000;
  for (const QString& format :
       {literal + "yyyy", literal + literal + "yyyy", literal + "dddd MMMM"}) {
    EXPECT_EQ(DatePrinter(format, false).print(newYear2000, ClockZone::utc()),
              QDateTime::fromMSecsSinceEpoch(newYear2000, Qt::UTC).toString(format));
  }
}

}  // namespace
}  // namespace kelvarin
