#include <cstring>

#include <gtest/gtest.h>

#include "host/contract/action_item.h"
#include "host/contract/plugin_interface.h"

using kelvarin::parseXml;
using kelvarin::utf16;

namespace {

class SampleAction : public ActionItem {
 public:
  SampleAction(XMLNode node, GlobalParameters* parameters) : ActionItem(node, parameters) {}
  const char* typeName() const override { return "Sample"; }
  void setComputeRoutine() override { computeRoutine = nullptr; }
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override {
    return new SampleAction(node, parameters);
  }
};

SampleAction sampleFrom(const QByteArray& xml, GlobalParameters* parameters = nullptr) {
  return SampleAction(*parseXml(xml), parameters);
}

std::wstring saved(ActionItem& action) {
  std::wostringstream out;
  action.saveXML(out, action.name());
  return out.str();
}

// The index of a virtual operation in its class's table, as the platform's C++ ABI codes it in a
// pointer to it: 1 more than its byte offset.
template <typename Operation>
long slotOf(Operation operation) {
  static_assert(sizeof operation == 2 * sizeof(std::ptrdiff_t));
  std::ptrdiff_t parts[2];
  std::memcpy(parts, &operation, sizeof parts);
  return (parts[0] - 1) / static_cast<long>(sizeof(void*));
}

TEST(ActionItem, OperationsStandInTheContractsOrder) {
  const long operations[] = {slotOf(&ActionItem::typeName),
                             slotOf(&ActionItem::editPropertyFrame),
                             slotOf(&ActionItem::getImage),
                             slotOf(&ActionItem::addPinIn),
                             slotOf(&ActionItem::addPinOut),
                             slotOf(&ActionItem::removePinIn),
                             slotOf(&ActionItem::removePinOut),
                             slotOf(&ActionItem::toolTip),
                             slotOf(&ActionItem::getHelp),
                             slotOf(&ActionItem::getFileTypes),
                             slotOf(&ActionItem::getTags),
                             slotOf(&ActionItem::getKeywords),
                             slotOf(&ActionItem::getAlternativeNames),
                             slotOf(&ActionItem::clone),
                             slotOf(&ActionItem::saveXML),
                             slotOf(&ActionItem::init),
                             slotOf(&ActionItem::close),
                             slotOf(&ActionItem::setComputeRoutine),
                             slotOf(&ActionItem::wakeAll),
                             slotOf(&ActionItem::computeCompletion),
                             slotOf(&ActionItem::completionIn2Pass),
                             slotOf(&ActionItem::canRunInParallel),
                             slotOf(&ActionItem::fullTableRequiredToComputeMetas),
                             slotOf(&ActionItem::getHDFile),
                             slotOf(&ActionItem::getHDTime),
                             slotOf(&ActionItem::clearHDFile)};
  for (std::size_t i = 0; i < std::size(operations); ++i) {
    EXPECT_EQ(operations[i], static_cast<long>(i));
  }
  // The destructor takes two of them.
  EXPECT_EQ(slotOf(&ActionItem::createFromXML), static_cast<long>(std::size(operations)) + 2);
}

TEST(PluginInterface, OperationsStandInTheContractsOrder) {
  EXPECT_EQ(slotOf(&KelvarinPluginInterface::createAction), 2);
  EXPECT_EQ(slotOf(&KelvarinPluginInterface::prepare), 3);
  EXPECT_EQ(slotOf(&KelvarinPluginInterface::pluginVersion), 4);
  EXPECT_EQ(slotOf(&KelvarinPluginInterface::settingsPage), 5);
  EXPECT_EQ(slotOf(&KelvarinPluginInterface::menuCommands), 6);
  EXPECT_EQ(slotOf(&KelvarinPluginInterface::createFromForeignElement), 7);
}

TEST(ActionItem, SavesItsHeadAndIsReadBack) {
  SampleAction action = sampleFrom("<Sample name='a &amp; &apos;b&apos;' x='-3' y='40'/>");
  const std::wstring text = saved(action);
  EXPECT_EQ(text, L"<Sample name='a &amp; &apos;b&apos;' version='1' x='-3' y='40'/>\n");
  SampleAction again = sampleFrom(QString::fromStdWString(text).toUtf8());
  EXPECT_EQ(saved(again), text);
  const std::unique_ptr<ActionItem> copy(action.clone(nullptr));
  EXPECT_EQ(saved(*copy), text);
}

TEST(ActionItem, FilesLieBelowTheGraphsFolders) {
  GlobalParameters parameters;
  parameters.setWorkingDir("/graphs");
  parameters.setDataDirWrite("/out");
  parameters.setValue("day", "monday");
  const SampleAction action = sampleFrom("<Sample/>", &parameters);
  EXPECT_EQ(action.expandFile("../data/${day}.csv"), "/data/monday.csv");
  EXPECT_EQ(action.expandFile("/x/a.csv"), "/x/a.csv");
  EXPECT_EQ(action.expandFile(""), "");
  EXPECT_EQ(action.expandOutputFile("${day}", "csv"), "/out/monday.csv");
  EXPECT_EQ(action.expandOutputFile("a.txt", "csv"), "/out/a.txt");
}

TEST(ActionItem, AFailureStopsARunThatGoesOnAndNoOther) {
  RunRecord run;
  SampleAction action = sampleFrom("<Sample/>");
  action.attach(&run, nullptr);
  EXPECT_EQ(action.getNextRowFromInPin(0), nullptr);
  run.status = GlobalParameters::RunningState::stoppedByUser;
  action.failRun();
  EXPECT_TRUE(action.hasFailed());
  EXPECT_EQ(run.status.load(), GlobalParameters::RunningState::stoppedByUser);
  run.status = GlobalParameters::RunningState::running;
  action.failRun();
  EXPECT_EQ(run.status.load(), GlobalParameters::RunningState::failed);
}

}  // namespace
