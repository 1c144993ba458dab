#include "plugin/kelvarin_math_parser_plugin.h"

#include <iterator>
#include <new>

#include <QByteArray>
#include <QSysInfo>

#include "actions/calculator/calculator.h"
#include "actions/calculator_vectorized/calculator_vectorized.h"
#include "actions/filter_rows/filter_rows.h"
#include "columnar/actions/read_columnar_gel.h"
#include "columnar/actions/write_columnar_gel.h"
#include "host/contract/editor_registry.h"
#include "plugin/editors_loader.h"

namespace {

constexpr double kPluginVersion = 4.11;

template <typename Action>
ActionItem* create() {
  return new Action(XMLNode::emptyNode(), nullptr);
}

template <typename... Actions>
void enterEditors() {
  kelvarin::EditorRegistry& registry = kelvarin::EditorRegistry::instance();
  (registry.add(Actions::catalogue().typeName, kelvarin::createEditor), ...);
}

// In the host's order; graph files name actions by their type, not by their index here.
constexpr ActionItem* (*kActions[])() = {
    create<kelvarin::Calculator>,           create<kelvarin::FilterRows>,
    create<kelvarin::ReadColumnarGel>,      create<kelvarin::WriteColumnarGel>,
    create<kelvarin::CalculatorVectorized>,
};

}  // namespace

KelvarinMathParserPlugin::KelvarinMathParserPlugin() {
  enterEditors<kelvarin::Calculator, kelvarin::FilterRows, kelvarin::ReadColumnarGel,
               kelvarin::WriteColumnarGel, kelvarin::CalculatorVectorized>();
}

ActionItem* KelvarinMathParserPlugin::createAction(int index, int) {
  if (index < 0 || index >= static_cast<int>(std::size(kActions))) {
    return nullptr;
  }
  try {
    return kActions[index]();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

double KelvarinMathParserPlugin::pluginVersion() {
  return kPluginVersion;
}

// Which build of the framework the plug-in was made for; hosts compare it with their own before
// they use the plug-in.
extern "C" Q_DECL_EXPORT const char* qt_plugin_query_verification_data() {
  static const QByteArray text = QByteArrayLiteral(
                                     "pattern=QT_PLUGIN_VERIFICATION_DATA\n"
                                     "version=4.8.7\n"
                                     "debug=false\n"
                                     "buildkey=") +
                                 QSysInfo::buildAbi().toLatin1();
  return text.constData();
}
