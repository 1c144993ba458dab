// What becomes of files that are dropped on a window.
#include <algorithm>

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "gui/drops/file_drop.h"
#include "host/tables/table_actions.h"

namespace kelvarin {
namespace {

class FileDropTest : public ::testing::Test {
 protected:
  QString write(const QString& name, const QByteArray& bytes) const {
    const QString path = m_folder.filePath(name);
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return path;
  }
  // One string for all reasons.
  QString drop(const QStringList& files) {
    QSignalSpy added(&m_drop, &FileDrop::added);
    QSignalSpy refused(&m_drop, &FileDrop::refused);
    QSignalSpy graph(&m_drop, &FileDrop::graphWanted);
    m_drop.take(files, {});
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return !added.isEmpty() || !refused.isEmpty() || !graph.isEmpty(); }));
    m_wantedGraph = graph.isEmpty() ? QString() : graph[0][0].toString();
    return refused.isEmpty() ? QString() : refused[0][0].toString();
  }
  QString element(const QString& name) const {
    const ActionId id = m_graph.idOf(name);
    return id == kNoId ? QString() : QString::fromUtf8(m_graph.element(id));
  }

  QTemporaryDir m_folder;
  const ActionCatalogue m_catalogue{nullptr, makeTableActions()};
  EditedGraph m_graph{m_catalogue};
  GraphCommands m_commands{m_graph};
  FileDrop m_drop{m_commands};
  QString m_wantedGraph;
};

TEST_F(FileDropTest, ATableGetsTheSettingsThatItsFileNeeds) {
  m_graph.load("<KelvarinGraph/>", m_folder.filePath("g.kelvarin"));
  EXPECT_EQ(drop({write("plain.csv", "a,b\n1,x\n2,y\n")}), "");
  EXPECT_TRUE(element("plain").contains("<ReadCSV file='plain.csv' name='plain' x='0' y='0'/>"))
      << qPrintable(element("plain"));
  EXPECT_EQ(drop({write("odd.tsv", "1;'x;y';'p'\nNA;'z';'q'\n4;'w';'r'\n")}), "");
  const QString odd = element("odd");
  for (const char* setting : {"separator=';'", "quote='&apos;'", "header='0'", "nullText='NA'"}) {
    EXPECT_TRUE(odd.contains(QLatin1String(setting))) << setting << qPrintable(odd);
  }
  EXPECT_EQ(drop({write("notes", "a b\nc d\n")}), "");  // text of any name
  EXPECT_TRUE(element("notes").startsWith("<ReadCSV"));
}

TEST_F(FileDropTest, TextsOfOtherEncodingsAreReadAsTheyAre) {
  EXPECT_EQ(drop({write("old.csv", "a;b\nna\xEFve;1.234,5\n")}), "");
  for (const char* setting : {"encoding='windows-1252'", "decimal=','", "thousands='.'"}) {
    EXPECT_TRUE(element("old").contains(QLatin1String(setting))) << qPrintable(element("old"));
  }
}

TEST_F(FileDropTest, TheContentWinsOverTheName) {
  EXPECT_EQ(drop({write("export.dat", QByteArray("PAR1\x15\x00rest", 10))}), "");
  EXPECT_TRUE(element("export").startsWith("<ReadParquet"));
  EXPECT_EQ(drop({write("renamed.csv", QByteArray("ARROW1\0\0rest", 12))}), "");
  EXPECT_TRUE(element("renamed").startsWith("<ReadArrow"));
}

TEST_F(FileDropTest, SeveralFilesAreOneStepAndStandApart) {
  const QString folder = m_folder.filePath("all");
  write("all/b.csv", "x\n1\n");
  write("all/a.csv", "x\n1\n");
  write("all/readme.md", "words");
  EXPECT_EQ(drop({folder, write("c.csv", "x\n1\n")}), "");
  ASSERT_EQ(m_graph.actionCount(), 3);
  EXPECT_EQ(m_graph.name(m_graph.actions()[0]), "a");
  EXPECT_NE(m_graph.position(m_graph.actions()[0]), m_graph.position(m_graph.actions()[1]));
  EXPECT_EQ(m_commands.stack().undoText(), "Add 3 readers");
  m_commands.stack().undo();
  EXPECT_EQ(m_graph.actionCount(), 0);
}

TEST_F(FileDropTest, AGraphAloneIsOpened) {
  const QString graph = write("g.xml", "<KelvarinGraph version='1.0'></KelvarinGraph>");
  EXPECT_EQ(drop({graph}), "");
  EXPECT_EQ(m_wantedGraph, graph);
  EXPECT_TRUE(drop({graph, write("a.csv", "x\n1\n")}).contains("Drop it alone"));
  EXPECT_EQ(m_wantedGraph, "");
  EXPECT_EQ(m_graph.actionCount(), 1);
}

TEST_F(FileDropTest, WhatCannotBeReadIsNamedWithTheReason) {
  EXPECT_TRUE(drop({write("a.docx", QByteArray("\x01\x02\x00", 3))}).contains("No action reads"));
  EXPECT_TRUE(drop({write("a.gz", "\x1F\x8B\x08")}).contains("Unpack it"));
  EXPECT_TRUE(drop({m_folder.filePath("gone.csv")}).contains("There is no file"));
  QDir(m_folder.path()).mkdir("empty");
  EXPECT_TRUE(drop({m_folder.filePath("empty")}).contains("has no file that an action reads"));
  for (int i = 0; i < 30; ++i) {
    write(QStringLiteral("many/%1.csv").arg(i), "x\n");
  }
  EXPECT_TRUE(drop({m_folder.filePath("many")}).contains("has 30 files"));
  EXPECT_EQ(m_graph.actionCount(), 0);
  EXPECT_EQ(m_commands.stack().count(), 0);
}

TEST_F(FileDropTest, AFileIsLookedIntoBesideAndNoDropIsForgotten) {
  QSignalSpy added(&m_drop, &FileDrop::added);
  m_drop.take({write("a.csv", "x\n1\n")}, {});
  m_drop.take({write("b.csv", "x\n1\n")}, {});
  EXPECT_EQ(m_graph.actionCount(), 0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return added.size() == 2; }));
  EXPECT_EQ(m_graph.actionCount(), 2);
}

}  // namespace
}  // namespace kelvarin
