// Layouts by the real program: in layers, without overlap, around what stays, ended at once, and
// what is said when it is not there.
#include <random>
#include <sstream>

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include "gui/arrange/arrangement.h"
#include "gui/arrange/layout_fit.h"
#include "gui/arrange/layout_text.h"
#include "gui/document/edited_graph.h"
#include "host/engine/action_catalogue.h"

namespace kelvarin {
namespace {

constexpr QSizeF kBox(152, 80);

class Join final : public ActionItem {
 public:
  explicit Join(XMLNode node, GlobalParameters* parameters = nullptr)
      : ActionItem(node, parameters) {
    m_inputPinCount = 2;
  }
  const char* typeName() const override { return "Join"; }
  void setComputeRoutine() override {
    computeRoutine = [](ActionItem*) { return true; };
  }
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override {
    return new Join(node, parameters);
  }
};

ActionCatalogue::Prototypes prototypes() {
  ActionCatalogue::Prototypes actions;
  actions.push_back(std::make_unique<Join>(XMLNode::emptyNode()));
  return actions;
}

class ArrangementTest : public ::testing::Test {
 protected:
  ArrangementTest() { m_arrangement.setProgram(QStringLiteral(ARRANGE_PROGRAM)); }

  // Actions 0, 1, ... and links from the first to the second one of each pair.
  void load(int count, const std::vector<std::pair<int, int>>& links) {
    QByteArray text = "<KelvarinGraph version='1.0'><Actions>";
    for (int i = 0; i < count; ++i) {
      text += "<Join name='" + QByteArray::number(i) + "' x='" + QByteArray::number(10 * i) +
              "' y='40'/>";
    }
    text += "</Actions><Links>";
    std::vector<int> taken(static_cast<std::size_t>(count));
    for (const auto& [from, to] : links) {
      int& pin = taken[static_cast<std::size_t>(to)];
      if (pin < 2) {
        text += "<Link from='" + QByteArray::number(from) + "' to='" + QByteArray::number(to) +
                "' toPin='" + QByteArray::number(pin++) + "'/>";
      }
    }
    ASSERT_TRUE(m_graph.load(text + "</Links></KelvarinGraph>", {}));
    for (const ActionId id : m_graph.actions()) {
      m_sizes.insert(id, kBox);
    }
  }
  ActionId id(int number) const { return m_graph.idOf(QString::number(number)); }

  QHash<ActionId, QPointF> arrange(const QSet<ActionId>& actions = {}) {
    QSignalSpy arranged(&m_arrangement, &Arrangement::arranged);
    QSignalSpy failed(&m_arrangement, &Arrangement::failed);
    m_arrangement.start(m_graph, actions, m_sizes);
    EXPECT_TRUE(m_arrangement.isRunning());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !arranged.isEmpty() || !failed.isEmpty(); }, 60'000));
    EXPECT_TRUE(failed.isEmpty()) << failed[0][0].toString().toStdString();
    EXPECT_FALSE(m_arrangement.isRunning());
    return arranged.isEmpty() ? QHash<ActionId, QPointF>()
                              : arranged[0][0].value<QHash<ActionId, QPointF>>();
  }

  static void expectNoOverlap(const QHash<ActionId, QPointF>& positions) {
    const QList<QPointF> corners = positions.values();
    for (int i = 0; i < corners.size(); ++i) {
      EXPECT_EQ(std::fmod(corners[i].x(), 8.0), 0.0);
      EXPECT_EQ(std::fmod(corners[i].y(), 8.0), 0.0);
      for (int j = 0; j < i; ++j) {
        ASSERT_FALSE(QRectF(corners[i], kBox).intersects(QRectF(corners[j], kBox)));
      }
    }
  }

