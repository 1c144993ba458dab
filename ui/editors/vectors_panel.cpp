#include "ui/editors/vectors_panel.h"

#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QVBoxLayout>

#include "host/widgets/info_line.h"
#include "ui/editors/side_by_side.h"
#include "ui/editors/vectors_model.h"
#include "ui/panels/form_layout.h"
#include "ui/widgets/my_table.h"

namespace kelvarin {

namespace {

constexpr qsizetype kMaxListed = 1000;
constexpr int kShownLines = 5;

}  // namespace

VectorsPanel::VectorsPanel(PinTable& table, QWidget* parent)
    : QWidget(parent),
      m_pinTable(table),
      m_model(new VectorsModel(this)),
      m_vectors(new MyTable(this)),
      m_note(new InfoLine(this)),
      m_namesLabel(new QLabel(this)),
      m_names(new QListWidget(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(new SideBySide(makeVectors(), makeNames(), this));
  connect(&table, &PinTable::changed, this, &VectorsPanel::showTable);
  connect(&table, &PinTable::columnsNamed, this, &VectorsPanel::showNames);
  showTable();
}

QWidget* VectorsPanel::makeVectors() {
  auto* box = new QWidget(this);
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kControlSpacing);
  auto* label = new QLabel(tr("Vectors of the table on pin &1"), box);
  label->setWordWrap(true);
  label->setBuddy(m_vectors);
  m_vectors->setObjectName(QStringLiteral("vectors"));
  m_vectors->setAccessibleName(tr("Vectors"));
  m_vectors->setModel(m_model);
  m_vectors->setMinimumHeight(kShownLines * (fontMetrics().height() + 8));
  layout->addWidget(label);
  layout->addWidget(m_vectors, 1);
  layout->addWidget(m_note);
  return box;
}

QWidget* VectorsPanel::makeNames() {
  auto* box = new QWidget(this);
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kControlSpacing);
  m_namesLabel->setWordWrap(true);
  m_namesLabel->setBuddy(m_names);
  m_names->setObjectName(QStringLiteral("columnsToCreate"));
  m_names->setAccessibleName(tr("Columns that will be created"));
  m_names->setMinimumHeight(m_vectors->minimumHeight());
  layout->addWidget(m_namesLabel);
  layout->addWidget(m_names, 1);
  return box;
}

void VectorsPanel::showTable() {
  m_model->setVectors(m_pinTable.table() ? m_pinTable.table()->variables
                                         : std::vector<InputVariable>());
  m_vectors->fitColumns();
  if (!m_pinTable.table()) {
    m_note->setMessage(Severity::error, m_pinTable.table().error());
  } else if (m_pinTable.isBusy()) {
    m_note->setMessage(Severity::information, tr("The table is being read."));
  } else if (!m_pinTable.isKnown()) {
    m_note->setMessage(Severity::information,
                       tr("The vectors are not known: link a table with the columns AliasName, "
                          "VarName and castToNumber to pin 1. %1")
                           .arg(m_pinTable.whyUnknown())
                           .trimmed());
  } else if (m_pinTable.isCut()) {
    m_note->setMessage(Severity::warning, tr("Only the first %1 rows of the table are shown.")
                                              .arg(QLocale().toString(PinTable::kMaxRows)));
  } else {
    m_note->clear();
  }
}

void VectorsPanel::showNames(const Result<QStringList, QString>& names) {
  m_names->clear();
  m_names->setEnabled(names && !names->isEmpty());
  if (!names) {
    m_namesLabel->setText(names.error());
    return;
  }
  m_namesLabel->setText(
      tr("Columns that will be created (%1):").arg(QLocale().toString(names->size())));
  m_names->addItems(names->mid(0, kMaxListed));
  if (names->size() > kMaxListed) {
    m_names->addItem(tr("and %1 more").arg(QLocale().toString(names->size() - kMaxListed)));
  }
}

}  // namespace kelvarin
