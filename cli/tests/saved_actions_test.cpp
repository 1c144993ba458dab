// The XML of every action, byte for byte: graph files are read by other programs and compared by
// people. saved_actions/ACTION_all.xml has everything set, ACTION_bare.xml nothing.
#include <set>

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "host/contract/declared_content.h"
#include "host/engine/action_catalogue.h"
#include "host/tables/table_actions.h"

namespace kelvarin {
namespace {

const ActionCatalogue& catalogue() {
  static const auto* loaded =
      new ActionCatalogue(std::move(*PluginLibrary::load(KELVARIN_PLUGIN)), makeTableActions());
  return *loaded;
}

QByteArray golden(const QString& action, const char* kind) {
  QFile file(QDir(QStringLiteral(SAVED_ACTIONS))
                 .filePath(action + u'_' + QLatin1String(kind) + QStringLiteral(".xml")));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
  return file.readAll();
}

// What the action of this element writes.
QByteArray saved(const CatalogueEntry& entry, const QByteArray& element) {
  const auto node = parseXml(element);
  if (!node) {
    ADD_FAILURE() << node.error().message.toStdString();
    return {};
  }
  GlobalParameters parameters;
  const std::unique_ptr<ActionItem> action(entry.prototype->createFromXML(*node, &parameters));
  std::wostringstream out;
  action->saveXML(out, action->name());
  return QString::fromStdWString(out.str()).toUtf8();
}

using Names = std::set<std::string>;  // "ELEMENT ATTRIBUTE"

void addWritten(const XMLNode& node, Names& names) {
  for (int i = 0; i < node.nAttribute(); ++i) {
    names.insert((node.name() + u' ' + node.attributeName(i)).toStdString());
  }
  for (int i = 0; i < node.nChildNode(); ++i) {
    addWritten(node.getChildNode(i), names);
  }
}

void addDeclared(const QString& element, const std::vector<AttributeDescription>& attributes,
                 const std::vector<ElementDescription>& children, Names& names) {
  for (const AttributeDescription& attribute : attributes) {
    names.insert((element + u' ' + attribute.name).toStdString());
  }
  for (const ElementDescription& child : children) {
    addDeclared(child.name, child.attributes, child.children, names);
  }
}

class SavedAction : public ::testing::TestWithParam<int> {
 protected:
  const CatalogueEntry& entry() const {
    return catalogue().entries()[static_cast<std::size_t>(GetParam())];
  }
};

}  // namespace

TEST_P(SavedAction, WithEverythingSetReadsAndWritesTheSameBytes) {
  const QByteArray element = golden(entry().typeName, "all");
  EXPECT_EQ(saved(entry(), element), element);
}

TEST_P(SavedAction, WithNothingSetWritesNoMoreThanItsFrame) {
  const QByteArray element = golden(entry().typeName, "bare");
  EXPECT_EQ(saved(entry(), "<" + entry().typeName.toUtf8() + " name='action'/>"), element);
  EXPECT_EQ(saved(entry(), element), element);
}

TEST_P(SavedAction, DeclaresWhatItWritesAndNoMore) {
  const auto node = parseXml(golden(entry().typeName, "all"));
  ASSERT_TRUE(node);
  const ActionDescription* description = descriptionOf(*entry().prototype);
  ASSERT_NE(description, nullptr);
  for (const ElementFault& fault : contentFaults(*node, *description, GlobalParameters())) {
    ADD_FAILURE() << fault.message.toStdString();
  }
  Names declared;
  addDeclared(entry().typeName, attributesOfEveryAction(), {}, declared);
  addDeclared(entry().typeName, description->attributes, description->children, declared);
  for (const char* older :
       {"FilterRows Expression", "OutputVar expression", "OutputVar isNumber"}) {
    declared.erase(older);
  }
  Names written;
  addWritten(*node, written);
  EXPECT_EQ(declared, written);
}

INSTANTIATE_TEST_SUITE_P(
    Catalogue, SavedAction, ::testing::Range(0, static_cast<int>(catalogue().entries().size())),
    [](const auto& index) {
      const auto& entries = catalogue().entries();
      return entries[static_cast<std::size_t>(index.param)].typeName.toStdString();
    });

}  // namespace kelvarin
