#include "host/widgets/user_interface.h"

#include <QApplication>
#include <QFileDialog>

#include "host/contract/main_ui.h"
#include "host/widgets/messages.h"

UpdateClassWidget::UpdateClassWidget(QWidget* parent) : QWidget(parent) {}
UpdateClassWidget::~UpdateClassWidget() = default;
void UpdateClassWidget::propertiesChanged() {
  MainUI::documentWasModified();
}

QMap<QString, QString> UpdateClassWidget::uncommittedState() const {
  return {};
}

void UpdateClassWidget::commit() {}
void UpdateClassWidget::restoreUncommitted(const QMap<QString, QString>&) {}
void UpdateClassWidget::showPosition(const QString&, int) {}
bool UpdateClassWidget::stepToRow(long long) {
  return false;
}

QString tGetOpenFileName(QWidget* parent, QString caption, QString folder, QString filter) {
  if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr) {
    MainUI::addLog(LogLevel::information, kelvarin::messages::noFilePicked());
    return {};
  }
  return QFileDialog::getOpenFileName(parent, caption, folder, filter);
}
