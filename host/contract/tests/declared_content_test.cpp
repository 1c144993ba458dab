#include <gtest/gtest.h>

#include "host/contract/declared_content.h"

using kelvarin::ActionDescription;
using kelvarin::AllowedValues;
using kelvarin::AttributeKind;

namespace {

constexpr AllowedValues kUpToTwo{.min = 0, .max = 2, .inWords = "0, 1 or 2"};
constexpr AllowedValues kUnits{
    .min = 0, .max = 2, .inWords = "a unit", .effectOfOthers = "It counts as 0."};
constexpr AllowedValues kTypes{
    .codes = "FU", .inWords = "F or U", .effectOfOthers = "It counts as U."};

ActionDescription mill() {
  ActionDescription mill{.typeName = "Mill", .toolTip = ""};
  mill.attributes = {{"stones", AttributeKind::wholeNumber, "", "1", kUpToTwo},
                     {"unit", AttributeKind::wholeNumber, "", "0", kUnits},
                     {"isWet", AttributeKind::flag, "", "0"},
                     {"size", AttributeKind::cutNumber, "", "1", kUpToTwo},
                     {"referenceTime", AttributeKind::text, "", ""}};
  mill.children = {{.name = "Grain",
                    .meaning = "",
                    .textMeaning = "its name",
                    .attributes = {{"meta", AttributeKind::typeCode, "", "U", kTypes},
                                   {"isNumber", AttributeKind::flag, "", "1"},
                                   {"value", AttributeKind::sample, "", ""}}},
                   {.name = "Sacks", .meaning = "", .children = {{.name = "Sack", .meaning = ""}}},
                   {.name = "Sack", .meaning = "", .replacedBy = "Sacks"}};
  return mill;
}

// "LINE error: TEXT", in the order found.
QStringList faultsOf(const QByteArray& element) {
  const auto node = kelvarin::parseXml(element);
  EXPECT_TRUE(node);
  GlobalParameters parameters;
  parameters.setValue("two", "2");
  parameters.setValue("word", "maybe");
  QStringList found;
  for (const auto& fault : kelvarin::contentFaults(*node, mill(), parameters)) {
    found += QString("%1 %2: %3")
                 .arg(fault.element.position().line)
                 .arg(fault.level == LogLevel::error ? "error" : "warning", fault.message);
  }
  return found;
}

QStringList faultsOfAttribute(const QByteArray& attribute) {
  return faultsOf("<Mill " + attribute + "/>");
}

}  // namespace

TEST(DeclaredContent, WhatIsDeclaredIsNoFault) {
  EXPECT_EQ(faultsOf("<Mill name='m' version='1' x='1.5' y='-2' stones='${two}' unit=' ' isWet='1' "
                     "size='1.9' referenceTime='${any}'><Grain meta='F'>rye</Grain><Sacks><Sack/>"
                     "</Sacks></Mill>"),
            QStringList());
}

TEST(DeclaredContent, ElementsAndTextsComeFirstInTheOrderOfTheFile) {
  EXPECT_EQ(
      faultsOf("<Mill stone='1'>flour\n<Grian/>\n<Sacks>rye<Sack/>\n<Grain/></Sacks>\n</Mill>"),
      (QStringList{
          "1 error: The text 'flour' stands inside <Mill>, where no text has a meaning.",
          "2 error: Unknown element <Grian> inside <Mill>. Did you mean <Grain>? Known there: "
          "Grain, Sacks.",
          "3 error: The text 'rye' stands inside <Sacks>, where no text has a meaning.",
          "4 error: Unknown element <Grain> inside <Sacks>. Known there: Sack.",
          "1 warning: the attribute 'stone' is not known in <Mill> and has no effect. Did you mean "
          "stones?"}));
}

TEST(DeclaredContent, AnElementOfOlderFilesStandsAloneOnly) {
  EXPECT_EQ(faultsOf("<Mill><Sack/></Mill>"), QStringList());
  EXPECT_EQ(faultsOf("<Mill><Sacks/><Sack/></Mill>"),
            QStringList("1 error: Unknown element <Sack> inside <Mill>. Did you mean <Sacks>? "
                        "Known there: Grain, Sacks."));
}

TEST(DeclaredContent, AttributesThatAreNotDeclaredAreWarnings) {
  EXPECT_EQ(faultsOfAttribute("refTime='1'"),
            QStringList("1 warning: the attribute 'refTime' is not known in <Mill> and has no "
                        "effect. Did you mean referenceTime?"));
  EXPECT_EQ(faultsOfAttribute("colour='1'"),
            QStringList("1 warning: the attribute 'colour' is not known in <Mill> and has no "
                        "effect. Known: name, version, x, y, disabled, stones, unit, "
                        "isWet, size, referenceTime."));
  EXPECT_EQ(faultsOf("<Mill><Sacks name='s'/></Mill>"),
            QStringList("1 warning: the attribute 'name' is not known in <Sacks> and has no "
                        "effect. The element has no attributes."));
}

TEST(DeclaredContent, ValuesWithoutUseAreErrors) {
  const std::pair<QByteArray, QString> cases[] = {
      {"stones='3'", "stones='3' of <Mill> is not 0, 1 or 2."},
      {"stones='1.5'", "stones='1.5' of <Mill> is not a whole number."},
      {"stones='${word}'", "stones='${word}' ('maybe') of <Mill> is not a whole number."},
      {"isWet='yes'", "isWet='yes' of <Mill> is not 0 or 1."},
      {"size='big'", "size='big' of <Mill> is not a number."},
      {"size='1e10'", "size='1e10' of <Mill> is not a number below 2147483648."},
      {"size='3'", "size='3' of <Mill> is not 0, 1 or 2."},
      {"x='left'", "x='left' of <Mill> is not a number."}};
  for (const auto& [attribute, message] : cases) {
    EXPECT_EQ(faultsOfAttribute(attribute), QStringList("1 error: " + message));
  }
}

TEST(DeclaredContent, ValuesWithAnEffectAreWarnings) {
  EXPECT_EQ(faultsOfAttribute("unit='7'"),
            QStringList("1 warning: unit='7' of <Mill> is not a unit. It counts as 0."));
  EXPECT_EQ(faultsOf("<Mill><Grain meta='X'/>\n<Grain meta='Float'/></Mill>"),
            (QStringList{"1 warning: meta='X' of <Grain> is not F or U. It counts as U.",
                         "2 warning: meta='Float' of <Grain> is not F or U. Its first letter "
                         "counts."}));
  EXPECT_EQ(faultsOf("<Mill><Grain meta=' '/><Grain meta=''/></Mill>"),
            QStringList("1 warning: meta=' ' of <Grain> is not F or U. It counts as U."));
}

TEST(DeclaredContent, ASampleIsANumberUnlessItsFlagSaysOtherwise) {
  EXPECT_EQ(faultsOf("<Mill><Grain value='x'/></Mill>"),
            QStringList("1 error: value='x' of <Grain> is not a number."));
  EXPECT_EQ(faultsOf("<Mill><Grain value='x' isNumber='0'/></Mill>"), QStringList());
}
