#include "gui/window/parameters_dialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

#include "gui/window/parameters_model.h"
#include "host/widgets/icons.h"
#include "host/widgets/info_line.h"
#include "host/widgets/parameter_completion.h"

namespace kelvarin {

namespace {

// Values refer to parameters above them.
class ValueDelegate : public QStyledItemDelegate {
 public:
  ValueDelegate(const ParametersModel& model, QObject* parent)
      : QStyledItemDelegate(parent), m_model(model) {}

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                        const QModelIndex& index) const override {
    auto* field = new QLineEdit(parent);
    field->setFrame(false);
    if (index.column() == ParametersModel::kValue) {
      completeParameters(*field, m_model.namesAbove(index.row()));
    }
    return field;
  }

 private:
  const ParametersModel& m_model;
};

}  // namespace

ParametersDialog::ParametersDialog(GraphCommands& commands, QWidget* parent)
    : QDialog(parent),
      m_commands(commands),
      m_model(new ParametersModel(commands.graph(), this)),
      m_table(new QTableView),
      m_fault(new InfoLine),
      m_missing(new InfoLine),
      m_remove(new QPushButton(icon(IconName::remove), tr("&Remove"))) {
  setWindowTitle(tr("Parameters of the graph"));
  auto* hint =
      new QLabel(tr("Write ${name} in a file name or any other setting; in expressions, "
                    "the name alone. Settings and expressions follow a new name."));
  hint->setWordWrap(true);
  makeTable();
  m_fault->setObjectName(QStringLiteral("fault"));
  m_missing->setObjectName(QStringLiteral("missing"));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  m_apply = buttons->addButton(tr("&Use these"), QDialogButtonBox::AcceptRole);
  connect(buttons, &QDialogButtonBox::accepted, this, &ParametersDialog::apply);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 12);
  layout->setSpacing(8);
  layout->addWidget(hint);
  layout->addWidget(m_table, 1);
  layout->addLayout(newButtons());
  layout->addWidget(m_fault);
  layout->addWidget(m_missing);
  layout->addWidget(buttons);
  connect(m_model, &ParametersModel::edited, this, &ParametersDialog::validate);
  connect(m_missing, &InfoLine::linkActivated, this,
          [this](const QString& name) { edit(m_model->add(name)); });
  resize(fontMetrics().averageCharWidth() * 84, fontMetrics().height() * 20);
  validate();
}

void ParametersDialog::makeTable() {
  m_table->setModel(m_model);
  m_table->setItemDelegate(new ValueDelegate(*m_model, m_table));
  m_table->setObjectName(QStringLiteral("parameters"));
  m_table->setAccessibleName(tr("Parameters"));
  m_table->setWordWrap(false);
  m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_table->setSelectionMode(QAbstractItemView::SingleSelection);
  m_table->setTabKeyNavigation(false);
  m_table->verticalHeader()->hide();
  m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 8);
  m_table->horizontalHeader()->setSectionResizeMode(ParametersModel::kValue, QHeaderView::Stretch);
  const int character = m_table->fontMetrics().averageCharWidth();
  m_table->horizontalHeader()->resizeSection(ParametersModel::kName, character * 18);
  m_table->horizontalHeader()->resizeSection(ParametersModel::kUsedBy, character * 24);
  connect(m_table->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current) { m_remove->setEnabled(current.isValid()); });
  m_table->setCurrentIndex(m_model->index(0, ParametersModel::kValue));
}

QLayout* ParametersDialog::newButtons() {
  auto* add = new QPushButton(icon(IconName::add), tr("&Add"));
  add->setAutoDefault(false);
  m_remove->setAutoDefault(false);
  m_remove->setEnabled(m_table->currentIndex().isValid());
  connect(add, &QPushButton::clicked, this, [this] { edit(m_model->add()); });
  connect(m_remove, &QPushButton::clicked, this, &ParametersDialog::removeCurrent);
  auto* layout = new QHBoxLayout;
  layout->setSpacing(8);
  layout->addWidget(add);
  layout->addWidget(m_remove);
  layout->addStretch(1);
  return layout;
}

void ParametersDialog::edit(const QModelIndex& cell) {
  m_table->setCurrentIndex(cell);
  m_table->setFocus();
  m_table->edit(cell);
}

void ParametersDialog::removeCurrent() {
  if (const QModelIndex current = m_table->currentIndex(); current.isValid()) {
    m_model->removeAt(current.row());
  }
}

// A parameter that is missing is no reason to keep the others: its users say that they cannot run.
void ParametersDialog::validate() {
  const QString fault = m_model->fault();
  m_apply->setEnabled(fault.isEmpty());
  if (fault.isEmpty()) {
    m_fault->clear();
  } else {
    m_fault->setMessage(Severity::error, fault);
  }
  const auto missing = m_model->missing();
  if (missing.empty()) {
    m_missing->clear();
    return;
  }
  const ParametersModel::Missing& first = missing.front();
  m_missing->setMessage(Severity::warning,
                        tr("There is no parameter '%1', and these actions cannot run without it: "
                           "%2.")
                            .arg(first.name, first.users.join(u", ")),
                        {{first.name, tr("Add '%1'").arg(first.name)}});
}

void ParametersDialog::apply() {
  m_table->setFocus();  // commits the cell that is being edited
  if (!m_model->fault().isEmpty()) {
    return;
  }
  m_commands.setParameters(m_model->parameters(), m_model->newNames());
  accept();
}

}  // namespace kelvarin
