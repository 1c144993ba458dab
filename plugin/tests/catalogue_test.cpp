#include <memory>
#include <set>

#include <gtest/gtest.h>
#include <QApplication>
#include <QLibrary>
#include <QPixmap>
#include <QPluginLoader>
#include <QSysInfo>

#include "host/contract/action_item.h"
#include "host/contract/plugin_interface.h"
#include "host/testing/recording_host.h"

using kelvarin::parseXml;
using kelvarin::utf16;
using kelvarin::testing::RecordingHost;
using kelvarin::testing::Strings;

namespace {

struct Entry {
  const char* typeName;
  const char* toolTip;
  const char* helpId;
  QStringList tags;
  QStringList keywords;
  QStringList fileTypes;
  double version;
  int pinsIn;
  int pinsOut;
};

const Entry kCatalogue[] = {
    {"Calculator",
     "Add/update a column based on an expression",
     "5_5_6_calculator_high_speed__",
     {"150_Standard"},
     {"math", "exp", "expression", "column", "add", "new", "compute"},
     {},
     2.08,
     2,
     1},
    {"FilterRows",
     "Filter rows based on an expression",
     "5_5_7_filter_rows_high_speed_",
     {"150_Standard"},
     {"math", "exp", "expression", "remove", "row", "filter"},
     {},
     2.08,
     2,
     2},
    {"ReadColumnarGel",
     "Read a columnar .cgel_kelvarin file",
     "5_2_7_kelvarin_columnar_gel_f",
     {"Common"},
     {"columnar", "file", "import", "input", "load", "cgel_kelvarin", "cgel", "gel", "read", "in"},
     {"cgel_kelvarin"},
     2.08,
     0,
     1},
    {"writeColumnarGel",
     "Write a columnar .cgel_kelvarin file",
     "5_27_3_kelvarin_columnar_gel_",
     {},
     {"columnar", "file", "export", "output", "save", "cgel_kelvarin", "cgel", "gel", "write",
      "out"},
     {},
     3.19,
     1,
     0},
    {"CalculatorVectorized",
     "Add many new columns based on an expression",
     "5_7_10_vectorized_calculator_h",
     {"250_Data Mining (Modelling)"},
     {"vector", "exp", "expression", "column", "add", "new", "compute"},
     {},
     2.08,
     2,
     1},
};

class Plugin : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int count = 1;
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static QApplication application(count, arguments);
  }

  QPluginLoader loader{QStringLiteral(PLUGIN_FILE)};
  QObject* root = loader.instance();
  KelvarinPluginInterface* plugin = qobject_cast<KelvarinPluginInterface*>(root);
};

TEST_F(Plugin, IsOfTheInterfaceAndHasOneRoot) {
  ASSERT_NE(root, nullptr) << loader.errorString().toStdString();
  ASSERT_NE(plugin, nullptr);
  EXPECT_STREQ(root->metaObject()->className(), "KelvarinMathParserPlugin");
  EXPECT_EQ(loader.metaData().value("IID").toString(), "KelvarinPluginInterface/1.0");
  for (const char* name : {"KelvarinPluginInterface", "KelvarinPluginInterface/1.0"}) {
    EXPECT_EQ(root->qt_metacast(name), plugin) << name;
  }
  EXPECT_EQ(root->qt_metacast("Other/1.0"), nullptr);
  QPluginLoader second(QStringLiteral(PLUGIN_FILE));
  EXPECT_EQ(second.instance(), root);
  EXPECT_EQ(plugin->pluginVersion(), 4.11);
}

TEST_F(Plugin, TellsItsBuild) {
  QLibrary library(QStringLiteral(PLUGIN_FILE));
  const auto query =
      reinterpret_cast<const char* (*)()>(library.resolve("qt_plugin_query_verification_data"));
  ASSERT_NE(query, nullptr);
  EXPECT_EQ(std::string(query()),
            "pattern=QT_PLUGIN_VERIFICATION_DATA\nversion=4.8.7\ndebug=false\nbuildkey=" +
                QSysInfo::buildAbi().toStdString());
}

TEST_F(Plugin, AnswersNothingBesideItsActions) {
  ASSERT_NE(plugin, nullptr);
  for (const int index : {-1, 5, -2147483647 - 1, 2147483647}) {
    EXPECT_EQ(plugin->createAction(index, 0), nullptr) << index;
  }
  plugin->prepare();
  EXPECT_EQ(plugin->settingsPage(), nullptr);
  EXPECT_EQ(plugin->menuCommands(), nullptr);
  EXPECT_EQ(plugin->createFromForeignElement(*parseXml("<Other/>")), nullptr);
}

TEST_F(Plugin, GivesFivePrototypesWithTheirCatalogueData) {
  ASSERT_NE(plugin, nullptr);
  RecordingHost host;
  Strings helpPages;
  for (int i = 0; i < 5; ++i) {
    const Entry& expected = kCatalogue[i];
    const std::unique_ptr<ActionItem> action(plugin->createAction(i, 0));
    ASSERT_NE(action, nullptr);
    EXPECT_STREQ(action->typeName(), expected.typeName);
    EXPECT_EQ(action->toolTip(), expected.toolTip);
    EXPECT_EQ(action->getTags(), expected.tags);
    EXPECT_EQ(action->getKeywords(), expected.keywords);
    EXPECT_EQ(action->getFileTypes(), expected.fileTypes);
    EXPECT_TRUE(action->getAlternativeNames().isEmpty());
    EXPECT_EQ(action->inputPinCount(), expected.pinsIn);
    EXPECT_EQ(action->outputPinCount(), expected.pinsOut);
    action->getHelp();
    helpPages.push_back(expected.helpId);
  }
  EXPECT_EQ(host.helpPages(), helpPages);
  EXPECT_EQ(host.log(), Strings{});
}

TEST_F(Plugin, EveryActionHasAPictureOfItsOwn) {
  ASSERT_NE(plugin, nullptr);
  std::set<qint64> pictures;
  for (int i = 0; i < 5; ++i) {
    const std::unique_ptr<ActionItem> action(plugin->createAction(i, 0));
    QPixmap* picture = action->getImage(48);
    ASSERT_NE(picture, nullptr) << action->typeName();
    EXPECT_EQ(picture->width(), 48);
    EXPECT_EQ(action->getImage(48), picture);
    pictures.insert(picture->cacheKey());
    EXPECT_EQ(action->editPropertyFrame(nullptr), nullptr);
  }
  EXPECT_EQ(pictures.size(), 5u);
}

TEST_F(Plugin, WhatAPrototypeSavesIsReadBackAsItself) {
  ASSERT_NE(plugin, nullptr);
  for (int i = 0; i < 5; ++i) {
    const std::unique_ptr<ActionItem> action(plugin->createAction(i, 0));
    std::wostringstream first;
    action->saveXML(first, "an 'action'");
    const auto node = parseXml(QString::fromStdWString(first.str()).toUtf8());
    ASSERT_TRUE(node) << node.error().message.toStdString();
    EXPECT_EQ(node->name(), action->typeName());
    EXPECT_EQ(xmltof(node->getAttribute(utf16(u"version")), 0), kCatalogue[i].version);
    const std::unique_ptr<ActionItem> again(action->createFromXML(*node, nullptr));
    std::wostringstream second;
    again->saveXML(second, again->name());
    EXPECT_EQ(first.str(), second.str());
    EXPECT_TRUE(first.str().ends_with(
        L"</" + QString::fromLatin1(action->typeName()).toStdWString() + L">\n"));
  }
}

}  // namespace
