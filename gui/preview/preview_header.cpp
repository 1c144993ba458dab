#include "gui/preview/preview_header.h"

#include <algorithm>

#include <QAction>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>
#include <QToolTip>

#include "gui/preview/histogram.h"
#include "gui/preview/preview_model.h"
#include "host/widgets/icons.h"

namespace kelvarin {

namespace {

constexpr int kMargin = 8;
constexpr int kGap = 4;
constexpr int kRestMilliseconds = 250;

QString grouped(long long number) {
  return QLocale().toString(number);
}

// "number, 3 null": what is not as it should be first.
QString summaryOf(const ColumnProfile& profile) {
  QStringList parts{distinctText(profile)};
  if (profile.nullCount > 0) {
    parts.push_front(PreviewHeader::tr("%1 null").arg(grouped(profile.nullCount)));
  }
  if (profile.notANumberCount > 0) {
    parts.push_front(PreviewHeader::tr("%1 NaN").arg(grouped(profile.notANumberCount)));
  }
  return parts.join(QStringLiteral(", "));
}

QString rangeOf(const ColumnProfile& profile) {
  return profile.hasRange ? QStringLiteral("%1 \u2026 %2").arg(profile.minimum, profile.maximum)
                          : PreviewHeader::tr("no values");
}

}  // namespace

PreviewHeader::PreviewHeader(QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent), m_rest(new QTimer(this)) {
  setObjectName(QStringLiteral("previewHeader"));
  setSectionsClickable(true);
  setHighlightSections(false);
  setSectionResizeMode(QHeaderView::Interactive);
  setSortIndicatorShown(false);
  m_rest->setSingleShot(true);
  m_rest->setInterval(kRestMilliseconds);
  connect(m_rest, &QTimer::timeout, this, &PreviewHeader::filtersChanged);
  setResizeContentsPrecision(0);  // what is seen is measured, not a thousand rows
  connect(this, &QHeaderView::sectionResized, this, &PreviewHeader::layOutFields);
}

void PreviewHeader::setProfiles(ColumnProfiles* profiles) {
  if (m_profiles == profiles) {
    return;
  }
  if (m_profiles != nullptr) {
    m_profiles->disconnect(this);
  }
  m_profiles = profiles;
  if (profiles != nullptr) {
    connect(profiles, &ColumnProfiles::changed, this, [this](int column) {
      viewport()->update(sectionViewportPosition(column), 0, sectionSize(column), height());
    });
  }
  viewport()->update();
}

const ColumnProfile* PreviewHeader::profile(int column) const {
  return m_profiles == nullptr ? nullptr : m_profiles->profile(column);
}

void PreviewHeader::setShowsProfiles(bool shows) {
  m_showsProfiles = shows;
  emit geometriesChanged();
  viewport()->update();
}

void PreviewHeader::setShowsFilters(bool shows) {
  m_showsFilters = shows;
  emit geometriesChanged();
  layOutFields();
  viewport()->update();
  emit filtersShown(shows);
}

void PreviewHeader::setFilter(int column, const QString& text) {
  if (const auto field = m_fields.find(column); field != m_fields.end()) {
    field->second->setText(text);
  }
  fieldEdited(column, text);
}

void PreviewHeader::clearFilters() {
  m_rest->stop();
  m_filters.clear();
  m_faults.clear();
  for (const auto& [column, field] : m_fields) {
    field->deleteLater();
    field->hide();
  }
  m_fields.clear();
  layOutFields();
}

void PreviewHeader::setFault(int column, const QString& reason) {
  if (reason.isEmpty()) {
    m_faults.remove(column);
  } else {
    m_faults.insert(column, reason);
  }
  showFault(column);
}

void PreviewHeader::editFilter(int column) {
  QLineEdit* field = fieldOf(column);
  layOutFields();
  field->setFocus(Qt::ShortcutFocusReason);
  field->selectAll();
}

int PreviewHeader::lineHeight() const {
  return fontMetrics().height();
}

int PreviewHeader::profileHeight() const {
  return m_showsProfiles ? 4 * lineHeight() + kGap : 0;
}

int PreviewHeader::filterHeight() const {
  return m_showsFilters ? lineHeight() + 8 + 2 * kGap : 0;
}

QSize PreviewHeader::sizeHint() const {
  return {QHeaderView::sizeHint().width(),
          lineHeight() + 2 * kGap + profileHeight() + filterHeight()};
}

QSize PreviewHeader::sectionSizeFromContents(int column) const {
  return {sectionSize(column), sizeHint().height()};
}

void PreviewHeader::paintSection(QPainter* painter, const QRect& rectangle, int column) const {
  if (!rectangle.isValid()) {
    return;
  }
  painter->save();
  painter->fillRect(rectangle, palette().color(QPalette::Button));
  QColor line = palette().color(QPalette::ButtonText);
  line.setAlphaF(0.2F);
  painter->fillRect(QRect(rectangle.right(), rectangle.top(), 1, rectangle.height()), line);
  painter->fillRect(QRect(rectangle.left(), rectangle.bottom(), rectangle.width(), 1), line);

  const QRect inner = rectangle.adjusted(kMargin, kGap, -kMargin, 0);
  QRect head(inner.left(), inner.top(), inner.width(), lineHeight());
  const bool isSorted = isSortIndicatorShown() && sortIndicatorSection() == column;
  if (isSorted) {
    const bool isDown = sortIndicatorOrder() == Qt::DescendingOrder;
    const QRect arrow(head.right() - lineHeight() + 1, head.top(), lineHeight(), lineHeight());
    icon(isDown ? IconName::down : IconName::up).paint(painter, arrow);
    head.setRight(arrow.left() - kGap);
  }
  const QAbstractItemModel& columns = *model();
  QFont bold = font();
  bold.setBold(true);
  painter->setFont(bold);
  painter->setPen(palette().color(QPalette::ButtonText));
  const QString name = columns.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
  const QFontMetrics metrics(bold);
  painter->drawText(head, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                    metrics.elidedText(name, Qt::ElideRight, head.width()));
  painter->setFont(font());
  const QString type =
      columns.headerData(column, Qt::Horizontal, PreviewModel::kTypeNameRole).toString();
  const int free = head.width() - metrics.horizontalAdvance(name) - kMargin;
  painter->setPen(palette().color(QPalette::Active, QPalette::PlaceholderText));
  if (free >= fontMetrics().horizontalAdvance(type)) {
    painter->drawText(head, Qt::AlignRight | Qt::AlignVCenter, type);
  }
  if (m_showsProfiles) {
    paintProfile(*painter, QRect(inner.left(), head.bottom() + 1, inner.width(), profileHeight()),
                 column);
  }
  painter->restore();
}

void PreviewHeader::paintProfile(QPainter& painter, QRect area, int column) const {
  const ColumnProfile* known = profile(column);
  if (known == nullptr) {
    return;
  }
  QRect line(area.left(), area.top(), area.width(), lineHeight());
  painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                   fontMetrics().elidedText(summaryOf(*known), Qt::ElideRight, line.width()));
  line.translate(0, lineHeight());
  painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                   fontMetrics().elidedText(rangeOf(*known), Qt::ElideMiddle, line.width()));
  paintHistogram(
      painter,
      QRectF(area.left(), line.bottom() + 1 + kGap, area.width(), 2 * lineHeight() - 2 * kGap),
      *known, palette());
}

