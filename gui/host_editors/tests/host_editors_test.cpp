// What holds for the editors of all host actions.
#include <QAbstractItemView>
#include <QLineEdit>

#include "gui/host_editors/tests/editor_fixture.h"
#include "host/contract/described_action.h"
#include "host/widget_testing/widget_walk.h"
#include "host/widgets/translation.h"

namespace kelvarin {
namespace {

using testing::HostEditorTest;

// Another value than the default, that the action can use.
QString otherValue(const AttributeDescription& attribute) {
  static const QMap<QString, QString> values{
      {QStringLiteral("file"), QStringLiteral("other.csv")},
      {QStringLiteral("separator"), QStringLiteral("\\t")},
      {QStringLiteral("quote"), QStringLiteral("")},
      {QStringLiteral("header"), QStringLiteral("0")},
      {QStringLiteral("nullText"), QStringLiteral(" <N & 'A'> ")},
      {QStringLiteral("format"), QStringLiteral("stream")},
      {QStringLiteral("encoding"), QStringLiteral("ISO-8859-1")},
      {QStringLiteral("decimal"), QStringLiteral(",")},
      {QStringLiteral("thousands"), QStringLiteral("'")},
      {QStringLiteral("skipLines"), QStringLiteral("2")},
      {QStringLiteral("comment"), QStringLiteral("#")},
      {QStringLiteral("short"), QStringLiteral("null")},
      {QStringLiteral("long"), QStringLiteral("ignore")},
      {QStringLiteral("onBadValue"), QStringLiteral("null")},
      {QStringLiteral("unreadable"), QStringLiteral("text")},
      {QStringLiteral("createDir"), QStringLiteral("1")},
      {QStringLiteral("split"), QStringLiteral("2")}};
  return values.value(attribute.name, QStringLiteral("${p} > 'x' & \"y\""));
}

TEST_F(HostEditorTest, EveryAttributeHasAControlAndComesBackAsItWas) {
  for (const auto& action : m_prototypes) {
    const QByteArray type = action->typeName();
    for (const AttributeDescription& attribute : descriptionOf(*action)->attributes) {
      open("<" + type + " name='a' x='1' y='2'/>");
      EXPECT_NE(m_editor->findChild<QWidget*>(attribute.name), nullptr)
          << type.constData() << " " << attribute.name.toStdString();
      m_editor->commit();
      EXPECT_TRUE(m_committed.isEmpty()) << m_committed.value(0).constData();

      const QString value = otherValue(attribute);
      m_editor->restoreUncommitted({{attribute.name, value}});
      EXPECT_EQ(m_editor->uncommittedState().value(attribute.name), value);
      m_editor->commit();
      ASSERT_EQ(m_committed.size(), 1) << type.constData() << attribute.name.toStdString();
      EditedElement expected = EditedElement::of(*parseXml(m_saved));
      expected.setAttribute(attribute.name, value);
      EXPECT_EQ(m_committed[0], expected.document());

      const QByteArray written = m_committed[0];
      open(written);
      EXPECT_TRUE(m_editor->uncommittedState().isEmpty());
      m_editor->commit();
      EXPECT_TRUE(m_committed.isEmpty()) << written.constData() << m_committed.value(0).constData();
    }
  }
}

TEST_F(HostEditorTest, ValuesOfParametersAndDefaultsThatAreSpeltOutStay) {
  open("<ReadCSV name='a' file='${p}.csv' separator='${p}' quote='\"' header='${p}'/>");
  m_editor->commit();
  EXPECT_TRUE(m_committed.isEmpty()) << m_committed.value(0).constData();
}

TEST_F(HostEditorTest, WhatCannotBeUsedStaysInItsFieldWithTheReason) {
  open("<WriteCSV name='a' file='a.csv'/>");
  m_editor->restoreUncommitted({{QStringLiteral("separator"), QStringLiteral("ab")}});
  m_editor->commit();
  EXPECT_TRUE(m_committed.isEmpty());
  EXPECT_EQ(m_editor->uncommittedState().value(QStringLiteral("separator")), u"ab");
  EXPECT_TRUE(widget<QWidget>("faults").isVisible());
}

TEST_F(HostEditorTest, CopyingWhereNothingIsCurrentCopiesNothing) {
  const QString file = write("a.csv", "id,name\n1,one\n");
  for (const QByteArray& xml :
       {"<ReadCSV name='a' file='" + file.toUtf8() + "'/>",
        QByteArray("<InlineTable name='a'><Column name='x' meta='F'/></InlineTable>")}) {
    open(xml);
    const auto views = m_editor->findChildren<QAbstractItemView*>();
    ASSERT_FALSE(views.isEmpty());
    for (QAbstractItemView* view : views) {
      view->setCurrentIndex({});
      QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
    }
  }
}

TEST_F(HostEditorTest, ControlsHaveNamesAreReachedByTabAndCutNothing) {
  const QString file = write("a.csv", "id,name\n1,one\n2,\n");
  for (const auto& [factor, language] : {std::pair(1.0, "en"), {2.0, "en"}, {2.0, "de"}}) {
    const testing::LargeFonts fonts(factor);
    const Translation translation({language});
    for (const auto& action : m_prototypes) {
      const QByteArray type = action->typeName();
      const bool hasFile = !descriptionOf(*action)->attributes.empty() &&
                           descriptionOf(*action)->attributes[0].name == u"file";
      open("<" + type + " name='a'" + (hasFile ? " file='" + file.toUtf8() + "'" : "") + "/>");
      m_editor->resize(static_cast<int>(480 * factor), static_cast<int>(700 * factor));
      QCoreApplication::processEvents();
      testing::onEveryPage(*m_editor, [&, isEnglish = language == QByteArray("en")] {
        EXPECT_EQ(testing::controlsWithoutName(*m_editor).join(u'\n').toStdString(), "")
            << type.constData();
        EXPECT_EQ(testing::controlsOutOfTabReach(*m_editor).join(u'\n').toStdString(), "")
            << type.constData();
        EXPECT_EQ(testing::cutTexts(*m_editor).join(u'\n').toStdString(), "") << type.constData();
        EXPECT_EQ(testing::keysWithTwoOwners(*m_editor).join(u'\n').toStdString(), "")
            << type.constData();
        if (isEnglish) {
          EXPECT_EQ(testing::mnemonicsWithTwoOwners(*m_editor).join(u'\n').toStdString(), "")
              << type.constData();
        }
      });
    }
  }
}

}  // namespace
}  // namespace kelvarin
