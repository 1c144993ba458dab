// A plug-in of the right interface that does not say for which build it was made.
#include <QObject>

#include "host/contract/action_item.h"
#include "host/contract/plugin_interface.h"

class UnverifiedPlugin : public QObject, public KelvarinPluginInterface {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID KelvarinPluginInterface_iid)
  Q_INTERFACES(KelvarinPluginInterface)

 public:
  ActionItem* createAction(int, int) override { return nullptr; }
  void prepare() override {}
  double pluginVersion() override { return 1.0; }
  void* settingsPage() override { return nullptr; }
  void* menuCommands() override { return nullptr; }
  void* createFromForeignElement(XMLNode) override { return nullptr; }
};

#include "unverified_plugin.moc"
