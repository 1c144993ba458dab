#include "gui/document/recovery_record.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>

namespace kelvarin {

namespace {

constexpr char kFirstLine[] = "kelvarin recovery 1\n";
const QString kFile = QStringLiteral("file");
const QString kSavedDigest = QStringLiteral("savedDigest");
const QString kTime = QStringLiteral("time");
const QString kDigest = QStringLiteral("digest");
const QString kAction = QStringLiteral("action");
const QString kTyped = QStringLiteral("typed");

QString hex(const QByteArray& digest) {
  return QString::fromLatin1(digest.toHex());
}

}  // namespace

QByteArray contentDigest(const QByteArray& content) {
  return QCryptographicHash::hash(content, QCryptographicHash::Sha256);
}

QByteArray recoveryText(const RecoveryRecord& record) {
  QJsonObject typed;
  for (auto field = record.typed.begin(); field != record.typed.end(); ++field) {
    typed.insert(field.key(), field.value());
  }
  const QJsonObject head{{kFile, record.graphFile},
                         {kSavedDigest, hex(record.savedDigest)},
                         {kTime, record.time.toUTC().toString(Qt::ISODateWithMs)},
                         {kDigest, hex(contentDigest(record.document))},
                         {kAction, record.action},
                         {kTyped, typed}};
  return kFirstLine + QJsonDocument(head).toJson(QJsonDocument::Compact) + '\n' + record.document;
}

std::optional<RecoveryRecord> readRecovery(const QByteArray& text) {
  if (!text.startsWith(kFirstLine)) {
    return std::nullopt;
  }
  const qsizetype begin = qsizetype(sizeof kFirstLine) - 1;
  const qsizetype end = text.indexOf('\n', begin);
  if (end < 0) {
    return std::nullopt;
  }
  const QJsonObject head = QJsonDocument::fromJson(text.mid(begin, end - begin)).object();
  RecoveryRecord record;
  record.document = text.mid(end + 1);
  if (head.value(kDigest).toString() != hex(contentDigest(record.document))) {
    return std::nullopt;
  }
  record.graphFile = head.value(kFile).toString();
  record.savedDigest = QByteArray::fromHex(head.value(kSavedDigest).toString().toLatin1());
  record.time = QDateTime::fromString(head.value(kTime).toString(), Qt::ISODateWithMs);
  record.action = head.value(kAction).toString();
  const QJsonObject typed = head.value(kTyped).toObject();
  for (auto field = typed.begin(); field != typed.end(); ++field) {
    record.typed.insert(field.key(), field.value().toString());
  }
  return record;
}

}  // namespace kelvarin
