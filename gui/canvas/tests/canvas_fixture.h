// A canvas with actions that do nothing, driven by mouse and keys, for the tests of this module.
#pragma once

#include <memory>

#include <gtest/gtest.h>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>

#include "gui/canvas/action_box.h"
#include "gui/canvas/canvas_view.h"
#include "gui/canvas/link_curve.h"
#include "gui/canvas/note_box.h"
#include "host/engine/action_catalogue.h"
#include "host/widgets/theme.h"

namespace kelvarin::testing {

class IdleAction final : public ActionItem {
 public:
  IdleAction(const char* typeName, int pinsIn, int pinsOut, XMLNode node = XMLNode::emptyNode(),
             GlobalParameters* parameters = nullptr)
      : ActionItem(node, parameters), m_typeName(typeName) {
    m_inputPinCount = pinsIn;
    m_outputPinCount = pinsOut;
  }
  const char* typeName() const override { return m_typeName; }
  void setComputeRoutine() override {
    computeRoutine = [](ActionItem*) { return true; };
  }
  void saveXML(std::wostringstream& out, QString name) override {
    saveAI(out, name, 1.0);
    out << L"/>";
  }
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override {
    return new IdleAction(m_typeName, m_inputPinCount, m_outputPinCount, node, parameters);
  }

 private:
  const char* const m_typeName;
};

inline ActionCatalogue::Prototypes idleActions() {
  ActionCatalogue::Prototypes actions;
  actions.push_back(std::make_unique<IdleAction>("Source", 0, 1));
  actions.push_back(std::make_unique<IdleAction>("Step", 1, 1));
  actions.push_back(std::make_unique<IdleAction>("Split", 1, 2));
  actions.push_back(std::make_unique<IdleAction>("Join", 2, 1));
  actions.push_back(std::make_unique<IdleAction>("Sink", 1, 0));
  return actions;
}

// a -> b -> c in a row, and `alone` below them; a note at the left.
inline constexpr char kSmallGraph[] =
    "<KelvarinGraph version='1.0'><Actions>"
    "<Source name='a' x='0' y='0'/><Step name='b' x='240' y='0'/>"
    "<Sink name='c' x='480' y='0'/><Step name='alone' x='240' y='200'/>"
    "</Actions><Links><Link from='a' to='b'/><Link from='b' to='c'/></Links>"
    "<Notes><Note x='-200' y='160' w='160' h='96' color='#d0ebff'>about the data</Note></Notes>"
    "</KelvarinGraph>";

class Canvas {
 public:
  explicit Canvas(const QByteArray& document = kSmallGraph, QSize size = {1000, 700}) {
    EXPECT_TRUE(graph.load(document, {}));
    view.resize(size);
    view.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    view.zoomToAll();
    view.setExtract({1.0, view.extract().centre});
    view.setFocus();
  }

  ActionId id(const char* name) const { return graph.idOf(QString::fromLatin1(name)); }
  CanvasScene& scene() const { return view.canvasScene(); }
  QPointF position(const char* name) const { return graph.position(id(name)); }
  QPoint onView(QPointF point) const { return view.mapFromScene(point); }
  QPoint at(const char* name) const { return onView(scene().box(id(name))->body().center()); }
  QPoint pin(const char* name, int pin, bool isOutput) const {
    return onView(scene().box(id(name))->pinPosition(pin, isOutput));
  }
  LinkId link(const char* from, const char* to) const {
    for (const LinkId link : graph.links()) {
      if (graph.link(link).from == id(from) && graph.link(link).to == id(to)) {
        return link;
      }
    }
    return kNoId;
  }
  void select(const char* name) { view.setSelection({{id(name)}, {}, {}}); }

  void press(QPoint point, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mousePress(view.viewport(), Qt::LeftButton, modifiers, point);
  }
  void move(QPoint point) { QTest::mouseMove(view.viewport(), point); }
  void release(QPoint point, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, modifiers, point);
  }
  void drag(QPoint from, QPoint to) {
    press(from);
    move((from + to) / 2);
    move(to);
    release(to);
  }
  void click(QPoint point, Qt::KeyboardModifiers modifiers = {}) {
    press(point, modifiers);
    release(point, modifiers);
  }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&view, key, modifiers);
  }

  ActionCatalogue catalogue{nullptr, idleActions()};
  EditedGraph graph{catalogue};
  GraphCommands commands{graph};
  Theme theme;
  CanvasView view{commands, theme};
};

}  // namespace kelvarin::testing
