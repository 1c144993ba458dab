#include "ui/editors/vectors_panel.h"

#include <QListWidget>
#include <QLocale>
#include <QVBoxLayout>

#include "host/widgets/info_line.h"
#include "ui/editors/vectors_model.h"
#include "ui/panels/form_layout.h"
#include "ui/widgets/my_table.h"

namespace kelvarin {

namespace {

constexpr int kNamesPage = 1;
constexpr qsizetype kMaxListed = 1000;

QVBoxLayout* pageLayout(QWidget* page) {
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(0, kControlSpacing, 0, 0);
  layout->setSpacing(kControlSpacing);
  return layout;
}

}  // namespace

VectorsPanel::VectorsPanel(PinTable& table, QWidget* parent)
    : QTabWidget(parent),
      m_pinTable(table),
      m_model(new VectorsModel(this)),
      m_vectors(new MyTable(this)),
      m_tableNote(new InfoLine(this)),
      m_names(new QListWidget(this)),
      m_namesNote(new InfoLine(this)) {
  setDocumentMode(true);
  setAccessibleName(tr("Vectors and variables"));
  addVectors();
  addNames();
  connect(&table, &PinTable::changed, this, &VectorsPanel::showTable);
  connect(&table, &PinTable::columnsNamed, this, &VectorsPanel::showNames);
  showTable();
}

void VectorsPanel::addVectors() {
  auto* page = new QWidget(this);
  QVBoxLayout* layout = pageLayout(page);
  m_vectors->setObjectName(QStringLiteral("vectors"));
  m_vectors->setAccessibleName(tr("Vectors"));
  m_vectors->setToolTip(tr("The vectors of the table on pin 1"));
  m_vectors->setModel(m_model);
  layout->addWidget(m_vectors, 1);
  layout->addWidget(m_tableNote);
  addTab(page, tr("Vectors"));
}

void VectorsPanel::addNames() {
  auto* page = new QWidget(this);
  QVBoxLayout* layout = pageLayout(page);
  m_names->setObjectName(QStringLiteral("columnsToCreate"));
  m_names->setAccessibleName(tr("Columns that will be created"));
  layout->addWidget(m_names, 1);
  layout->addWidget(m_namesNote);
  addTab(page, tr("New columns"));
}

void VectorsPanel::showTable() {
  m_model->setVectors(m_pinTable.table() ? m_pinTable.table()->variables
                                         : std::vector<InputVariable>());
  m_vectors->fitColumns();
  if (!m_pinTable.table()) {
    m_tableNote->setMessage(Severity::error, m_pinTable.table().error());
  } else if (m_pinTable.isBusy()) {
    m_tableNote->setMessage(Severity::information, tr("The table is being read."));
  } else if (!m_pinTable.isKnown()) {
    m_tableNote->setMessage(
        Severity::information,
        tr("The vectors are not known: link a table with the columns AliasName, "
           "VarName and castToNumber to pin 1. %1")
            .arg(m_pinTable.whyUnknown())
            .trimmed());
  } else if (m_pinTable.isCut()) {
    m_tableNote->setMessage(Severity::warning, tr("Only the first %1 rows of the table are shown.")
                                                   .arg(QLocale().toString(PinTable::kMaxRows)));
  } else {
    m_tableNote->clear();
  }
}

void VectorsPanel::showNames(const Result<QStringList, QString>& names) {
  m_names->clear();
  m_names->setEnabled(names && !names->isEmpty());
  if (!names) {
    setTabText(kNamesPage, tr("New columns"));
    m_namesNote->setMessage(Severity::warning, names.error());
    return;
  }
  setTabText(kNamesPage, tr("New columns (%1)").arg(QLocale().toString(names->size())));
  m_namesNote->clear();
  m_names->addItems(names->mid(0, kMaxListed));
  if (names->size() > kMaxListed) {
    m_names->addItem(tr("and %1 more").arg(QLocale().toString(names->size() - kMaxListed)));
  }
}

}  // namespace kelvarin
