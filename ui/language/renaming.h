// An expression in which a variable has got another name.
//
// Threads: any.
#pragma once

#include <QString>

namespace kelvarin {

// A function of the old name keeps it.
QString withRenamedVariable(const QString& expression, const QString& from, const QString& to);

}  // namespace kelvarin
