#include "gui/preview/preview_panel.h"

#include <utility>

#include <QFileDialog>
#include <QLocale>
#include <QSplitter>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "gui/preview/preview_bar.h"
#include "gui/preview/preview_cache.h"
#include "gui/preview/preview_header.h"
#include "gui/preview/preview_table.h"
#include "gui/preview/preview_view.h"
#include "gui/preview/profile_panel.h"
#include "host/widgets/empty_state.h"
#include "host/widgets/info_line.h"

namespace kelvarin {

namespace {

using State = PinPreview::State;

// After the last change: whoever types has a new graph with every key.
constexpr std::chrono::milliseconds kRestAfterChange{400};

// Without a row for so long, a preview says that it waits.
constexpr std::chrono::milliseconds kPatience{2000};

const QString kGoToAction = QStringLiteral("action");

QString grouped(long long count) {
  return QLocale().toString(count);
}

}  // namespace

class PreviewPanel::Parts : public QObject {
  Q_OBJECT

 public:
  Parts(PreviewPanel& panel, EditedGraph& graph, EditServices& services);
  ~Parts() override;

  void showPin(const PinRef& pin);
  const std::optional<PinRef>& pin() const { return m_pin; }
  void panelShown();

 private:
  void layOut();
  void connectBar();
  void connectTable();
  void connectGraph();
  void compute();
  void reload();
  void take();
  void showRows();
  void showState();
  void showMessages();
  void showDetails();
  void showEmpty(const QString& sentence, const QString& action);
  void clear();
  QString titleOf(const PinRef& pin) const;
  QString statusText() const;
  void exportRows();

  PreviewPanel& m_panel;
  EditedGraph& m_graph;
  BackgroundQueue m_loader;
  BackgroundQueue m_computing;
  PreviewCache m_cache;
  std::optional<PinRef> m_pin;
  std::shared_ptr<PinPreview> m_preview;  // of the pin, as it is being computed or was
  std::shared_ptr<PinPreview> m_shown;  // in the table; the one before until rows of the next come
  QString m_whyNoRows;
  QTimer m_rest;
  QTimer m_patience;           // runs while it is too early to wonder where the first row is
  bool m_mustCompare = false;  // the graph changed while the panel was not seen

