#include "host/widget_testing/widget_walk.h"

#include <gtest/gtest.h>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>

#include "host/widget_testing/random_events.h"

using kelvarin::testing::controlsOutOfTabReach;
using kelvarin::testing::controlsWithoutName;
using kelvarin::testing::cutTexts;
using kelvarin::testing::keysWithTwoOwners;
using kelvarin::testing::LargeFonts;
using kelvarin::testing::mnemonicsWithTwoOwners;
using kelvarin::testing::onEveryPage;
using kelvarin::testing::sendRandomEvents;

namespace {

struct Form {
  QWidget window;
  QLineEdit* field = new QLineEdit(&window);
  QLabel* label = new QLabel(QStringLiteral("&Name:"), &window);
  QPushButton* button = new QPushButton(QStringLiteral("Save everything"), &window);

  Form() {
    label->setBuddy(field);
    auto* layout = new QVBoxLayout(&window);
    for (QWidget* widget : std::initializer_list<QWidget*>{label, field, button}) {
      layout->addWidget(widget);
    }
    window.show();
  }
};

TEST(Walk, FindsNothingInASoundForm) {
  Form form;
  EXPECT_EQ(controlsWithoutName(form.window), QStringList());
  EXPECT_EQ(controlsOutOfTabReach(form.window), QStringList());
  EXPECT_EQ(cutTexts(form.window), QStringList());
  EXPECT_EQ(keysWithTwoOwners(form.window), QStringList());
}

TEST(Walk, FindsEachFault) {
  Form form;
  form.label->setBuddy(nullptr);
  EXPECT_EQ(controlsWithoutName(form.window).size(), 1);
  form.button->setFocusPolicy(Qt::ClickFocus);
  EXPECT_EQ(controlsOutOfTabReach(form.window).size(), 1);
  form.button->setMaximumWidth(20);
  form.window.layout()->activate();
  EXPECT_EQ(cutTexts(form.window).size(), 1);
  form.button->setShortcut(QKeySequence(Qt::Key_F7));
  new QShortcut(QKeySequence(Qt::Key_F7), form.field, nullptr, nullptr, Qt::WidgetShortcut);
  EXPECT_EQ(keysWithTwoOwners(form.window).size(), 1);
  EXPECT_EQ(mnemonicsWithTwoOwners(form.window), QStringList());
  form.button->setText(QStringLiteral("Both && &View"));
  EXPECT_EQ(mnemonicsWithTwoOwners(form.window).size(), 1);
  EXPECT_EQ(mnemonicsWithTwoOwners(form.window, QStringLiteral("de")), QStringList());
}

TEST(Walk, SeesHiddenPagesAndLargeFonts) {
  QTabWidget tabs;
  tabs.addTab(new QPushButton(QStringLiteral("first")), QStringLiteral("One"));
  auto* second = new QPushButton;
  tabs.addTab(second, QStringLiteral("Two"));
  tabs.show();
  EXPECT_EQ(controlsWithoutName(tabs).size(), 1);
  int visits = 0;
  onEveryPage(tabs, [&visits] { ++visits; });
  EXPECT_EQ(visits, 2);
  const int height = QPushButton(QStringLiteral("x")).sizeHint().height();
  const LargeFonts large(2.0);
  EXPECT_GT(QPushButton(QStringLiteral("x")).sizeHint().height(), height);
}

TEST(Events, ReachFieldsAndButtons) {
  Form form;
  int clicks = 0;
  QObject::connect(form.button, &QPushButton::clicked, &form.window, [&clicks] { ++clicks; });
  int texts = 0;
  QObject::connect(form.field, &QLineEdit::textEdited, &form.window, [&texts] { ++texts; });
  sendRandomEvents(form.window, 1000);
  EXPECT_GT(clicks, 10);
  EXPECT_GT(texts, 10);
}

}  // namespace
