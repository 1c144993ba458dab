#include "host/widgets/widget_screen.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QInputDialog>
#include <QListWidget>
#include <QVBoxLayout>

#include "host/widgets/messages.h"

namespace kelvarin {

double WidgetScreen::pixelSize() {
  return qApp->devicePixelRatio();
}

int WidgetScreen::pickColumn(const QStringList& names, int selected, QWidget* parent) {
  bool isChosen = false;
  const QString name =
      QInputDialog::getItem(parent, messages::pickColumnTitle(), messages::pickColumn(), names,
                            std::max(0, selected), false, &isChosen);
  return isChosen ? static_cast<int>(names.indexOf(name)) : -1;
}

QStringList WidgetScreen::pickColumns(const QStringList& names, const QStringList& selected,
                                      QWidget* parent) {
  QDialog dialog(parent);
  dialog.setWindowTitle(messages::pickColumnTitle());
  QVBoxLayout layout(&dialog);
  QListWidget list;
  list.setSelectionMode(QAbstractItemView::ExtendedSelection);
  for (const QString& name : names) {
    auto* item = new QListWidgetItem(name, &list);
    item->setSelected(selected.contains(name));
  }
  QDialogButtonBox buttons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  QObject::connect(&buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(&buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  layout.addWidget(&list);
  layout.addWidget(&buttons);
  if (dialog.exec() != QDialog::Accepted) {
    return selected;
  }
  QStringList picked;
  for (int i = 0; i < list.count(); ++i) {
    if (list.item(i)->isSelected()) {
      picked += list.item(i)->text();
    }
  }
  return picked;
}

}  // namespace kelvarin