// All that there is to say of a column, for those whom the drawing leaves something open.
QString PreviewHeader::toolTipOf(int column) const {
  const QString name = model()->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
  const QString type =
      model()->headerData(column, Qt::Horizontal, PreviewModel::kTypeNameRole).toString();
  QStringList lines{QStringLiteral("%1: %2").arg(name, type)};
  if (const ColumnProfile* known = profile(column); known != nullptr) {
    lines += summaryOf(*known);
    lines += rangeOf(*known);
    lines += tr("of %1 rows").arg(grouped(known->rowCount));
  }
  return lines.join(u'\n');
}

bool PreviewHeader::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const int column = logicalIndexAt(help->pos());
    QToolTip::showText(help->globalPos(), column < 0 ? QString() : toolTipOf(column), viewport());
    return true;
  }
  return QHeaderView::viewportEvent(event);
}

void PreviewHeader::updateGeometries() {
  QHeaderView::updateGeometries();
  layOutFields();
}

void PreviewHeader::changeEvent(QEvent* event) {
  QHeaderView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    emit geometriesChanged();
    layOutFields();
  }
}

// Only the columns that are seen have fields; a table may have thousands.
void PreviewHeader::layOutFields() {
  const int first = count() == 0 ? -1 : std::max(0, visualIndexAt(0));
  const int rightmost = visualIndexAt(viewport()->width() - 1);
  const int last = rightmost < 0 ? count() - 1 : rightmost;
  const bool areShown = m_showsFilters && first >= 0;
  for (auto field = m_fields.begin(); field != m_fields.end();) {
    const bool isSeen = areShown && field->first >= first && field->first <= last;
    if (!isSeen && !(areShown && field->second->hasFocus())) {
      field->second->hide();
      field->second->deleteLater();
      field = m_fields.erase(field);
    } else {
      ++field;
    }
  }
  for (int column = first; areShown && column <= last; ++column) {
    fieldOf(column);
  }
  QWidget* before = nullptr;
  for (const auto& [column, field] : m_fields) {
    const int left = sectionViewportPosition(column) + kGap;
    field->setGeometry(left, viewport()->height() - filterHeight() + kGap,
                       std::max(0, sectionSize(column) - 2 * kGap), filterHeight() - 2 * kGap);
    field->show();
    if (before != nullptr) {
      setTabOrder(before, field);
    }
    before = field;
  }
}

