// Why a columnar file cannot be opened, and where it is damaged, in words.
//
// Used by `kelvarin gel` and by the dialogs of the columnar actions.
// Threads: any.
#pragma once

#include <QString>

#include "columnar/reader/verification.h"

namespace kelvarin {

// Looks at the disk for the system's reason.
QString openFailureText(const std::string& path, OpenFailure::Problem problem);

QString damageText(const GelDamage& damage);

}  // namespace kelvarin
