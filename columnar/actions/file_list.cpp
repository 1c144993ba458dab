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

// Calls use(name) with the first value of every row, until it returns false. False: logged.
template <typename Use>
bool forEachName(ActionItem& action, int pin, const char* namesOfWhat, Use use) {
  if (!hasNamesColumn(action, pin, namesOfWhat)) {
    return false;
  }
  while (const OneRow* row = action.getNextRowFromInPin(pin)) {
    if (row->sz() == 0) {
      logError(columnar_messages::noColumnOnPin());
      return false;
    }
    if (!use(row->col(0, nullptr))) {
      return false;
    }
  }
  return true;
}

}  // namespace

std::optional<QStringList> fileNamesFromPin(ActionItem& action, bool abortsOnUnreadable) {
  QStringList names;
  const bool isRead = forEachName(action, kPinOfFileNames, "files", [&](const QString& name) {
    if (!name.isEmpty()) {
      names += name;
    } else if (abortsOnUnreadable) {
      logError(columnar_messages::unreadableName());
      return false;
    } else {
      MainUI::addLog(LogLevel::warning, columnar_messages::unreadableNameSkipped());
    }
    return true;
  });
  return isRead ? std::optional(names) : std::nullopt;
}

std::optional<QStringList> columnNamesFromPin(ActionItem& action) {
  QStringList names;
  const bool isRead = forEachName(action, kPinOfColumnNames, "columns", [&](const QString& name) {
    if (name.isEmpty()) {
      logError(columnar_messages::unreadableColumnName(names.size()));
      return false;
    }
    names += name;
    return true;
  });
  return isRead ? std::optional(names) : std::nullopt;
}

}  // namespace kelvarin
