#include "gui/tests/all_actions.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSettings>

#include "gui/host_editors/host_editors.h"
#include "host/tables/table_actions.h"

namespace kelvarin::testing {

const ActionCatalogue& wholeCatalogue() {
  static const ActionCatalogue catalogue = [] {
    addHostEditors(EditorRegistry::instance());
    return ActionCatalogue(std::move(*PluginLibrary::load(QStringLiteral(KELVARIN_PLUGIN))),
                           makeTableActions());
  }();
  return catalogue;
}

ExampleFolder::ExampleFolder() : m_workingFolder(QDir::currentPath()) {
  QSettings().clear();
  const QDir examples(QStringLiteral(KELVARIN_EXAMPLES));
  QDirIterator files(examples.path(), QDir::Files, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString file = files.next();
    const QString copy = m_folder.filePath(examples.relativeFilePath(file));
    QDir().mkpath(QFileInfo(copy).path());
    EXPECT_TRUE(QFile::copy(file, copy)) << copy.toStdString();
  }
  QDir::setCurrent(m_folder.path());
}

ExampleFolder::~ExampleFolder() {
  QDir::setCurrent(m_workingFolder);
}

QString ExampleFolder::graphOfAllTypes() const {
  QFile example(path(QStringLiteral("flights/flights.kelvarin")));
  EXPECT_TRUE(example.open(QIODevice::ReadOnly));
  QByteArray document = example.readAll();
  QByteArray actions;
  int y = 300;
  for (const CatalogueEntry& entry : wholeCatalogue().entries()) {
    const QByteArray type = entry.typeName.toUtf8();
    actions += "<" + type + " name='" + type + "' x='0' y='" + QByteArray::number(y) + "'/>\n";
    y += 100;
  }
  const QString file = path(QStringLiteral("flights/all.kelvarin"));
  QFile target(file);
  EXPECT_TRUE(target.open(QIODevice::WriteOnly));
  target.write(document.replace("  </Actions>", actions + "  </Actions>"));
  return file;
}

}  // namespace kelvarin::testing