  PreviewBar* m_bar;
  InfoLine* m_message;
  InfoLine* m_report;
  QStackedWidget* m_pages;
  EmptyState* m_empty;
  QSplitter* m_splitter;
  PreviewTable* m_table;
  ProfilePanel* m_details;
};

PreviewPanel::Parts::Parts(PreviewPanel& panel, EditedGraph& graph, EditServices& services)
    : m_panel(panel),
      m_graph(graph),
      m_cache(graph, services,
              {std::make_shared<PreviewMemory>(kPreviewMemory), m_loader, m_computing}),
      m_bar(new PreviewBar),
      m_message(new InfoLine),
      m_report(new InfoLine),
      m_pages(new QStackedWidget),
      m_empty(new EmptyState(IconName::information, {})),
      m_splitter(new QSplitter(Qt::Horizontal)),
      m_table(new PreviewTable(m_computing)),
      m_details(new ProfilePanel) {
  m_rest.setSingleShot(true);
  m_rest.setInterval(kRestAfterChange);
  connect(&m_rest, &QTimer::timeout, this, &Parts::compute);
  m_patience.setSingleShot(true);
  m_patience.setInterval(kPatience);
  connect(&m_patience, &QTimer::timeout, this, &Parts::showState);
  connect(&m_computing, &BackgroundQueue::ranOutOfMemory, this, [this] {
    m_report->setMessage(Severity::error, tr("There is not enough memory for this. Look at fewer "
                                             "rows, or close other programs."));
  });
  layOut();
  connectBar();
  connectTable();
  connectGraph();
  clear();
}

// Widgets look at the rows of previews, so they go first.
PreviewPanel::Parts::~Parts() {
  m_table->setPreview(nullptr, 0);
  delete m_splitter;
}

void PreviewPanel::Parts::layOut() {
  m_details->hide();
  m_splitter->addWidget(m_table);
  m_splitter->addWidget(m_details);
  m_splitter->setStretchFactor(0, 3);
  m_splitter->setStretchFactor(1, 1);
  m_splitter->setChildrenCollapsible(false);
  m_message->setContentsMargins(8, 0, 8, 4);
  m_report->setContentsMargins(8, 0, 8, 4);
  m_pages->addWidget(m_empty);
  m_pages->addWidget(m_splitter);
  auto* layout = new QVBoxLayout(&m_panel);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(m_bar);
  layout->addWidget(m_message);
  layout->addWidget(m_report);
  layout->addWidget(m_pages, 1);
}

void PreviewPanel::Parts::connectBar() {
  connect(m_bar, &PreviewBar::limitChanged, this, &Parts::compute);
  connect(m_bar, &PreviewBar::reloadWanted, this, &Parts::reload);
  connect(m_bar, &PreviewBar::stopWanted, this, [this] {
    if (m_preview != nullptr) {
      m_preview->stop();
    }
  });
  connect(m_bar, &PreviewBar::exportWanted, this, &Parts::exportRows);
  connect(m_bar, &PreviewBar::profilesToggled, this,
          [this](bool areShown) { m_table->header().setShowsProfiles(areShown); });
  connect(m_bar, &PreviewBar::filtersToggled, this, [this](bool areShown) {
    if (areShown == m_table->header().showsFilters()) {
      return;
    }
    if (areShown) {
      m_table->editFilter();
    } else {
      m_table->header().setShowsFilters(false);
      m_table->clearFilters();
    }
  });
  connect(m_bar, &PreviewBar::detailsToggled, this, [this](bool areShown) {
    m_details->setVisible(areShown);
    showDetails();
  });
  connect(m_empty, &EmptyState::actionTriggered, this, &Parts::reload);
  connect(m_message, &InfoLine::linkActivated, this, [this] {
    const ActionId failed = m_preview == nullptr ? kNoId : m_graph.idOf(m_preview->failedAction());
    emit m_panel.actionWanted(failed == kNoId ? m_pin->action : failed);
  });
  connect(m_report, &InfoLine::linkActivated, m_report, &InfoLine::clear);
}

void PreviewPanel::Parts::connectTable() {
  connect(m_table, &PreviewTable::stepToRowWanted, this,
          [this](long long row) { emit m_panel.stepToRowWanted(*m_pin, row); });
  connect(m_table, &PreviewTable::keepRowsWanted, this, [this](const RowCondition& condition) {
    emit m_panel.keepRowsWanted(*m_pin, condition);
  });
  connect(m_table, &PreviewTable::newColumnWanted, this,
          [this](const PinColumns::Column& column, const QString& name) {
            emit m_panel.newColumnWanted(*m_pin, column, name);
          });
  connect(m_table, &PreviewTable::renameColumnWanted, this,
          [this](const QString& column) { emit m_panel.renameColumnWanted(*m_pin, column); });
  connect(m_table, &PreviewTable::orderChanged, this, &Parts::showState);
  connect(m_table, &PreviewTable::currentColumnChanged, this, &Parts::showDetails);
  connect(m_table, &PreviewTable::reported, this, [this](bool isGood, const QString& text) {
    m_report->setMessage(isGood ? Severity::success : Severity::error, text,
                         {{QStringLiteral("close"), tr("Close")}});
  });
  connect(&m_table->header(), &PreviewHeader::filtersShown, m_bar, &PreviewBar::setFiltersShown);
}

void PreviewPanel::Parts::connectGraph() {
  connect(&m_graph, &EditedGraph::rowsMayDiffer, this, [this] {
    if (m_panel.isVisible()) {
      m_rest.start();
    } else {
      m_mustCompare = true;
    }
  });
  connect(&m_graph, &EditedGraph::loaded, this, &Parts::clear);
  connect(&m_graph, &EditedGraph::actionRemoved, this, [this](ActionId action) {
    if (m_pin && m_pin->action == action) {
      clear();
    }
  });
  connect(&m_graph, &EditedGraph::actionChanged, this, [this](ActionId action) {
    if (m_pin && m_pin->action == action) {
      m_bar->setTitle(titleOf(*m_pin));
    }
  });
}

void PreviewPanel::Parts::showPin(const PinRef& pin) {
  const bool isOther = m_pin != pin;
  // Nobody waits for the rest of it any more.
  if (isOther && m_pin && m_preview != nullptr && m_preview->state() == State::computing) {
    m_cache.forget(*m_pin);
  }
  m_pin = pin;
  if (isOther) {
    m_shown.reset();
    m_table->setPreview(nullptr, 0);
    m_report->clear();
  }
  compute();
}

void PreviewPanel::Parts::panelShown() {
  if (std::exchange(m_mustCompare, false)) {
    compute();
  }
}

void PreviewPanel::Parts::reload() {
  if (m_pin) {
    m_cache.forget(*m_pin);
    compute();
  }
}

// What was computed for the same branch is taken as it is.
void PreviewPanel::Parts::compute() {
  m_rest.stop();
  if (!m_pin) {
    return;
  }
  m_bar->setTitle(titleOf(*m_pin));
  m_whyNoRows.clear();
  const auto preview = m_cache.preview(*m_pin, m_bar->limit(), &m_whyNoRows);
  if (preview != m_preview) {
    if (m_preview != nullptr) {
      m_preview->disconnect(this);
    }
    m_preview = preview;
    m_patience.start();
    if (preview != nullptr) {
      connect(preview.get(), &PinPreview::changed, this, &Parts::take);
      connect(&preview->profiles(), &ColumnProfiles::changed, this, [this](int column) {
        if (column == m_table->currentColumn()) {
          showDetails();
        }
      });
    }
  }
  take();
}

// Until rows of another version come, those before stay in sight.
void PreviewPanel::Parts::take() {
  if (m_preview == nullptr) {
    m_shown.reset();
    m_table->setPreview(nullptr, 0);
  } else if (m_preview->rowCount() > 0 || m_preview->state() != State::computing) {
    showRows();
  }
  showState();
}

void PreviewPanel::Parts::showRows() {
  m_table->setPreview(m_preview.get(), m_bar->limit());
  m_shown = m_preview;
}

void PreviewPanel::Parts::showState() {
  const bool isComputing = m_preview != nullptr && m_preview->state() == State::computing;
  const bool hasColumns = m_shown != nullptr && m_shown->rows() != nullptr;
  m_bar->setComputing(isComputing);
  m_bar->setReady(m_pin.has_value(), hasColumns);
  m_bar->setStatus(m_pin ? statusText() : QString());
  showMessages();
  if (hasColumns) {
    m_pages->setCurrentWidget(m_splitter);
    return;
  }
  if (!m_pin) {
    showEmpty(tr("Click an action or one of its pins, and its first rows appear here."), {});
  } else if (m_preview == nullptr) {
    showEmpty(m_whyNoRows, {});
  } else if (isComputing) {
    showEmpty(m_patience.isActive()
                  ? tr("The first rows are being computed \u2026")
                  : tr("No row has come yet: an action above this pin is still at work, or waits "
                       "for its file."),
              {});
  } else if (m_preview->state() == State::stopped) {
    showEmpty(tr("Stopped before the first row came."), tr("Compute the rows"));
  } else {
    showEmpty(tr("There are no rows to show. The message above says why."), tr("Try again"));
  }
}

void PreviewPanel::Parts::showEmpty(const QString& sentence, const QString& action) {
  m_empty->setSentence(sentence);
  m_empty->setAction(action);
  m_pages->setCurrentWidget(m_empty);
}

void PreviewPanel::Parts::showMessages() {
  if (m_preview == nullptr || m_preview->state() == State::computing) {
    m_message->clear();
    return;
  }
  if (m_preview->state() == State::failed) {
    const QString reason = m_preview->message();
    const QString text = m_preview->rowCount() > 0
                             ? tr("The rows end here because of an error: %1").arg(reason)
                             : reason;
    m_message->setMessage(Severity::error, text, {{kGoToAction, tr("Go to the action")}});
  } else if (m_preview->rowCount() == 0 && m_preview->rows() != nullptr) {
    m_message->setMessage(Severity::information,
                          tr("No rows come out of this pin; its columns are known."));
  } else {
    m_message->clear();
  }
}

QString PreviewPanel::Parts::statusText() const {
  if (m_preview == nullptr) {
    return {};
  }
  const long long count = m_table->model().sourceRowCount();
  if (m_table->isOrdering()) {
    return tr("sorting and filtering \u2026");
  }
  if (m_table->isOrdered()) {
    return tr("%1 of %2 rows").arg(grouped(m_table->model().rowCount()), grouped(count));
  }
  switch (m_preview->state()) {
    case State::computing:
      return m_preview->rowCount() == 0 ? tr("computing \u2026")
                                        : tr("%1 rows so far").arg(grouped(count));
    case State::complete:
      return count < m_preview->rowCount() ? tr("the first %1 rows").arg(grouped(count))
                                           : tr("all %1 rows").arg(grouped(count));
    case State::limited:
      return tr("the first %1 rows").arg(grouped(count));
    case State::stopped:
      return tr("stopped after %1 rows").arg(grouped(count));
    case State::failed:
      break;
  }
  return count > 0 ? tr("%1 rows, then an error").arg(grouped(count)) : tr("failed");
}

void PreviewPanel::Parts::showDetails() {
  const int column = m_table->currentColumn();
  if (!m_details->isVisibleTo(&m_panel)) {
    return;
  }
  if (m_shown == nullptr || m_shown->rows() == nullptr || column < 0) {
    m_details->clear();
    return;
  }
  m_details->setColumn(m_table->model().nameOf(column), m_table->model().typeOf(column),
                       m_shown->profiles().profile(column));
}

QString PreviewPanel::Parts::titleOf(const PinRef& pin) const {
  const QString action = m_graph.name(pin.action);
  if (!pin.isOutput) {
    return tr("%1, what comes in").arg(action);
  }
  const QString name = m_graph.pinName(pin);
  if (!name.isEmpty()) {
    return QStringLiteral("%1, %2").arg(action, name);
  }
  return m_graph.pinCount(pin.action, true) > 1 ? tr("%1, pin %2").arg(action).arg(pin.pin)
                                                : action;
}

void PreviewPanel::Parts::exportRows() {
  const QString file = QFileDialog::getSaveFileName(
      &m_panel, tr("Export the rows as CSV"), m_graph.name(m_pin->action) + QStringLiteral(".csv"),
      tr("CSV files (*.csv);;All files (*)"));
  if (!file.isEmpty()) {
    m_table->exportTo(file);
  }
}

void PreviewPanel::Parts::clear() {
  m_rest.stop();
  m_pin.reset();
  m_table->setPreview(nullptr, 0);
  m_shown.reset();
  if (m_preview != nullptr) {
    m_preview->disconnect(this);
    m_preview.reset();
  }
  m_cache.clear();
  m_report->clear();
  m_bar->setTitle(tr("Preview"));
  m_details->clear();
  showState();
}

PreviewPanel::PreviewPanel(EditedGraph& graph, EditServices& services, QWidget* parent)
    : QWidget(parent), m_parts(std::make_unique<Parts>(*this, graph, services)) {
  setObjectName(QStringLiteral("previewPanel"));
}

PreviewPanel::~PreviewPanel() = default;

void PreviewPanel::showPin(const PinRef& pin) {
  m_parts->showPin(pin);
}

std::optional<PinRef> PreviewPanel::pin() const {
  return m_parts->pin();
}

void PreviewPanel::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  m_parts->panelShown();
}

}  // namespace kelvarin

#include "preview_panel.moc"
