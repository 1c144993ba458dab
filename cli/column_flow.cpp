#include "cli/column_flow.h"

#include <algorithm>

#include <QHash>
#include <QStringList>

#include "cli/messages.h"

namespace kelvarin {

namespace {

using Column = PinColumns::Column;

QString described(const Column& column) {
  return column.name + u' ' + QChar(static_cast<char16_t>(column.meta));
}

// Null where nothing that is known flows into the action.
const PinColumns* inputOf(const RunResult& result, const ActionResult& action) {
  if (action.source < 0) {
    return nullptr;
  }
  const ActionResult& source = result.actions[static_cast<std::size_t>(action.source)];
  const auto pin = static_cast<std::size_t>(action.sourcePin);
  return pin < source.pins.size() && source.pins[pin].isKnown ? &source.pins[pin] : nullptr;
}

QStringList changes(const PinColumns& columns, const PinColumns* input) {
  QHash<QString, MetaTypeColumn> known;
  if (input != nullptr) {
    for (const Column& column : input->columns) {
      known.insert(column.name, column.meta);
    }
  }
  QStringList changes;
  for (const Column& column : columns.columns) {
    const auto before = known.constFind(column.name);
    if (input == nullptr) {
      changes += described(column);
    } else if (before == known.constEnd()) {
      changes += QStringLiteral("+ ") + described(column);
    } else if (*before != column.meta) {
      changes += QStringLiteral("~ ") + described(column);
    }
  }
  return changes;
}

QString shownChanges(const QStringList& changes) {
  constexpr qsizetype kShown = 30;
  if (changes.isEmpty()) {
    return program_messages::flowUnchanged();
  }
  const QString shown = QStringLiteral(": ") +
                        changes.first(std::min(kShown, changes.size())).join(QStringLiteral(", "));
  return changes.size() <= kShown ? shown
                                  : shown + program_messages::moreColumns(changes.size() - kShown);
}

}  // namespace

QString columnFlow(const RunResult& result) {
  QString lines;
  for (const ActionResult& action : result.actions) {
    for (std::size_t pin = 0; pin < action.pins.size(); ++pin) {
      const PinColumns& columns = action.pins[pin];
      const bool isAsFirst = pin > 0 && columns.columns == action.pins.front().columns;
      if (!columns.isKnown || isAsFirst) {
        continue;
      }
      lines +=
          program_messages::flowOfAction(action.name, action.typeName, columns.columns.size()) +
          shownChanges(changes(columns, inputOf(result, action))) + u'\n';
    }
  }
  return lines.isEmpty() ? lines : program_messages::flowTitle() + lines;
}

}  // namespace kelvarin
