#include "gui/preview/profile_panel.h"

#include <QEvent>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "gui/preview/histogram.h"
#include "gui/preview/preview_model.h"
#include "host/contract/shown_value.h"

namespace kelvarin {

namespace {

constexpr qsizetype kLongestFact = 28;  // characters

QString shareText(long long count, long long of) {
  const double percent =
      of == 0 ? 0.0 : 100.0 * static_cast<double>(count) / static_cast<double>(of);
  return QStringLiteral("%1 %").arg(QLocale().toString(percent, 'f', percent < 10.0 ? 1 : 0));
}

QString nameOfShare(double share) {
  if (share == 0.5) {
    return ProfilePanel::tr("Median");
  }
  return ProfilePanel::tr("%1 % are at most").arg(QLocale().toString(100.0 * share));
}

}  // namespace

ProfilePanel::ProfilePanel(QWidget* parent)
    : QScrollArea(parent),
      m_title(new QLabel),
      m_note(new QLabel),
      m_histogram(new HistogramView),
      m_facts(new QWidget),
      m_factLayout(new QFormLayout(m_facts)),
      m_frequentTitle(new QLabel(tr("Most &frequent values"))),
      m_frequent(new QTreeWidget) {
  setObjectName(QStringLiteral("previewProfile"));
  setAccessibleName(tr("Profile of the column"));
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::StrongFocus);
  auto* content = new QWidget;
  auto* layout = new QVBoxLayout(content);
  layout->setContentsMargins(8, 4, 8, 8);
  layout->setSpacing(8);
  m_title->setTextFormat(Qt::PlainText);
  m_title->setWordWrap(true);
  QFont bold = font();
  bold.setBold(true);
  m_title->setFont(bold);
  m_note->setTextFormat(Qt::PlainText);
  m_note->setWordWrap(true);
  m_note->setForegroundRole(QPalette::PlaceholderText);
  m_factLayout->setContentsMargins(0, 0, 0, 0);
  m_factLayout->setHorizontalSpacing(12);
  m_factLayout->setVerticalSpacing(4);
  m_frequentTitle->setBuddy(m_frequent);
  m_frequent->setObjectName(QStringLiteral("frequentValues"));
  m_frequent->setAccessibleName(tr("Most frequent values"));
  m_frequent->setHeaderLabels({tr("Value"), tr("Rows"), tr("Share")});
  m_frequent->setRootIsDecorated(false);
  m_frequent->setUniformRowHeights(true);
  m_frequent->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_frequent->header()->setStretchLastSection(false);
  m_frequent->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  m_frequent->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
  m_frequent->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
  m_frequent->headerItem()->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
  m_frequent->headerItem()->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
  for (QWidget* part :
       {static_cast<QWidget*>(m_title), static_cast<QWidget*>(m_note),
        static_cast<QWidget*>(m_histogram), m_facts, static_cast<QWidget*>(m_frequentTitle),
        static_cast<QWidget*>(m_frequent)}) {
    layout->addWidget(part);
  }
  layout->addStretch();
  setWidget(content);
  clear();
}

void ProfilePanel::clear() {
  m_title->setText(tr("Profile"));
  m_note->setText(tr("Choose a cell or a column, and what its values are like appears here."));
  for (QWidget* part :
       {static_cast<QWidget*>(m_histogram), m_facts, static_cast<QWidget*>(m_frequentTitle),
        static_cast<QWidget*>(m_frequent)}) {
    part->hide();
  }
}

void ProfilePanel::setColumn(const QString& name, MetaTypeColumn type,
                             const ColumnProfile* profile) {
  if (profile == nullptr) {
    clear();
    m_title->setText(QStringLiteral("%1 (%2)").arg(name, nameOfType(type)));
    m_note->setText(tr("The profile is being computed."));
    return;
  }
  m_title->setText(QStringLiteral("%1 (%2)").arg(name, nameOfType(type)));
  m_note->setText(tr("Of %1 rows at hand").arg(QLocale().toString(profile->rowCount)));
  m_histogram->setProfile(profile);
  showFacts(*profile);
  showFrequent(*profile);
  m_histogram->show();
  m_facts->show();
}

void ProfilePanel::addFact(const QString& name, const QString& value) {
  const bool isLong = value.size() > kLongestFact;
  auto* label = new QLabel(isLong ? value.first(kLongestFact) + u'\u2026' : value);
  label->setTextFormat(Qt::PlainText);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setToolTip(isLong ? value : QString());
  m_factLayout->addRow(name, label);
}

void ProfilePanel::addCount(const QString& name, long long count, long long of) {
  addFact(name, count == 0 ? tr("none")
                           : QStringLiteral("%1 (%2)").arg(QLocale().toString(count),
                                                           shareText(count, of)));
}

void ProfilePanel::showFacts(const ColumnProfile& profile) {
  while (m_factLayout->rowCount() > 0) {
    m_factLayout->removeRow(0);
  }
  addCount(tr("Null"), profile.nullCount, profile.rowCount);
  if (profile.isOfTexts()) {
    addCount(tr("Empty"), profile.emptyCount, profile.rowCount);
  } else if (profile.type == MetaTypeColumn::number) {
    addCount(tr("NaN"), profile.notANumberCount, profile.rowCount);
  }
  addFact(tr("Values"), distinctText(profile));
  if (!profile.hasRange) {
    return;
  }
  addFact(tr("Minimum"), profile.minimum);
  addFact(tr("Maximum"), profile.maximum);
  if (profile.isOfTexts()) {
    addFact(tr("Length"), tr("%1 to %2 bytes")
                              .arg(QLocale().toString(profile.shortestText),
                                   QLocale().toString(profile.longestText)));
    return;
  }
  addFact(tr("Mean"), QString::number(profile.mean, 'g', 6));
  for (const ColumnProfile::Quantile& quantile : profile.quantiles) {
    if (quantile.share > 0.0 && quantile.share < 1.0) {
      const QString value = shownNumber(quantile.value).text;
      addFact(nameOfShare(quantile.share),
              profile.areQuantilesExact ? value : tr("about %1").arg(value));
    }
  }
}

void ProfilePanel::showFrequent(const ColumnProfile& profile) {
  m_frequent->clear();
  for (const ColumnProfile::Frequent& frequent : profile.frequent) {
    auto* item = new QTreeWidgetItem({frequent.value, QLocale().toString(frequent.count),
                                      shareText(frequent.count, profile.rowCount)});
    item->setToolTip(0, frequent.value);
    item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    item->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
    m_frequent->addTopLevelItem(item);
  }
  // Where every value comes once, none is frequent.
  const bool isShown = !profile.frequent.empty() && profile.frequent.front().count > 1;
  m_frequent->setVisible(isShown);
  m_frequentTitle->setVisible(isShown);
  fitFrequent();
}

void ProfilePanel::changeEvent(QEvent* event) {
  QScrollArea::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    fitFrequent();
  }
}

void ProfilePanel::fitFrequent() {
  const int row = m_frequent->sizeHintForRow(0);
  m_frequent->setFixedHeight(m_frequent->header()->sizeHint().height() +
                             row * m_frequent->topLevelItemCount() + 2 * m_frequent->frameWidth());
}

}  // namespace kelvarin
