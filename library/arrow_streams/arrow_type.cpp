#include "library/arrow_streams/arrow_type.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace kelvarin {

namespace {

struct SimpleType {
  std::string_view format;
  ArrowKind kind;
  std::string_view name;
};

constexpr auto kUnsupported = ArrowKind::unsupported;

constexpr SimpleType kSimpleTypes[] = {
    {"b", ArrowKind::boolean, "bool"},
    {"c", ArrowKind::int8, "int8"},
    {"s", ArrowKind::int16, "int16"},
    {"i", ArrowKind::int32, "int32"},
    {"l", ArrowKind::int64, "int64"},
    {"C", ArrowKind::uint8, "uint8"},
    {"S", ArrowKind::uint16, "uint16"},
    {"I", ArrowKind::uint32, "uint32"},
    {"L", ArrowKind::uint64, "uint64"},
    {"e", ArrowKind::halfFloat, "halffloat"},
    {"f", ArrowKind::float32, "float"},
    {"g", ArrowKind::float64, "double"},
    {"u", ArrowKind::utf8, "string"},
    {"U", ArrowKind::largeUtf8, "large_string"},
    {"vu", ArrowKind::utf8View, "string_view"},
    {"tdD", ArrowKind::date32, "date32[day]"},
    {"tdm", ArrowKind::date64, "date64[ms]"},
    {"n", kUnsupported, "null"},
    {"z", kUnsupported, "binary"},
    {"Z", kUnsupported, "large_binary"},
    {"vz", kUnsupported, "binary_view"},
    {"tts", kUnsupported, "time32[s]"},
    {"ttm", kUnsupported, "time32[ms]"},
    {"ttu", kUnsupported, "time64[us]"},
    {"ttn", kUnsupported, "time64[ns]"},
    {"tDs", kUnsupported, "duration[s]"},
    {"tDm", kUnsupported, "duration[ms]"},
    {"tDu", kUnsupported, "duration[us]"},
    {"tDn", kUnsupported, "duration[ns]"},
    {"tiM", kUnsupported, "month_interval"},
    {"tiD", kUnsupported, "day_time_interval"},
    {"tin", kUnsupported, "month_day_nano_interval"},
};

struct NestedType {
  std::string_view prefix;
  std::string_view name;
};

constexpr NestedType kNestedTypes[] = {
    {"+l", "list"},
    {"+L", "large_list"},
    {"+vl", "list_view"},
    {"+vL", "large_list_view"},
    {"+w:", "fixed_size_list"},
    {"+s", "struct"},
    {"+m", "map"},
    {"+ud:", "dense_union"},
    {"+us:", "sparse_union"},
    {"+r", "run_end_encoded"},
};

constexpr std::string_view kUnits = "smun";
constexpr std::array<std::string_view, 4> kUnitNames = {"s", "ms", "us", "ns"};
constexpr int kDigitsOfLargestDecimal = 76;

const SimpleType* simpleTypeOf(std::string_view format) {
  const auto* found = std::ranges::find(kSimpleTypes, format, &SimpleType::format);
  return found == std::end(kSimpleTypes) ? nullptr : found;
}

// "tsu:Europe/Paris"
bool isTimestamp(std::string_view format) {
  return format.size() >= 4 && format.starts_with("ts") && format[3] == ':' &&
         kUnits.find(format[2]) != std::string_view::npos;
}

std::size_t unitOf(std::string_view timestamp) {
  return kUnits.find(timestamp[2]);
}

struct DecimalFormat {
  int precision = 0;
  int scale = 0;
  int bits = 128;
};

// "d:19,10" or "d:19,10,256"
DecimalFormat decimalOf(const char* format) {
  DecimalFormat decimal;
  char* end = nullptr;
  decimal.precision = static_cast<int>(std::strtol(format + 2, &end, 10));
  if (*end == ',') {
    decimal.scale = static_cast<int>(std::strtol(end + 1, &end, 10));
  }
  if (*end == ',') {
    decimal.bits = static_cast<int>(std::strtol(end + 1, &end, 10));
  }
  return decimal;
}

bool isSensible(const DecimalFormat& decimal) {
  const bool isKnownWidth =
      decimal.bits == 32 || decimal.bits == 64 || decimal.bits == 128 || decimal.bits == 256;
  return isKnownWidth && std::abs(decimal.scale) <= kDigitsOfLargestDecimal;
}

ArrowType valueTypeOf(const ArrowSchema& schema) {
  const std::string_view format(schema.format);
  ArrowType type;
  if (const SimpleType* simple = simpleTypeOf(format)) {
    type.kind = simple->kind;
  } else if (isTimestamp(format)) {
    type.kind = ArrowKind::timestamp;
    type.form = {3 * static_cast<int>(unitOf(format)), format.size() > 4};
  } else if (format.starts_with("d:")) {
    const DecimalFormat decimal = decimalOf(schema.format);
    type.kind = isSensible(decimal) ? ArrowKind::decimal : kUnsupported;
    type.decimalBits = decimal.bits;
    type.scale = decimal.scale;
  }
  return type;
}

bool isInteger(ArrowKind kind) {
  return kind >= ArrowKind::int8 && kind <= ArrowKind::uint64;
}

bool canBeNumber(ArrowKind kind) {
  return kind >= ArrowKind::boolean && kind <= ArrowKind::decimal;
}

bool canBeText(ArrowKind kind) {
  return isInteger(kind) || kind >= ArrowKind::decimal;
}

std::string nestedNameOf(const ArrowSchema& schema, std::string_view name) {
  std::string text(name);
  for (std::int64_t i = 0; i < schema.n_children; ++i) {
    const ArrowSchema& child = *schema.children[i];
    text += i == 0 ? "<" : ", ";
    text += std::string(child.name == nullptr ? "" : child.name) + ": " + typeNameOf(child);
  }
  return schema.n_children > 0 ? text + ">" : text;
}

std::string valueTypeNameOf(const ArrowSchema& schema) {
  const std::string_view format(schema.format);
  if (const SimpleType* simple = simpleTypeOf(format)) {
    return std::string(simple->name);
  }
  if (isTimestamp(format)) {
    const std::string zone(format.substr(4));
    return "timestamp[" + std::string(kUnitNames[unitOf(format)]) +
           (zone.empty() ? "]" : ", tz=" + zone + "]");
  }
  if (format.starts_with("d:")) {
    const DecimalFormat decimal = decimalOf(schema.format);
    return "decimal" + std::to_string(decimal.bits) + "(" + std::to_string(decimal.precision) +
           ", " + std::to_string(decimal.scale) + ")";
  }
  if (format.starts_with("w:")) {
    return "fixed_size_binary[" + std::string(format.substr(2)) + "]";
  }
  for (const NestedType& nested : kNestedTypes) {
    if (format.starts_with(nested.prefix)) {
      return nestedNameOf(schema, nested.name);
    }
  }
  return std::string(format);
}

}  // namespace

