// The library with the editors as the plug-in opens it.
#include <gtest/gtest.h>

#include "actions/filter_rows/filter_rows.h"
#include "actions/frame/build_identity.h"
#include "actions/frame/editors_library.h"
#include "base/sibling_library.h"
#include "host/testing/row_harness.h"
#include "host/widgets/info_line.h"
#include "host/widgets/user_interface.h"

namespace kelvarin::testing {

namespace {

TEST(EditorsLibrary, EditsOnlyActionsOfItsOwnBuild) {
  const auto function = functionOfLibrary(EDITORS_FILE, kCreateEditorFunction);
  ASSERT_TRUE(function) << function.error();
  const auto create = reinterpret_cast<CreateEditorFunction>(*function);
  RowHarness harness(
      [](XMLNode node, GlobalParameters* parameters) -> ActionItem* {
        return new FilterRows(node, parameters);
      },
      "<FilterRows name='f'/>");
  auto& action = harness.actionAs<FilterRows>();
  const auto classOf = [&](const char* identity) {
    const std::unique_ptr<UpdateClassWidget> editor(create(nullptr, &action, identity));
    return editor == nullptr ? std::string() : std::string(editor->metaObject()->className());
  };
  EXPECT_EQ(classOf(buildIdentity()), "kelvarin::Interface_actionFilterRows");

  const std::unique_ptr<UpdateClassWidget> other(create(nullptr, &action, "another"));
  const auto* note = other->findChild<InfoLine*>();
  ASSERT_NE(note, nullptr);
  EXPECT_TRUE(note->text().contains("not of the same build"));
}

}  // namespace

}  // namespace kelvarin::testing
