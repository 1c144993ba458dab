#include "host/widgets/widget_screen.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QInputDialog>
#include <QListWidget>
#include <QPointer>
#include <QVBoxLayout>

#include "host/widgets/messages.h"

namespace kelvarin {

namespace {

QStringList selectedTexts(const QListWidget& list) {
  QStringList texts;
  for (int i = 0; i < list.count(); ++i) {
    if (list.item(i)->isSelected()) {
      texts += list.item(i)->text();
    }
  }
  return texts;
}

}  // namespace

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
  // It goes with its parent, which may be deleted while the user chooses.
  QPointer<QDialog> dialog = new QDialog(parent);
  dialog->setWindowTitle(messages::pickColumnTitle());
  auto* list = new QListWidget(dialog);
  list->setSelectionMode(QAbstractItemView::ExtendedSelection);
  for (const QString& name : names) {
    auto* item = new QListWidgetItem(name, list);
    item->setSelected(selected.contains(name));
  }
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
  QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
  auto* layout = new QVBoxLayout(dialog);
  layout->addWidget(list);
  layout->addWidget(buttons);
  const bool isAccepted = dialog->exec() == QDialog::Accepted && dialog != nullptr;
  QStringList picked = isAccepted ? selectedTexts(*list) : selected;
  delete dialog;
  return picked;
}

}  // namespace kelvarin
