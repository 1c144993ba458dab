#include "gui/recovery/restored_texts.h"

#include <QCoreApplication>
#include <QStringList>

#include "gui/properties/property_panel.h"
#include "host/widgets/user_interface.h"

namespace kelvarin {

QString restoreTexts(const RecoveryRecord& record, const PropertyPanel& properties) {
  QMap<QString, QString> taken;
  if (UpdateClassWidget* editor = properties.editor()) {
    editor->restoreUncommitted(record.typed);
    taken = editor->uncommittedState();
  }
  QStringList lines;
  for (auto field = record.typed.begin(); field != record.typed.end(); ++field) {
    if (taken.value(field.key()) != field.value()) {
      lines += QStringLiteral("%1: %2").arg(field.key(), field.value());
    }
  }
  if (!lines.isEmpty()) {
    lines.prepend(
        QCoreApplication::translate("kelvarin::RecoveryOffer", "This was being typed into '%1':")
            .arg(record.action));
  }
  return lines.join(u'\n');
}

}  // namespace kelvarin
