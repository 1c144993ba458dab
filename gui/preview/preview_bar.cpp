#include "gui/preview/preview_bar.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>

#include "gui/preview/preview_model.h"
#include "host/widgets/icon_button.h"

namespace kelvarin {

namespace {

constexpr long long kLimits[] = {100, 1'000, 100'000};
constexpr int kUsualLimit = 1;

}  // namespace

PreviewBar::PreviewBar(QWidget* parent)
    : QWidget(parent),
      m_title(new QLabel),
      m_limit(new QComboBox),
      m_status(new QLabel),
      m_reload(new IconButton(IconName::reload, tr("Compute the rows again"))),
      m_stop(new IconButton(IconName::stop, tr("Stop computing rows"))),
      m_export(new IconButton(IconName::save, tr("Export the rows as CSV \u2026"))) {
  m_title->setTextFormat(Qt::PlainText);
  m_title->setProperty("elides", true);
  m_title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  m_status->setTextFormat(Qt::PlainText);
  m_status->setObjectName(QStringLiteral("previewStatus"));
  m_limit->setObjectName(QStringLiteral("previewLimit"));
  for (const long long limit : kLimits) {
    m_limit->addItem(QLocale().toString(limit), limit);
  }
  m_limit->addItem(tr("All"), PreviewModel::kMaximumRows);
  m_limit->setItemData(m_limit->count() - 1,
                       tr("At most %1").arg(QLocale().toString(PreviewModel::kMaximumRows)),
                       Qt::ToolTipRole);
  m_limit->setCurrentIndex(kUsualLimit);
  m_limit->setToolTip(tr("How many of the first rows are computed"));
  auto* limitLabel = new QLabel(tr("First rows:"));
  limitLabel->setBuddy(m_limit);
  m_limit->setAccessibleName(tr("First rows"));
  m_reload->setObjectName(QStringLiteral("previewReload"));
  m_stop->setObjectName(QStringLiteral("previewStop"));
  m_export->setObjectName(QStringLiteral("previewExport"));
  m_profiles = addSwitch(tr("Profiles"), tr("Show what the values of each column are like"), true);
  m_filters = addSwitch(tr("Filter"), tr("Filter the rows that are shown (Ctrl+F)"), false);
  m_details = addSwitch(tr("Details"), tr("Show the profile of one column in full"), false);

  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(8, 4, 8, 4);
  layout->setSpacing(8);
  layout->addWidget(m_title, 1);
  layout->addWidget(m_status);
  layout->addWidget(m_stop);
  layout->addWidget(m_reload);
  layout->addSpacing(4);
  layout->addWidget(limitLabel);
  layout->addWidget(m_limit);
  layout->addSpacing(4);
  layout->addWidget(m_filters);
  layout->addWidget(m_profiles);
  layout->addWidget(m_details);
  layout->addWidget(m_export);
  connect(m_limit, &QComboBox::activated, this, &PreviewBar::limitChanged);
  connect(m_reload, &QToolButton::clicked, this, &PreviewBar::reloadWanted);
  connect(m_stop, &QToolButton::clicked, this, &PreviewBar::stopWanted);
  connect(m_export, &QToolButton::clicked, this, &PreviewBar::exportWanted);
  connect(m_profiles, &QCheckBox::toggled, this, &PreviewBar::profilesToggled);
  connect(m_filters, &QCheckBox::toggled, this, &PreviewBar::filtersToggled);
  connect(m_details, &QCheckBox::toggled, this, &PreviewBar::detailsToggled);
  setComputing(false);
  setReady(false, false);
}

QCheckBox* PreviewBar::addSwitch(const QString& label, const QString& toolTip, bool isOn) {
  auto* box = new QCheckBox(label);
  box->setToolTip(toolTip);
  box->setAccessibleDescription(toolTip);
  box->setChecked(isOn);
  return box;
}

void PreviewBar::setTitle(const QString& title) {
  m_titleText = title;
  showTitle();
}

void PreviewBar::setStatus(const QString& text) {
  m_status->setText(text);
}

// Both buttons at one position, so that nothing moves.
void PreviewBar::setComputing(bool isComputing) {
  m_stop->setVisible(isComputing);
  m_reload->setVisible(!isComputing);
}

void PreviewBar::setReady(bool hasPin, bool hasRows) {
  m_reload->setEnabled(hasPin);
  m_export->setEnabled(hasRows);
  m_filters->setEnabled(hasRows);
}

void PreviewBar::setFiltersShown(bool areShown) {
  m_filters->setChecked(areShown);
}

long long PreviewBar::limit() const {
  return m_limit->currentData().toLongLong();
}

void PreviewBar::showTitle() {
  QFont bold = font();
  bold.setBold(true);
  m_title->setFont(bold);
  m_title->setText(QFontMetrics(bold).elidedText(m_titleText, Qt::ElideMiddle, m_title->width()));
  m_title->setToolTip(m_titleText);
  m_title->setAccessibleName(m_titleText);
}

void PreviewBar::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  showTitle();
}

void PreviewBar::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) {
    showTitle();
  }
}

}  // namespace kelvarin
