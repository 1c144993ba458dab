// A file that is replaced as a whole: it has the new content, or is as it was.
//
// Threads: any. Waits for the disk.
#pragma once

#include <QByteArray>
#include <QString>

#include "base/export.h"
#include "base/result.h"

namespace kelvarin {

// Done when the content is on the disk; else the system's reason.
KELVARIN_CORE Status<QString> replaceFile(const QString& path, const QByteArray& content);

}  // namespace kelvarin
