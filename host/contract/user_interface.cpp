#include "host/contract/user_interface.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QListWidget>
#include <QVBoxLayout>

#include "host/contract/host_services.h"
#include "host/contract/messages.h"

using kelvarin::hostServices;
namespace messages = kelvarin::messages;

namespace {

// False, with a line in the log, when nobody can be asked.
bool canAsk(const QString& unanswered) {
  if (qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr) {
    return true;
  }
  MainUI::addLog(LogLevel::information, unanswered);
  return false;
}

QStringList columnNames(const OneRow* columns) {
  return columns == nullptr ? QStringList() : QStringList(columns->getColNamesDeep());
}

// -1 when the user gave up.
int askForOne(const QStringList& names, int selected, QWidget* parent) {
  bool isChosen = false;
  const QString name =
      QInputDialog::getItem(parent, messages::pickColumnTitle(), messages::pickColumn(), names,
                            std::max(0, selected), false, &isChosen);
  return isChosen ? static_cast<int>(names.indexOf(name)) : -1;
}

QStringList askForSeveral(const QStringList& names, const QStringList& selected, QWidget* parent) {
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

}  // namespace

UpdateClassWidget::UpdateClassWidget(QWidget* parent) : QWidget(parent) {}
UpdateClassWidget::~UpdateClassWidget() = default;
void UpdateClassWidget::propertiesChanged() {
  MainUI::documentWasModified();
}

void openHelp(QString helpId, QString anchor) {
  if (kelvarin::HostServices* services = hostServices()) {
    services->openHelp(helpId, anchor);
    return;
  }
  MainUI::addLog(LogLevel::information, messages::helpPage(helpId));
}

QString tGetOpenFileName(QWidget* parent, QString caption, QString folder, QString filter) {
  return canAsk(messages::noFilePicked())
             ? QFileDialog::getOpenFileName(parent, caption, folder, filter)
             : QString();
}

QString MainUI::selectColumn(const OneRow* columns, QWidget* parent) {
  if (!canAsk(messages::noColumnPicked())) {
    return {};
  }
  const QStringList names = columnNames(columns);
  return names.value(askForOne(names, 0, parent));
}

QStringList MainUI::selectColumn(const OneRow* columns, QStringList selected, QWidget* parent) {
  return canAsk(messages::noColumnPicked()) ? askForSeveral(columnNames(columns), selected, parent)
                                            : QStringList();
}

int MainUI::selectColumn(QStringList names, int selected, QWidget* parent) {
  return canAsk(messages::noColumnPicked()) ? askForOne(names, selected, parent) : -1;
}
