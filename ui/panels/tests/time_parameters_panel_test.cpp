// The controls of the time parameters, each with the parameter that it writes.
#include "ui/panels/time_parameters_panel.h"

#include <functional>
#include <limits>

#include <gtest/gtest.h>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>

#include "expression/options/evaluation_attributes.h"

namespace kelvarin {
namespace {

template <typename Control>
Control* control(const QWidget& panel, const char* name) {
  auto* found = panel.findChild<Control*>(QLatin1String(name));
  EXPECT_NE(found, nullptr) << name;
  return found;
}

QStringList changedIn(const TimeParameters& parameters) {
  EvaluationOptions options;
  options.time = parameters;
  return changedOptions(options);
}

void type(QLineEdit* field, const QString& text) {
  field->clear();
  QTest::keyClicks(field, text);
}

TEST(TimeParametersPanel, EveryControlWritesItsParameterAndReportsIt) {
  struct Case {
    std::function<void(TimeParametersPanel&)> act;
    const char* changed;
  };
  const auto click = [](const char* name) {
    return [name](TimeParametersPanel& panel) { control<QAbstractButton>(panel, name)->click(); };
  };
  const Case cases[] = {
      {click("cbAddNow"), "addNow=1"},
      {click("cbAddNowDate"), "addNowS=1"},
      {click("cbUTC"), "isUTC=0"},
      {click("cbUTC2"), "isUTC=0"},
      {click("rbETToRefTime"), "castToET1=1"},
      {click("rbETToRefTime2"), "castToET2=1"},
      {click("cbEmptyETToNull"), "emptyETToNull=0"},
      {[](auto& panel) { control<QComboBox>(panel, "cbETUnit")->setCurrentIndex(3); },
       "elapsedTimeUnit=3"},
      {[](auto& panel) { control<QComboBox>(panel, "cbDateFormat")->setCurrentIndex(6); },
       "dateFormatType=6"},
      {[](auto& panel) { control<QSpinBox>(panel, "sbSeed")->setValue(7); }, "seed=7"},
      {[](auto& panel) { type(control<QLineEdit>(panel, "leRefTime"), "2"); }, "referenceTime=2"},
      {[](auto& panel) { type(control<QLineEdit>(panel, "leDateFormat"), "d"); }, "dateFormat=d"},
  };
  for (const Case& test : cases) {
    TimeParametersPanel panel;
    const QSignalSpy changes(&panel, &TimeParametersPanel::changed);
    test.act(panel);
    EXPECT_EQ(changedIn(panel.parameters()).join(" ").toStdString(), test.changed);
    EXPECT_EQ(changes.count(), 1) << test.changed;
  }
}

TEST(TimeParametersPanel, FillingReportsNothingAndKeepsValuesThatNoControlOffers) {
  TimeParameters odd;
  odd.elapsedTimeUnit = 9;
  odd.dateFormatType = -4;
  odd.castToET1 = 5;
  odd.seed = std::numeric_limits<int>::min();
  TimeParametersPanel panel;
  const QSignalSpy changes(&panel, &TimeParametersPanel::changed);
  panel.setParameters(odd);
  EXPECT_EQ(changes.count(), 0);
  control<QCheckBox>(panel, "cbAddNow")->click();
  odd.addNow = true;
  EXPECT_EQ(changedIn(panel.parameters()), changedIn(odd));
}

TEST(TimeParametersPanel, ExamplesFollowTheParameters) {
  TimeParametersPanel panel;
  const auto text = [&](const char* name) { return control<QLabel>(panel, name)->text(); };
  EXPECT_TRUE(text("lbFormatExample").contains("No format"));
  type(control<QLineEdit>(panel, "leDateFormat"), "'in' yyyy");
  EXPECT_TRUE(text("lbFormatExample").contains("in 20")) << text("lbFormatExample").toStdString();
  type(control<QLineEdit>(panel, "leRefTime"), "20000101 06:00:00");
  EXPECT_TRUE(text("lbReferenceExample").contains("2000-01-01 06:00:00 UTC"));
  type(control<QLineEdit>(panel, "leRefTime"), "1.2.2000");
  EXPECT_TRUE(text("lbReferenceExample").contains("Write it: 20000201 00:00:00"));
  panel.setExpansion([](const QString&) { return QStringLiteral("19990101 00:00:00"); });
  EXPECT_TRUE(text("lbReferenceExample").contains("1999-01-01"));
}

}  // namespace
}  // namespace kelvarin
