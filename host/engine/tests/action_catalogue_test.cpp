// Which plug-in files are refused, and what the catalogue says of an action.
#include <gtest/gtest.h>

#include <QFile>
#include <QLibraryInfo>
#include <QTemporaryDir>

#include "host/engine/tests/made_actions.h"

namespace kelvarin::testing {
namespace {

std::string refusalOf(const QString& file) {
  const auto plugin = PluginLibrary::load(file);
  return plugin ? std::string() : plugin.error().toStdString();
}

TEST(PluginLibrary, SaysWhyAFileIsNoPlugin) {
  const QTemporaryDir folder;
  const QString text = folder.filePath(QStringLiteral("plugin.so"));
  EXPECT_EQ(refusalOf(text),
            "There is no plug-in file " + text.toStdString() +
                ". Give its place with --plugin or in the environment variable KELVARIN_PLUGIN.");
  EXPECT_EQ(refusalOf(folder.path()).find("There is no plug-in file"), 0u);
  QFile file(text);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("no code") > 0);
  file.close();
  EXPECT_EQ(refusalOf(text),
            text.toStdString() + " is not a plug-in: it has no plug-in description.");

  const QString foreign =
      QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms/libqoffscreen.so");
  ASSERT_TRUE(QFile::exists(foreign));
  EXPECT_NE(
      refusalOf(foreign).find("is a plug-in of another interface: it offers \"org.qt-project."),
      std::string::npos);
  const std::string unverified = refusalOf(QStringLiteral(KELVARIN_UNVERIFIED_PLUGIN));
  EXPECT_NE(unverified.find("has no verification text."), std::string::npos) << unverified;
}

TEST(PluginLibrary, TakesTheFileOfTheEnvironment) {
  qputenv("KELVARIN_PLUGIN", "/nonexistent/p.so");
  EXPECT_EQ(refusalOf({}).find("There is no plug-in file /nonexistent/p.so."), 0u);
  qunsetenv("KELVARIN_PLUGIN");
  EXPECT_TRUE(PluginLibrary::defaultFile().endsWith(
      QStringLiteral("lib/plugins/libKelvarinMathParser.so")));
}

class Described final : public TestAction {
 public:
  KELVARIN_TEST_ACTION(Described, 2, 3)
  QString toolTip() const override { return QStringLiteral("tip"); }
  void getHelp() const override { hostServices()->openHelp(QStringLiteral("page_1"), {}); }
  void saveXML(std::wostringstream& out, QString name) override {
    saveAI(out, name, 2.08);
    out << L"/>\n";
  }
  bool step() { return true; }
};

TEST(ActionCatalogue, DescribesItsActions) {
  ActionCatalogue::Prototypes prototypes;
  prototypes.push_back(std::make_unique<Described>(XMLNode::emptyNode(), nullptr));
  const ActionCatalogue catalogue(nullptr, std::move(prototypes));
  const CatalogueEntry* entry = catalogue.find(QStringLiteral("Described"));
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->toolTip, QStringLiteral("tip"));
  EXPECT_EQ(entry->helpId, QStringLiteral("page_1"));
  EXPECT_EQ(entry->version, 2.08);
  EXPECT_EQ(entry->pinsIn, 2);
  EXPECT_EQ(entry->pinsOut, 3);
  EXPECT_EQ(entry->source, ActionSource::host);
  EXPECT_EQ(catalogue.find(QStringLiteral("described")), nullptr);
  EXPECT_EQ(hostServices(), nullptr);
}

}  // namespace
}  // namespace kelvarin::testing