QLineEdit* PreviewHeader::fieldOf(int column) {
  if (const auto found = m_fields.find(column); found != m_fields.end()) {
    return found->second;
  }
  auto* field = new QLineEdit(viewport());
  const QString name = model()->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
  field->setText(m_filters.value(column));
  field->setAccessibleName(tr("Filter of the column %1").arg(name));
  field->setPlaceholderText(tr("filter"));
  field->setClearButtonEnabled(true);
  field->installEventFilter(this);
  connect(field, &QLineEdit::textEdited, this,
          [this, column](const QString& text) { fieldEdited(column, text); });
  connect(field, &QLineEdit::textChanged, this, [this, column](const QString& text) {
    if (text.isEmpty()) {
      fieldEdited(column, text);  // by the button in the field
    }
  });
  m_fields.emplace(column, field);
  showFault(column);
  return field;
}

void PreviewHeader::fieldEdited(int column, const QString& text) {
  if (m_filters.value(column) == text.trimmed()) {
    return;
  }
  if (text.trimmed().isEmpty()) {
    m_filters.remove(column);
  } else {
    m_filters.insert(column, text.trimmed());
  }
  m_rest->start();
}

void PreviewHeader::showFault(int column) {
  const auto found = m_fields.find(column);
  if (found == m_fields.end()) {
    return;
  }
  QLineEdit* field = found->second;
  const QString fault = m_faults.value(column);
  for (QAction* action : field->actions()) {
    if (action->objectName() == QLatin1String("fault")) {
      field->removeAction(action);
      delete action;
    }
  }
  if (!fault.isEmpty()) {
    QAction* mark = field->addAction(icon(Severity::warning), QLineEdit::LeadingPosition);
    mark->setObjectName(QStringLiteral("fault"));
    mark->setToolTip(fault);
  }
  field->setAccessibleDescription(fault);
  field->setToolTip(fault.isEmpty()
                        ? tr("A text, a comparison such as > 5 or = Lyon, a range such as 1..5, "
                             "null, !null, nan or empty")
                        : fault);
}

bool PreviewHeader::eventFilter(QObject* watched, QEvent* event) {
  auto* field = qobject_cast<QLineEdit*>(watched);
  if (field == nullptr || event->type() != QEvent::KeyPress) {
    return QHeaderView::eventFilter(watched, event);
  }
  const auto found = std::find_if(m_fields.begin(), m_fields.end(),
                                  [field](const auto& entry) { return entry.second == field; });
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (found == m_fields.end()) {
    return false;
  }
  if (key == Qt::Key_Escape && !field->text().isEmpty()) {
    field->clear();
    return true;
  }
  if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Down ||
      key == Qt::Key_Escape) {
    if (m_rest->isActive()) {
      m_rest->stop();
      emit filtersChanged();
    }
    emit leaveWanted(found->first);
    return true;
  }
  return false;
}

}  // namespace kelvarin