ArrowType arrowTypeOf(const ArrowSchema& schema) {
  if (schema.dictionary == nullptr) {
    return valueTypeOf(schema);
  }
  const ArrowType codes = valueTypeOf(schema);
  if (!isInteger(codes.kind) || schema.dictionary->dictionary != nullptr) {
    return {};
  }
  ArrowType type = valueTypeOf(*schema.dictionary);
  type.codeKind = codes.kind;
  return type;
}

std::vector<MetaTypeColumn> columnTypesOf(const ArrowType& type) {
  std::vector<MetaTypeColumn> types;
  if (canBeNumber(type.kind)) {
    types.push_back(MetaTypeColumn::number);
  }
  if (isInteger(type.kind)) {
    types.insert(type.kind == ArrowKind::uint32 ? types.begin() : types.end(), MetaTypeColumn::key);
  }
  if (canBeText(type.kind)) {
    types.push_back(MetaTypeColumn::text);
  }
  return types;
}

std::string typeNameOf(const ArrowSchema& schema) {
  if (schema.dictionary == nullptr) {
    return valueTypeNameOf(schema);
  }
  return "dictionary<values=" + typeNameOf(*schema.dictionary) +
         ", indices=" + valueTypeNameOf(schema) +
         ", ordered=" + ((schema.flags & ARROW_FLAG_DICTIONARY_ORDERED) != 0 ? "1" : "0") + ">";
}

}  // namespace kelvarin
