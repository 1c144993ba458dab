#include "expression/dates/date_format_advice.h"

#include <gtest/gtest.h>

namespace kelvarin {
namespace {

TEST(DateFormatAdvice, KnowsFormatsOfOtherPrograms) {
  const std::pair<const char*, const char*> cases[] = {
      {"%Y-%m-%d", "yyyy-MM-dd"},
      {"%d.%m.%y %H:%M:%S", "dd.MM.yy HH:mm:ss"},
      {"%a %e %b %Y, %I:%M %p", "ddd d MMM yyyy, hh:mm AP"},
      {"%FT%T.%f%z", "yyyy-MM-dd'T'HH:mm:ss.zzzt"},
      {"YYYY-MM-DD", "yyyy-MM-dd"},
      {"DD.MM.YYYY HH:MM:SS", "dd.MM.yyyy HH:mm:ss"},
      {"YYYY-MM-DD HH24:MI:SS", "yyyy-MM-dd HH:mm:ss"},
      {"yyyy-mm-dd", "yyyy-MM-dd"},
      {"dd/mm/yyyy hh:mm", "dd/MM/yyyy hh:mm"},
      {"yyyymmddhhmmss", "yyyyMMddhhmmss"},
      {"dd-mmm-yyyy", "dd-MMM-yyyy"},
      {"yyyy-MM-dd'T'HH:MM:ss.SSS", "yyyy-MM-dd'T'HH:mm:ss.zzz"},
      {"TT.MM.JJJJ", "dd.MM.yyyy"},
      {"jj/mm/aaaa", "dd/MM/yyyy"},
  };
  for (const auto& [format, meant] : cases) {
    EXPECT_TRUE(adviceOnDateFormat(format).startsWith(
        QStringLiteral("Date format '%1': did you mean '%2'?").arg(format, meant)))
        << adviceOnDateFormat(format).toStdString();
  }
  EXPECT_TRUE(adviceOnDateFormat("%Y-%j").startsWith("Date format '%Y-%j': a % and"));
}

TEST(DateFormatAdvice, IsSilentOnFormatsThatMakeSense) {
  for (const char* format :
       {"", "yyyy-MM-dd", "yyyyMMdd hh:mm:ss", "yyyyMMddTHHmmss", "yyyy-MM-ddThh:mm:ss.zzzt",
        "dddd, MMMM d, yyyy h:mm:ss AP t", "d. MMMM yyyy 'um' H:mm 'Uhr SS YYYY'", "M/d/yy h:mm ap",
        "hh:mm", "mm:ss", "mm", "MM.yyyy", "yyyyMMddhhmm", "hh:mm dd/MM/yyyy", "hhmm yyyyMMdd",
        "yyyy年M月d日dddd H時mm分ss秒 t", "100 % yyyy"}) {
    EXPECT_EQ(adviceOnDateFormat(format), QString()) << format;
  }
}

}  // namespace
}  // namespace kelvarin
