#include "host/tables/arrow/stored_type.h"

#include <algorithm>

#include "host/tables/arrow/iso_time.h"

namespace kelvarin {

namespace {

using Kind = StoredType::Kind;

struct NamedType {
  const char* name;
  StoredType type;
};

constexpr NamedType kTypes[] = {
    {"double", {Kind::number}},
    {"int64", {Kind::int64}},
    {"int32", {Kind::int32}},
    {"uint32", {Kind::key}},
    {"boolean", {Kind::boolean}},
    {"text", {Kind::text}},
    {"date", {Kind::date}},
    {"timestamp_ms", {Kind::timestamp, 3, false}},
    {"timestamp_us", {Kind::timestamp, 6, false}},
    {"timestamp_ns", {Kind::timestamp, 9, false}},
    {"timestamp_ms_utc", {Kind::timestamp, 3, true}},
    {"timestamp_us_utc", {Kind::timestamp, 6, true}},
    {"timestamp_ns_utc", {Kind::timestamp, 9, true}},
};

}  // namespace

std::optional<StoredType> StoredType::named(const QString& name) {
  const auto* found = std::ranges::find_if(
      kTypes, [&](const NamedType& type) { return name == QLatin1String(type.name); });
  return found == std::end(kTypes) ? std::nullopt : std::optional(found->type);
}

QString StoredType::name() const {
  return QString::fromLatin1(std::ranges::find(kTypes, *this, &NamedType::type)->name);
}

QString StoredType::example() const {
  return kind == Kind::date ? QStringLiteral("2024-01-31")
                            : TimestampForm{decimals, isUtc}.example();
}

StoredType plainStoredType(MetaTypeColumn type) {
  switch (type) {
    case MetaTypeColumn::number:
      return {Kind::number};
    case MetaTypeColumn::key:
      return {Kind::key};
    default:
      return {Kind::text};
  }
}

bool canBeStoredAs(MetaTypeColumn type, const StoredType& stored) {
  const bool isText = type != MetaTypeColumn::number && type != MetaTypeColumn::key;
  switch (stored.kind) {
    case Kind::text:
    case Kind::date:
    case Kind::timestamp:
      return isText;
    default:
      return true;
  }
}

QStringList storedTypeNames() {
  QStringList names;
  for (const NamedType& type : kTypes) {
    names += QString::fromLatin1(type.name);
  }
  return names;
}

QStringList storedTypeNames(MetaTypeColumn type) {
  QStringList names;
  for (const NamedType& stored : kTypes) {
    if (canBeStoredAs(type, stored.type)) {
      names += QString::fromLatin1(stored.name);
    }
  }
  return names;
}

StoredColumns StoredColumns::plain(const OneRow& columns) {
  StoredColumns stored;
  for (int i = 0; i < columns.sz(); ++i) {
    stored.types.push_back(plainStoredType(columns.getMetaType(i)));
  }
  return stored;
}

}  // namespace kelvarin
