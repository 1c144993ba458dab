#include "host/contract/text_operations.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <QUrl>

#include "host/contract/action_item.h"
#include "host/contract/main_ui.h"
#include "host/contract/messages.h"
#include "host/contract/row_buffer.h"

namespace {

QString trimmed(const QString& text, bool atLeft, bool atRight) {
  qsizetype first = 0;
  qsizetype end = text.size();
  while (atLeft && first < end && text[first].isSpace()) {
    ++first;
  }
  while (atRight && end > first && text[end - 1].isSpace()) {
    --end;
  }
  return text.mid(first, end - first);
}

}  // namespace

QString myTrim(const QString& text) {
  return trimmed(text, true, true);
}
QString myTrimLeft(const QString& text) {
  return trimmed(text, true, false);
}
QString myTrimRight(const QString& text) {
  return trimmed(text, false, true);
}

QString stringFromStringList(QStringList texts, int maximum) {
  const QString separator = QStringLiteral(", ");
  if (maximum <= 0 || texts.size() <= maximum) {
    return texts.join(separator);
  }
  return kelvarin::messages::beginningOfList(texts.mid(0, maximum).join(separator), texts.size());
}

int totalLengthField(QString text) {
  return static_cast<int>(bytesNeeded(text));
}

QString detach(const QString& text) {
  return text.isNull() ? QString() : QString(text.constData(), text.size());
}

QString copyForWeb(QString path) {
  return path.startsWith(QLatin1String(":/"))
             ? QStringLiteral("qrc") + path
             : QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
}

void sortIntInt(int* keys, int* values, int first, int last) {
  std::vector<std::pair<int, int>> entries;
  for (int i = first; i <= last; ++i) {
    entries.emplace_back(keys[i], values[i]);
  }
  std::stable_sort(entries.begin(), entries.end(),
                   [](const auto& left, const auto& right) { return left.first < right.first; });
  for (const auto& [key, value] : entries) {
    keys[first] = key;
    values[first++] = value;
  }
}

bool doCheckNameCollision(const OneRow* row, bool isError, ActionItem* action,
                          QVector<int> replaced, QString name) {
  for (int i = 0; i < row->sz(); ++i) {
    if (row->colName(i) == name && !replaced.contains(i)) {
      MainUI::addLog(isError ? LogLevel::error : LogLevel::warning,
                     kelvarin::messages::nameCollision(
                         action == nullptr ? QString() : action->name(), name, i));
      return true;
    }
  }
  return false;
}
