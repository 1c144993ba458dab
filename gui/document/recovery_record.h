// What a recovery file has: a graph with changes that were not saved, and what was being typed.
//
// Layout: a line with the format's name and version, a line of JSON, the document as it is. So the
// document can be taken out with any text editor.
// Used by: recovery_journal.h, recovery_files.h.
#pragma once

#include <optional>

#include <QByteArray>
#include <QDateTime>
#include <QMap>
#include <QString>

namespace kelvarin {

struct RecoveryRecord {
  QString graphFile;       // absolute; empty for a graph that was never saved
  QByteArray savedDigest;  // of the file when the graph was last read or saved
  QDateTime time;          // of the last change
  QByteArray document;
  QString action;                // whose editor was open; may be empty
  QMap<QString, QString> typed;  // fields of that editor and their texts that it did not take yet
  bool operator==(const RecoveryRecord&) const = default;
};

QByteArray contentDigest(const QByteArray& content);
QByteArray recoveryText(const RecoveryRecord& record);
// Nothing where the text is no recovery file, or is damaged.
std::optional<RecoveryRecord> readRecovery(const QByteArray& text);

}  // namespace kelvarin
