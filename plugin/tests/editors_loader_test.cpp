// A plug-in beside which the library with the editors is missing.
#include <memory>

#include <gtest/gtest.h>
#include <QFile>
#include <QPluginLoader>
#include <QTemporaryDir>

#include "host/contract/action_item.h"
#include "host/contract/plugin_interface.h"
#include "host/contract/screen.h"
#include "host/testing/recording_host.h"

namespace {

class EmptyScreen final : public kelvarin::Screen {
 public:
  double pixelSize() override { return 1.0; }
  int pickColumn(const QStringList&, int, QWidget*) override { return -1; }
  QStringList pickColumns(const QStringList&, const QStringList& selected, QWidget*) override {
    return selected;
  }
};

TEST(EditorsLoader, SaysOnceWhichLibraryIsMissingAndOnlyWhereThereIsAScreen) {
  QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("libKelvarinMathParser.so"));
  ASSERT_TRUE(QFile::copy(QStringLiteral(PLUGIN_FILE), file));
  QPluginLoader loader(file);
  auto* plugin = qobject_cast<KelvarinPluginInterface*>(loader.instance());
  ASSERT_NE(plugin, nullptr) << loader.errorString().toStdString();
  const std::unique_ptr<ActionItem> action(plugin->createAction(0, 0));
  kelvarin::testing::RecordingHost host;
  EXPECT_EQ(action->editPropertyFrame(nullptr), nullptr);
  EXPECT_TRUE(host.log().empty());

  EmptyScreen screen;
  kelvarin::installScreen(&screen);
  EXPECT_EQ(action->editPropertyFrame(nullptr), nullptr);
  EXPECT_EQ(action->editPropertyFrame(nullptr), nullptr);
  ASSERT_EQ(host.log().size(), 1u);
  const std::string expected =
      "error: The property editors cannot be opened: " +
      folder.filePath(QStringLiteral("libKelvarinEditors.so")).toStdString();
  EXPECT_EQ(host.log()[0].substr(0, expected.size()), expected);
  kelvarin::installScreen(nullptr);
}

}  // namespace
