#include "columnar/actions/file_list.h"

#include "columnar/actions/messages.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

namespace {

constexpr int kPinOfFileNames = 0;
constexpr int kPinOfColumnNames = 1;

void logError(const QString& text) {
  MainUI::addLog(LogLevel::error, text);
}

// False: logged.
bool hasNamesColumn(const ActionItem& action, int pin, const char* namesOfWhat) {
  if (!action.isInputPinLinked(pin)) {
    logError(columnar_messages::namesPinNotLinked(pin, QString::fromLatin1(namesOfWhat)));
    return false;
  }
  const OneRow* columns = action.announcedColumnsOfInPin(pin);
  if (columns != nullptr && columns->sz() == 0) {
    logError(columnar_messages::noColumnOnPin());
    return false;
  }
  return true;
}

}  // namespace

std::optional<QStringList> fileNamesFromPin(ActionItem& action, bool abortsOnUnreadable) {
  if (!hasNamesColumn(action, kPinOfFileNames, "files")) {
    return std::nullopt;
  }
  QStringList names;
  while (const OneRow* row = action.getNextRowFromInPin(kPinOfFileNames)) {
    if (row->sz() == 0) {
      logError(columnar_messages::noColumnOnPin());
      return std::nullopt;
    }
    const QString name = row->col(0, nullptr);
    if (!name.isEmpty()) {
      names += name;
    } else if (abortsOnUnreadable) {
      logError(columnar_messages::unreadableName());
      return std::nullopt;
    } else {
      MainUI::addLog(LogLevel::warning, columnar_messages::unreadableNameSkipped());
    }
  }
  return names;
}

std::optional<QStringList> columnNamesFromPin(ActionItem& action) {
  if (!hasNamesColumn(action, kPinOfColumnNames, "columns")) {
    return std::nullopt;
  }
  QStringList names;
  while (const OneRow* row = action.getNextRowFromInPin(kPinOfColumnNames)) {
    if (row->sz() == 0) {
      logError(columnar_messages::noColumnOnPin());
      return std::nullopt;
    }
    const QString name = row->col(0, nullptr);
    if (name.isEmpty()) {
      logError(columnar_messages::unreadableColumnName(names.size()));
      return std::nullopt;
    }
    names += name;
  }
  return names;
}

}  // namespace kelvarin
