// The editors of WriteCSV, WriteParquet and WriteArrow: what a run would do with the file, and
// which columns it would write.
#include <QComboBox>
#include <QLabel>
#include <QListWidget>

#include "gui/host_editors/tests/editor_fixture.h"
#include "gui/host_editors/write_table_editor.h"
#include "host/testing/recording_host.h"
#include "host/widgets/info_line.h"

namespace kelvarin {
namespace {

// Knows the columns at the second question, as while they are being computed.
class HostWithColumns : public testing::RecordingHost {
 public:
  PinColumns columnsOfInputPin(const ActionItem&, int) override {
    PinColumns columns;
    columns.isKnown = ++m_questions > 1;
    columns.isBeingComputed = !columns.isKnown;
    columns.columns = {{QStringLiteral("id"), MetaTypeColumn::key},
                       {QStringLiteral("name"), MetaTypeColumn::text}};
    return columns;
  }

 private:
  int m_questions = 0;
};

class WriteTableEditorTest : public testing::HostEditorTest {
 protected:
  QString state(const QByteArray& xml) {
    open(xml);
    auto* editor = qobject_cast<WriteTableEditor*>(m_editor.get());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !editor->isBusy(); }, 20'000));
    return widget<InfoLine>("state").text();
  }
};

TEST_F(WriteTableEditorTest, SaysWhatARunDoesWithTheFile) {
  write("there.csv", "a\n1\n");
  const std::vector<std::pair<QByteArray, const char*>> cases{
      {"<WriteCSV name='a' file='there.csv'/>", "is replaced"},
      {"<WriteCSV name='a' file='new.csv'/>", "A run makes"},
      {"<WriteCSV name='a' file='none/new.csv'/>", "none"},
      {"<WriteCSV name='a' file='none/new.csv' createDir='1'/>", "A run makes"},
      {"<WriteCSV name='a' file='new.csv' split='2' splitVar='x'/>", "new*.csv"},
      {"<WriteCSV name='a' file='-'/>", "standard output"},
      {"<WriteCSV name='a' file='/dev/null'/>", "device"},
      {"<WriteCSV name='a'/>", "Choose"},
      {"<WriteParquet name='a' file='new.csv'/>", "csv"},
      {"<WriteArrow name='a' file='new.arrow'/>", "A run makes"}};
  for (const auto& [xml, text] : cases) {
    const QString said = state(xml);
    EXPECT_TRUE(said.contains(QLatin1String(text))) << xml.data() << ": " << said.toStdString();
  }
}

TEST_F(WriteTableEditorTest, ListsTheColumnsAsSoonAsTheyAreKnown) {
  HostWithColumns host;
  open("<WriteCSV name='a' file='new.csv'/>");
  auto& columns = widget<QListWidget>("columns");
  EXPECT_TRUE(columns.isHidden());
  EXPECT_TRUE(QTest::qWaitFor([&] { return !columns.isHidden(); }, 5'000));
  ASSERT_EQ(columns.count(), 2);
  EXPECT_EQ(columns.item(0)->text(), QStringLiteral("id (Key)"));
  m_editor->restoreUncommitted({{QStringLiteral("separator"), QStringLiteral(";")}});
  m_editor->commit();
  EXPECT_EQ(columns.count(), 2);
}

TEST_F(WriteTableEditorTest, GivesTheChosenColumnItsTypeInTheFile) {
  HostWithColumns host;
  open("<WriteParquet name='a' file='x.parquet'><Column name='old' type='date'/></WriteParquet>");
  auto& columns = widget<QListWidget>("columns");
  EXPECT_TRUE(QTest::qWaitFor([&] { return columns.count() == 3; }, 5'000));
  EXPECT_EQ(columns.item(2)->text(), QStringLiteral("old, in the file date"));
  auto& type = widget<QComboBox>("storedType");
  const auto choose = [&](int column, const char* name) {
    columns.setCurrentRow(column);
    type.setCurrentIndex(type.findData(QString::fromLatin1(name)));
    emit type.activated(type.currentIndex());
    QCoreApplication::processEvents();
  };
  choose(0, "int64");
  EXPECT_EQ(columns.item(0)->text(), QStringLiteral("id (Key), in the file int64"));
  choose(2, "");
  ASSERT_EQ(m_committed.size(), 2);
  EXPECT_TRUE(m_committed[1].contains("<Column name='id' type='int64'/>")) << m_committed[1].data();
  EXPECT_FALSE(m_committed[1].contains("old"));
  EXPECT_EQ(columns.count(), 2);
}

}  // namespace
}  // namespace kelvarin
