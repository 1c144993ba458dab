// What anyone expects of the window as a whole: every control has a name and is reached by Tab, no
// text is cut, and no key has two owners, wherever the focus is.
#include <QDockWidget>
#include <QTableView>
#include <QTest>

#include "gui/canvas/canvas_view.h"
#include "gui/properties/property_panel.h"
#include "gui/tests/all_actions.h"
#include "gui/window/tests/host_program.h"
#include "host/widget_testing/widget_walk.h"
#include "host/widgets/translation.h"

namespace kelvarin::testing {
namespace {

std::string joined(const QStringList& faults) {
  return faults.join(u'\n').toStdString();
}

class HostWindowWalk : public ::testing::Test {
 protected:
  // Every editor in turn, and each panel below.
  void onEveryView(HostProgram& program, const std::function<void(const QString&)>& visit) {
    program.open(m_folder.graphOfAllTypes());
    for (const char* panel : {"preview", "log", "report"}) {
      program.window.findChild<QDockWidget*>(panel)->raise();
      QCoreApplication::processEvents();
      visit(panel);
    }
    for (const CatalogueEntry& entry : wholeCatalogue().entries()) {
      program.select(entry.typeName);
      ASSERT_TRUE(program.window.properties().editor() != nullptr) << entry.typeName.toStdString();
      visit(entry.typeName);
    }
    program.select("speed and delays");
    auto* rows = program.window.findChild<QTableView*>("previewRows");
    ASSERT_NE(rows, nullptr);
    ASSERT_TRUE(QTest::qWaitFor([rows] { return rows->model()->rowCount() > 0; }));
    visit("rows");
  }
  void expectNothingCut() {
    HostProgram program{wholeCatalogue()};
    EXPECT_EQ(joined(cutTexts(program.window)), "") << "start page";
    onEveryView(program, [&](const QString& view) {
      onEveryPage(program.window, [&] {
        // Panels take what they need step by step.
        (void)QTest::qWaitFor([&] { return cutTexts(program.window).isEmpty(); }, 300);
        EXPECT_EQ(joined(cutTexts(program.window)), "") << view.toStdString();
      });
    });
  }

  void expectOneOwner() {
    HostProgram program{wholeCatalogue()};
    onEveryView(program, [&](const QString& view) {
      for (QWidget* widget : program.window.findChildren<QWidget*>()) {
        if ((widget->focusPolicy() & Qt::TabFocus) == 0 || !widget->isVisible()) {
          continue;
        }
        widget->setFocus();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);  // keys follow the focus
        EXPECT_EQ(joined(ambiguousKeys(program.window)), "")
            << view.toStdString() << " " << widget->metaObject()->className() << " "
            << widget->objectName().toStdString();
      }
    });
  }

  ExampleFolder m_folder;
};

TEST_F(HostWindowWalk, CutsNothing) {
  expectNothingCut();
}

TEST_F(HostWindowWalk, CutsNothingInGerman) {
  const Translation translation({"de"});
  expectNothingCut();
}

TEST_F(HostWindowWalk, CutsNothingWithLargeFonts) {
  const LargeFonts fonts(2.0);
  expectNothingCut();
}

TEST_F(HostWindowWalk, CutsNothingWithLargeFontsInGerman) {
  const Translation translation({"de"});
  const LargeFonts fonts(2.0);
  expectNothingCut();
}

TEST_F(HostWindowWalk, TabLeadsThroughAllThatIsSeenAndNothingElse) {
  HostProgram program{wholeCatalogue()};
  onEveryView(program, [&](const QString& view) {
    EXPECT_EQ(joined(controlsPassedByTab(program.window)), "") << view.toStdString();
  });
}

TEST_F(HostWindowWalk, AKeyHasOneOwnerWhereverTheFocusIs) {
  expectOneOwner();
}

TEST_F(HostWindowWalk, AKeyHasOneOwnerInGerman) {
  const Translation german({"de"});
  expectOneOwner();
}

TEST_F(HostWindowWalk, EveryControlHasANameAndIsReached) {
  HostProgram program{wholeCatalogue()};
  onEveryView(program, [&](const QString& view) {
    EXPECT_EQ(joined(controlsWithoutName(program.window)), "") << view.toStdString();
    EXPECT_EQ(joined(controlsOutOfTabReach(program.window)), "") << view.toStdString();
  });
}

}  // namespace
}  // namespace kelvarin::testing
