// The entry of the library with the editors, asked by the plug-in.
#include <string_view>

#include "actions/frame/build_identity.h"
#include "actions/frame/editors_library.h"
#include "base/export.h"
#include "ui/columnar/interface_read_columnar_gel.h"
#include "ui/columnar/interface_write_columnar_gel.h"
#include "ui/editors/editor_of_other_build.h"
#include "ui/editors/interface_action_filter_rows.h"
#include "ui/editors/interface_action_math_parser.h"

namespace kelvarin {

namespace {

template <typename Editor, typename Action>
UpdateClassWidget* create(QWidget* parent, ActionItem& action) {
  return new Editor(parent, static_cast<Action&>(action));
}

template <Interface_actionMathParser::Mode kMode>
UpdateClassWidget* createCalculator(QWidget* parent, ActionItem& action) {
  return new Interface_actionMathParser(parent, static_cast<Calculator&>(action), kMode);
}

struct EditorEntry {
  const char* typeName;
  UpdateClassWidget* (*create)(QWidget* parent, ActionItem& action);
};

constexpr EditorEntry kEditors[] = {
    {"Calculator", createCalculator<Interface_actionMathParser::kCalculator>},
    {"CalculatorVectorized", createCalculator<Interface_actionMathParser::kVectorized>},
    {"FilterRows", create<Interface_actionFilterRows, FilterRows>},
    {"ReadColumnarGel", create<Interface_readColumnarGel, ReadColumnarGel>},
    {"writeColumnarGel", create<Interface_writeColumnarGel, WriteColumnarGel>},
};

}  // namespace

}  // namespace kelvarin

extern "C" KELVARIN_CORE UpdateClassWidget* kelvarinCreateEditorOfBuild(QWidget* parent,
                                                                        ActionItem* action,
                                                                        const char* buildIdentity) {
  if (std::string_view(buildIdentity) != kelvarin::buildIdentity()) {
    return new kelvarin::EditorOfOtherBuild(parent);
  }
  for (const kelvarin::EditorEntry& entry : kelvarin::kEditors) {
    if (std::string_view(action->typeName()) == entry.typeName) {
      return entry.create(parent, *action);
    }
  }
  return nullptr;
}
