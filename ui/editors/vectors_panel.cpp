#include "ui/editors/vectors_panel.h"

#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QTableView>
#include <QVBoxLayout>

#include "host/widgets/info_line.h"
#include "ui/editors/vectors_model.h"

namespace kelvarin {

namespace {

constexpr qsizetype kMaxListed = 1000;
constexpr int kShownLines = 4;

}  // namespace

VectorsPanel::VectorsPanel(PinTable& table, QWidget* parent)
    : QWidget(parent),
      m_pinTable(table),
      m_model(new VectorsModel(this)),
      m_vectors(new QTableView(this)),
      m_note(new InfoLine(this)),
      m_namesLabel(new QLabel(this)),
      m_names(new QListWidget(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  auto* label = new QLabel(tr("Vectors of the table on pin &1"), this);
  label->setWordWrap(true);
  label->setBuddy(m_vectors);
  m_vectors->setObjectName(QStringLiteral("vectors"));
  m_vectors->setAccessibleName(tr("Vectors"));
  m_vectors->setModel(m_model);
  m_vectors->setTabKeyNavigation(false);
  m_vectors->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_vectors->verticalHeader()->hide();
  m_vectors->horizontalHeader()->setStretchLastSection(true);
  m_namesLabel->setWordWrap(true);
  m_namesLabel->setBuddy(m_names);
  m_names->setObjectName(QStringLiteral("columnsToCreate"));
  m_names->setAccessibleName(tr("Columns that will be created"));
  const int height = fontMetrics().lineSpacing() * (kShownLines + 1);
  m_vectors->setMinimumHeight(height + m_vectors->horizontalHeader()->sizeHint().height());
  m_names->setMinimumHeight(height);
  layout->addWidget(label);
  layout->addWidget(m_vectors);
  layout->addWidget(m_note);
  layout->addWidget(m_namesLabel);
  layout->addWidget(m_names);
  connect(&table, &PinTable::changed, this, &VectorsPanel::showTable);
  connect(&table, &PinTable::columnsNamed, this, &VectorsPanel::showNames);
  showTable();
}

void VectorsPanel::showTable() {
  m_model->setVectors(m_pinTable.table() ? m_pinTable.table()->variables
                                         : std::vector<InputVariable>());
  m_vectors->resizeColumnsToContents();
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
      tr("%n column(s) will be created:", nullptr, static_cast<int>(names->size())));
  m_names->addItems(names->mid(0, kMaxListed));
  if (names->size() > kMaxListed) {
    m_names->addItem(tr("and %n more", nullptr, static_cast<int>(names->size() - kMaxListed)));
  }
}

QStringList VectorsPanel::columnNames() const {
  QStringList names;
  for (int i = 0; i < m_names->count(); ++i) {
    names += m_names->item(i)->text();
  }
  return names;
}

}  // namespace kelvarin
