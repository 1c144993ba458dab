#include "host/engine/plugin_library.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>
#include <QSysInfo>

#include "base/sibling_library.h"
#include "host/contract/main_ui.h"
#include "host/contract/plugin_interface.h"
#include "host/engine/messages.h"

namespace kelvarin {

namespace {

QString verificationText() {
  return QStringLiteral(
             "pattern=QT_PLUGIN_VERIFICATION_DATA\nversion=4.8.7\ndebug=false\nbuildkey=") +
         QSysInfo::buildAbi();
}

// Empty when the loaded plug-in's verification text is right.
QString verificationError(const QString& file) {
  const auto query = reinterpret_cast<const char* (*)()>(
      QLibrary::resolve(file, "qt_plugin_query_verification_data"));
  if (query == nullptr) {
    return engine_messages::pluginWithoutVerification(file);
  }
  const char* bytes = query();
  const QString given = bytes == nullptr ? QString() : QString::fromLatin1(bytes);
  return given == verificationText()
             ? QString()
             : engine_messages::pluginOfAnotherBuild(file, given, verificationText());
}

}  // namespace

Result<std::unique_ptr<PluginLibrary>, QString> PluginLibrary::load(const QString& file) {
  const QString path = QFileInfo(file.isEmpty() ? defaultFile() : file).absoluteFilePath();
  if (!QFileInfo(path).isFile()) {
    return Failure{engine_messages::pluginNotFound(path)};
  }
  QPluginLoader loader(path);
  const QString interface = loader.metaData().value(QStringLiteral("IID")).toString();
  if (interface.isEmpty()) {
    return Failure{engine_messages::notAPlugin(path)};
  }
  const QString wanted = QStringLiteral(KelvarinPluginInterface_iid);
  if (interface != wanted) {
    return Failure{engine_messages::pluginOfAnotherInterface(path, interface, wanted)};
  }
  if (!loader.load()) {
    return Failure{engine_messages::pluginNotLoaded(path, loader.errorString())};
  }
  if (const QString error = verificationError(path); !error.isEmpty()) {
    return Failure{error};
  }
  auto* root = qobject_cast<KelvarinPluginInterface*>(loader.instance());
  if (root == nullptr) {
    return Failure{engine_messages::pluginNotLoaded(path, loader.errorString())};
  }
  return std::unique_ptr<PluginLibrary>(new PluginLibrary(path, root));
}

QString PluginLibrary::defaultFile() {
  QString named = qEnvironmentVariable("KELVARIN_PLUGIN");
  if (!named.isEmpty()) {
    return named;
  }
  return QDir::cleanPath(QString::fromStdString(siblingLibrary(
      reinterpret_cast<const void*>(&MainUI::kelvarinID), "plugins/libKelvarinMathParser.so")));
}

double PluginLibrary::version() const {
  return m_root->pluginVersion();
}

std::vector<std::unique_ptr<ActionItem>> PluginLibrary::createPrototypes() const {
  std::vector<std::unique_ptr<ActionItem>> prototypes;
  m_root->prepare();
  for (int index = 0;; ++index) {
    std::unique_ptr<ActionItem> prototype(m_root->createAction(index, 0));
    if (prototype == nullptr) {
      return prototypes;
    }
    prototypes.push_back(std::move(prototype));
  }
}

}  // namespace kelvarin
