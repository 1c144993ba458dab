// Types of columns as users type them: F or number, K or key, U or text.
//
// Used by: csv_options.h, and the outputs of `kelvarin calc`.
#pragma once

#include <optional>

#include <QStringView>

#include "host/contract/meta_info.h"

namespace kelvarin {

std::optional<MetaTypeColumn> columnTypeNamed(QStringView name);

}  // namespace kelvarin
