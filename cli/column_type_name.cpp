#include "cli/column_type_name.h"

#include <algorithm>
#include <iterator>

#include <QString>

namespace kelvarin {

namespace {

struct TypeName {
  MetaTypeColumn type;
  QLatin1String code;
  QLatin1String word;
};

constexpr TypeName kTypes[] = {
    {MetaTypeColumn::number, QLatin1String("F"), QLatin1String("number")},
    {MetaTypeColumn::key, QLatin1String("K"), QLatin1String("key")},
    {MetaTypeColumn::text, QLatin1String("U"), QLatin1String("text")},
};

}  // namespace

std::optional<MetaTypeColumn> columnTypeNamed(QStringView name) {
  const auto* known = std::ranges::find_if(
      kTypes, [name](const TypeName& type) { return name == type.code || name == type.word; });
  return known == std::end(kTypes) ? std::nullopt : std::optional(known->type);
}

}  // namespace kelvarin
