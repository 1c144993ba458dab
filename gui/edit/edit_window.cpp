#include "gui/edit/edit_window.h"

#include <utility>

#include <QEvent>
#include <QFileInfo>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QVBoxLayout>

#include "gui/dialogs/text_dialogs.h"
#include "gui/edit/action_list.h"
#include "gui/edit/fault_page.h"
#include "gui/log/log_panel.h"
#include "gui/properties/property_panel.h"
#include "gui/properties/undo_keys.h"
#include "gui/recovery/recovery_offer.h"
#include "host/contract/nearest_names.h"
#include "host/widgets/empty_state.h"
#include "host/widgets/info_line.h"
#include "host/widgets/user_interface.h"

namespace kelvarin {

namespace {

const QString kGeometryKey = QStringLiteral("edit/geometry");

// Each engine once, with the numbers of its outputs where there are several engines.
QString enginesText(const QStringList& engineOfOutput) {
  QStringList engines = engineOfOutput;
  engines.removeDuplicates();
  if (engines.size() == 1) {
    return engines.first();
  }
  for (QString& engine : engines) {
    QStringList outputs;
    for (qsizetype i = 0; i < engineOfOutput.size(); ++i) {
      if (engineOfOutput[i] == engine) {
        outputs += QString::number(i + 1);
      }
    }
    engine = EditWindow::tr("%1 (output %2)").arg(engine, outputs.join(QStringLiteral(", ")));
  }
  return engines.join(QStringLiteral(", "));
}

}  // namespace

EditWindow::EditWindow(GraphCommands& commands, EditServices& services, HostSession& session,
                       Theme& theme, const QString& file, const QString& action,
                       std::vector<ParameterOverride> settings)
    : m_commands(commands),
      m_graph(commands.graph()),
      m_services(services),
      m_catalogue(m_graph.catalogue()),
      m_theme(theme),
      m_fileName(file),
      m_settings(std::move(settings)),
      m_check(m_settings, m_catalogue, session),
      m_wantedAction(action),
      m_notice(new InfoLine),
      m_saving(*this, m_graph, m_file, *m_notice, [this] { return m_fileName; }),
      m_properties(new PropertyPanel(commands)),
      m_recovery(new RecoveryOffer),
      m_unsaved(commands, *m_properties) {
  makePages();
  makeMenus();
  new UndoKeys(*this);
  connectFiles();
  connectServices();
  connect(&m_graph, &EditedGraph::modifiedChanged, this, &EditWindow::showState);
  connect(&m_commands, &GraphCommands::editorPositionWanted, this, &EditWindow::showAgain);
  resize(1280, 800);
  restoreGeometry(QSettings().value(kGeometryKey).toByteArray());
  showState();
  m_startPage->setSentence(tr("Reading %1 ...").arg(m_fileName));
  m_file.open(m_fileName);
}

EditWindow::~EditWindow() {
  QSettings().setValue(kGeometryKey, saveGeometry());
  m_properties->showAction(kNoId);
}

void EditWindow::makePages() {
  m_list = new ActionList(m_graph);
  m_log = new LogPanel;
  m_pages = new QStackedWidget;
  m_faultPage = new FaultPage;
  m_startPage = new EmptyState(IconName::information, QString());
  for (QWidget* each : {static_cast<QWidget*>(m_startPage), static_cast<QWidget*>(m_faultPage),
                        static_cast<QWidget*>(m_properties)}) {
    m_pages->addWidget(each);
  }

  auto* sides = new QSplitter(Qt::Horizontal);
  sides->setObjectName(QStringLiteral("sides"));
  sides->setChildrenCollapsible(false);
  sides->addWidget(m_list);
  sides->addWidget(m_pages);
  sides->setStretchFactor(1, 1);
  sides->setSizes({240, 1040});
  auto* parts = new QSplitter(Qt::Vertical);
  parts->setChildrenCollapsible(false);
  parts->addWidget(sides);
  parts->addWidget(m_log);
  parts->setStretchFactor(0, 1);
  parts->setSizes({680, 96});

  auto* central = new QWidget;
  auto* layout = new QVBoxLayout(central);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(m_recovery);
  layout->addWidget(m_notice);
  layout->addWidget(parts, 1);
  setCentralWidget(central);
  connect(m_list, &ActionList::chosen, this, &EditWindow::openAction);
  connect(m_log, &LogPanel::actionWanted, this, [this](const LogEntry& entry) {
    openActionNamed(entry.action);
    const LogDetails& details = entry.details;
    const ActionId shown = m_properties->action();
    const bool isOpen = shown != kNoId && shown == m_graph.idOf(entry.action);
    if (isOpen && (details.position >= 0 || !details.output.isEmpty())) {
      editor()->showPosition(details.output, details.position);
    }
  });
  connect(m_faultPage, &FaultPage::reloadWanted, this, &EditWindow::reload);
}

void EditWindow::connectFiles() {
  connect(&m_file, &DocumentFile::opened, this,
          [this](const QString&, const QByteArray& document) { showGraph(document); });
  connect(&m_file, &DocumentFile::openFailed, this,
          [this](const QString&, const std::vector<GraphError>& faults) { showFaults(faults); });
  connect(&m_saving, &GraphSaving::saved, this, &EditWindow::noteSaved);
  connect(&m_saving, &GraphSaving::commitWanted, m_properties, &PropertyPanel::commit);
  connect(&m_saving, &GraphSaving::openingGivenUp, this, &QWidget::close);
  connect(m_recovery, &RecoveryOffer::restoreWanted, this, &EditWindow::restoreGraph);
  connect(&m_unsaved, &UnsavedWork::failed, this,
          [this](const QString& why) { showNotice(noRecoveryText(why)); });
  connect(&m_check, &BackgroundCheck::ended, this, [this](bool isOk) {
    showState();
    statusBar()->showMessage(isOk ? tr("The check found no error.")
                                  : tr("The check found errors: see the log."));
  });
}

void EditWindow::connectServices() {
  connect(&m_services, &EditServices::logged, m_log, &LogPanel::append);
  connect(&m_services, &EditServices::modified, m_properties, &PropertyPanel::noteEdit);
  connect(&m_services, &EditServices::helpWanted, this, &EditWindow::showHelp);
  connect(&m_services, &EditServices::backendsKnown, this,
          [this](const QString& action, const QStringList& labels) {
            statusBar()->showMessage(tr("%1 is computed by: %2").arg(action, enginesText(labels)));
          });
}

void EditWindow::showGraph(const QByteArray& document) {
  rememberAction();
  m_services.forgetColumns();
  if (!m_graph.load(document, m_fileName, m_settings) || !m_graph.faults().empty()) {
    showFaults(std::vector<GraphError>(m_graph.faults()));
    return;
  }
  m_unsaved.begin(m_file.path(), document);
  m_list->setEnabled(true);
  showStartPage();
  const QList<ActionId> actions = m_graph.actions();
  for (const GraphWarning& warning : m_graph.graph().warnings) {
    m_services.log(LogLevel::warning, warning.text,
                   warning.action < 0 ? nullptr : &m_graph.action(actions[warning.action]));
  }
  if (const QString wanted = std::exchange(m_wantedAction, {}); !wanted.isEmpty()) {
    openActionNamed(wanted);
  }
  emit graphShown();
}

void EditWindow::showStartPage() {
  m_startPage->setSentence(m_graph.actionCount() == 0
                               ? tr("This graph has no actions yet.")
                               : tr("Choose an action at the left to edit its properties."));
  m_pages->setCurrentWidget(m_startPage);
}

// To be shown again when the file has been read.
void EditWindow::rememberAction() {
  if (const ActionId shown = m_properties->action(); shown != kNoId) {
    m_wantedAction = m_graph.name(shown);
  }
}

void EditWindow::showFaults(const std::vector<GraphError>& faults) {
  rememberAction();
  m_unsaved.end();
  m_graph.clear();
  m_list->setEnabled(false);
  m_faultPage->setFaults(m_fileName, faults);
  m_pages->setCurrentWidget(m_faultPage);
  emit graphShown();
}

void EditWindow::openActionNamed(const QString& name) {
  if (const ActionId action = m_graph.idOf(name); action != kNoId) {
    openAction(action);
    return;
  }
  QStringList names;
  for (const GraphAction& action : m_graph.graph().actions) {
    names += action.name;
  }
  const QStringList near = nearestNames(name, names);
  showNotice(near.isEmpty()
                 ? tr("The graph has no action '%1'. Choose one at the left.").arg(name)
                 : tr("The graph has no action '%1'. Did you mean '%2'?").arg(name, near.front()));
}

void EditWindow::openAction(ActionId action) {
  m_properties->showAction(action);
  m_list->setCurrent(action);
  m_pages->setCurrentWidget(m_properties);
  showState();
}

UpdateClassWidget* EditWindow::editor() const {
  return m_properties->editor();
}

void EditWindow::showAgain(ActionId action, const EditorPosition& position) {
  openAction(action);
  m_properties->showPosition(position);
}

void EditWindow::showState() {
  const QString graph = QFileInfo(m_fileName).fileName();
  const ActionId shown = m_properties->action();
  const QString title = shown == kNoId ? graph + QStringLiteral("[*]")
                                       : tr("%1[*] - %2").arg(graph, m_graph.name(shown));
  setWindowTitle(title);
  setWindowModified(m_graph.isModified());
  m_saveAction->setEnabled(m_graph.actionCount() > 0);
  m_checkAction->setEnabled(m_graph.actionCount() > 0 && !m_check.isRunning());
}

void EditWindow::showNotice(const QString& text) {
  m_notice->setMessage(Severity::warning, text, {{QStringLiteral("close"), tr("Close")}});
}

void EditWindow::showHelp(const QString& helpId) {
  for (const CatalogueEntry& entry : m_catalogue.entries()) {
    if ((entry.helpId == helpId || entry.typeName == helpId) &&
        showActionPage(entry.typeName, this)) {
      return;
    }
  }
  statusBar()->showMessage(tr("There is no help page \"%1\".").arg(helpId));
}

void EditWindow::check() {
  m_properties->commit();
  statusBar()->showMessage(tr("Checking the graph ..."));
  m_check.start(m_graph.document(), m_fileName);
  showState();
}

void EditWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && !m_saving.isSaving()) {
    m_file.compareWithDisk();
  }
  QMainWindow::changeEvent(event);
}

}  // namespace kelvarin