  ActionCatalogue m_catalogue{nullptr, prototypes()};
  EditedGraph m_graph{m_catalogue};
  QHash<ActionId, QSizeF> m_sizes;
  Arrangement m_arrangement;
};

TEST_F(ArrangementTest, LinksGoFromLeftToRightAndUnlinkedPartsDoNotMix) {
  load(7, {{0, 1}, {1, 2}, {1, 3}, {4, 5}});
  const QHash<ActionId, QPointF> at = arrange();
  ASSERT_EQ(at.size(), 7);
  expectNoOverlap(at);
  EXPECT_LT(at[id(0)].x() + kBox.width(), at[id(1)].x());
  EXPECT_EQ(at[id(2)].x(), at[id(3)].x());
  EXPECT_GT(at[id(4)].y(), at[id(2)].y());
  EXPECT_GT(at[id(4)].y(), at[id(3)].y());
  EXPECT_GT(at[id(6)].y(), at[id(5)].y());
}

TEST_F(ArrangementTest, OnlyWhatIsSelectedMovesAndOnNothingElse) {
  load(6, {{0, 1}, {1, 2}, {2, 3}});
  const QHash<ActionId, QPointF> at = arrange({id(1), id(2)});
  EXPECT_EQ(at.size(), 2);
  for (const ActionId moved : {id(1), id(2)}) {
    for (const ActionId other : {id(0), id(3), id(4), id(5)}) {
      EXPECT_FALSE(QRectF(at[moved], kBox).intersects(QRectF(m_graph.position(other), kBox)));
    }
  }
}

TEST_F(ArrangementTest, AThousandActionsWithinTenSecondsWhileEventsGoOn) {
  std::minstd_rand random(3);
  std::vector<std::pair<int, int>> links;
  for (int i = 1; i < 1000; ++i) {
    links.emplace_back(static_cast<int>(random() % static_cast<unsigned>(i)), i);
  }
  for (int i = 0; i < 501; ++i) {
    const int to = 500 + static_cast<int>(random() % 500);
    links.emplace_back(to - 1 - static_cast<int>(random() % 60), to);
  }
  load(1000, links);
  QElapsedTimer timer;
  timer.start();
  const QHash<ActionId, QPointF> at = arrange();
  EXPECT_LT(timer.elapsed(), 40'000);
  EXPECT_EQ(at.size(), 1000);
  expectNoOverlap(at);
}

TEST_F(ArrangementTest, AMissingProgramIsAMessageAndANewRequestEndsTheOldOne) {
  load(3, {{0, 1}});
  QSignalSpy failed(&m_arrangement, &Arrangement::failed);
  m_arrangement.setProgram(QStringLiteral("/nowhere/kelvarin-arrange"));
  m_arrangement.start(m_graph, {}, m_sizes);
  EXPECT_TRUE(QTest::qWaitFor([&failed] { return !failed.isEmpty(); }));
  EXPECT_TRUE(failed[0][0].toString().contains(QStringLiteral("libgvc6")));
  EXPECT_FALSE(m_arrangement.isRunning());

  m_arrangement.setProgram(QStringLiteral("/bin/cat"));
  m_arrangement.start(m_graph, {}, m_sizes);
  m_arrangement.cancel();
  EXPECT_FALSE(m_arrangement.isRunning());
  m_arrangement.setProgram(QStringLiteral("/bin/false"));
  m_arrangement.start(m_graph, {}, m_sizes);
  EXPECT_TRUE(QTest::qWaitFor([&failed] { return failed.size() == 2; }));
  m_arrangement.setProgram(QStringLiteral(ARRANGE_PROGRAM));
  EXPECT_EQ(arrange().size(), 3);
}

TEST(LayoutText, WhatIsNoGraphIsRefused) {
  for (const char* text :
       {"box 1 2", "box 1 10 10 0 0 box 1 10 10 0 0", "link 1 0 2 0", "circle"}) {
    std::istringstream in(text);
    LayoutGraph graph;
    EXPECT_FALSE(read(in, graph)) << text;
  }
}

TEST(LayoutFit, MovesBelowWhatStays) {
  const QHash<ActionId, QPointF> at =
      fittedLayout({{1, {0, 0}}, {2, {200, 3}}}, {{1, kBox}, {2, kBox}}, {101, 0},
                   {{0, 60, 400, 30}, {0, 180, 400, 20}});
  EXPECT_EQ(at[2] - at[1], QPointF(200, 0));
  EXPECT_GT(at[1].y(), 200);
}

}  // namespace
}  // namespace kelvarin

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
