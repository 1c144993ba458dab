// Why a field is no value of its column, or made its column text, for the user.
#pragma once

#include <string>

#include <QString>

#include "host/contract/meta_info.h"
#include "host/tables/csv/csv_dialect.h"
#include "host/tables/text_input/text_encoding.h"

namespace kelvarin {

// A field that does not fit the type of `column`.
QString badFieldText(MetaTypeColumn type, const std::string& field, const QString& column,
                     const CsvNumberFormat& numbers, TextEncoding encoding);

// A field that made `column` text, though it looks like numbers.
QString textColumnText(const std::string& field, const QString& column,
                       const CsvNumberFormat& numbers);

// Bytes that are no text of the file's encoding.
QString noTextText(TextEncoding encoding);

}  // namespace kelvarin
