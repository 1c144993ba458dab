// The XML of every action, byte for byte: graph files are read by other programs and compared by
// people. saved_actions/ACTION_all.xml has everything set, ACTION_bare.xml nothing.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "host/engine/action_catalogue.h"
#include "host/tables/table_actions.h"

namespace kelvarin {
namespace {

const ActionCatalogue& catalogue() {
  static const auto* loaded =
      new ActionCatalogue(std::move(*PluginLibrary::load(KELVARIN_PLUGIN)), makeTableActions());
  return *loaded;
}

QByteArray golden(const QString& action, const char* kind) {
  QFile file(QDir(QStringLiteral(SAVED_ACTIONS)).filePath(action + u'_' + QLatin1String(kind) +
                                                          QStringLiteral(".xml")));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
  return file.readAll();
}

// What the action of this element writes.
QByteArray saved(const CatalogueEntry& entry, const QByteArray& element) {
  const auto node = parseXml(element);
  if (!node) {
    ADD_FAILURE() << node.error().message.toStdString();
    return {};
  }
  GlobalParameters parameters;
  const std::unique_ptr<ActionItem> action(entry.prototype->createFromXML(*node, &parameters));
  std::wostringstream out;
  action->saveXML(out, action->name());
  return QString::fromStdWString(out.str()).toUtf8();
}

class SavedAction : public ::testing::TestWithParam<int> {
 protected:
  const CatalogueEntry& entry() const {
    return catalogue().entries()[static_cast<std::size_t>(GetParam())];
  }
};

}  // namespace

TEST_P(SavedAction, WithEverythingSetReadsAndWritesTheSameBytes) {
  const QByteArray element = golden(entry().typeName, "all");
  EXPECT_EQ(saved(entry(), element), element);
}

TEST_P(SavedAction, WithNothingSetWritesNoMoreThanItsFrame) {
  const QByteArray element = golden(entry().typeName, "bare");
  EXPECT_EQ(saved(entry(), "<" + entry().typeName.toUtf8() + " name='action'/>"), element);
  EXPECT_EQ(saved(entry(), element), element);
}

INSTANTIATE_TEST_SUITE_P(Catalogue, SavedAction,
                         ::testing::Range(0, static_cast<int>(catalogue().entries().size())),
                         [](const auto& index) {
                           const auto& entries = catalogue().entries();
                           return entries[static_cast<std::size_t>(index.param)]
                               .typeName.toStdString();
                         });

}  // namespace kelvarin
