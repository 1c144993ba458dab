#include "cli/attributes_as_options.h"

#include <iterator>
#include <vector>

#include <QRegularExpression>

namespace kelvarin {

namespace {

struct Wording {
  const char* attributes;  // a pattern
  const char* options;
};

constexpr Wording kWordings[] = {
    {R"(set short='(\w+)')", R"(say --short-rows \1)"},
    {R"(set long='(\w+)')", R"(say --long-rows \1)"},
    {R"(set encoding='([\w-]+)')", R"(say --encoding \1)"},
    {R"(set nullText='([^']*)')", R"(say --null '\1')"},
    {R"(set onBadValue to null)", R"(say --bad-values null)"},
    {R"(separator='([^']*)' meant)", R"(--separator '\1' meant)"},
    {R"(See the attributes decimal and thousands)", R"(See --decimal and --thousands)"},
    {R"(the attribute fileColumn)", R"(--file-column)"},
    {R"(declare the column as text \(meta U\))", R"(read the column as text (--type NAME=text))"},
    {R"(declare the column with another type)", R"(read the column as another type (--type))"},
    {R"(declare it: <Column name='(.*)' meta='F'/>)", R"(say --type '\1=number')"},
    {R"(Declare the column as text, <Column name='(.*)' meta='U'/>, or with meta='F' )",
     R"(Say --type '\1=text', or --type '\1=number' )"},
    {R"(set unreadable='(\w+)')", R"(say --unreadable \1)"},
    {R"(<Column name='(.*)' type='(.*)'/>: )", R"(--store \1=\2: )"},
    {R"(Declare another type, or set onBadValue='null')", R"(Give --store another type)"},
};

}  // namespace

QString attributesAsOptions(const QString& text) {
  static const auto patterns = [] {
    std::vector<QRegularExpression> made;
    made.reserve(std::size(kWordings));
    for (const Wording& wording : kWordings) {
      made.emplace_back(QString::fromLatin1(wording.attributes));
    }
    return made;
  }();
  QString said = text;
  for (std::size_t i = 0; i < patterns.size(); ++i) {
    said.replace(patterns[i], QString::fromLatin1(kWordings[i].options));
  }
  return said;
}

}  // namespace kelvarin
