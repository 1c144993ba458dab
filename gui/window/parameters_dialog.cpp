#include "gui/window/parameters_dialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSet>
#include <QTableWidget>
#include <QVBoxLayout>

#include "host/widgets/icons.h"
#include "host/widgets/info_line.h"

namespace kelvarin {

namespace {

enum Column { name, value, usedBy, columnCountOfTable };

}  // namespace

ParametersDialog::ParametersDialog(GraphCommands& commands, QWidget* parent)
    : QDialog(parent),
      m_commands(commands),
      m_table(new QTableWidget(0, columnCountOfTable)),
      m_fault(new InfoLine) {
  setWindowTitle(tr("Parameters of the graph"));
  m_table->setObjectName(QStringLiteral("parameters"));
  m_table->setAccessibleName(tr("Parameters"));
  m_table->setHorizontalHeaderLabels({tr("Name"), tr("Value"), tr("Used by")});
  m_table->horizontalHeader()->setSectionResizeMode(value, QHeaderView::Stretch);
  m_table->verticalHeader()->hide();
  m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_table->setTabKeyNavigation(false);
  connect(m_table, &QTableWidget::itemChanged, this, &ParametersDialog::validate);

  auto* hint =
      new QLabel(tr("Write ${name} in a file name or any other setting; in expressions, "
                    "the name alone."));
  hint->setWordWrap(true);
  auto* add = new QPushButton(icon(IconName::add), tr("&Add"));
  auto* remove = new QPushButton(icon(IconName::remove), tr("&Remove"));
  connect(add, &QPushButton::clicked, this, [this] {
    addRow({});
    m_table->setCurrentCell(m_table->rowCount() - 1, name);
    m_table->editItem(m_table->currentItem());
  });
  connect(remove, &QPushButton::clicked, this, &ParametersDialog::removeCurrent);
  auto* edits = new QHBoxLayout;
  edits->setSpacing(8);
  edits->addWidget(add);
  edits->addWidget(remove);
  edits->addStretch(1);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  m_apply = buttons->addButton(tr("&Use these"), QDialogButtonBox::AcceptRole);
  connect(buttons, &QDialogButtonBox::accepted, this, &ParametersDialog::apply);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(12, 12, 12, 12);
  layout->setSpacing(8);
  layout->addWidget(hint);
  layout->addWidget(m_table, 1);
  layout->addLayout(edits);
  layout->addWidget(m_fault);
  layout->addWidget(buttons);
  for (const DrawnParameter& parameter : m_commands.graph().parameters()) {
    addRow(parameter);
  }
  m_table->resizeColumnToContents(name);
  resize(fontMetrics().averageCharWidth() * 84, fontMetrics().height() * 20);
}

void ParametersDialog::addRow(const DrawnParameter& parameter) {
  QStringList users;
  for (const ActionId id : m_commands.graph().usersOfParameter(parameter.name)) {
    users += m_commands.graph().name(id);
  }
  const int row = m_table->rowCount();
  m_table->insertRow(row);
  m_table->setItem(row, name, new QTableWidgetItem(parameter.name));
  m_table->setItem(row, value, new QTableWidgetItem(parameter.value));
  auto* used = new QTableWidgetItem(users.join(u", "));
  used->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
  used->setToolTip(used->text());
  m_table->setItem(row, usedBy, used);
}

void ParametersDialog::removeCurrent() {
  if (const int row = m_table->currentRow(); row >= 0) {
    m_table->removeRow(row);
    validate();
  }
}

QList<DrawnParameter> ParametersDialog::typed() const {
  QList<DrawnParameter> parameters;
  for (int row = 0; row < m_table->rowCount(); ++row) {
    const QTableWidgetItem* first = m_table->item(row, name);
    const QTableWidgetItem* second = m_table->item(row, value);
    const DrawnParameter parameter{first == nullptr ? QString() : first->text().trimmed(),
                                   second == nullptr ? QString() : second->text()};
    if (!parameter.name.isEmpty() || !parameter.value.isEmpty()) {
      parameters += parameter;
    }
  }
  return parameters;
}

QString ParametersDialog::faultOf(const QList<DrawnParameter>& parameters) const {
  QSet<QString> names;
  for (const DrawnParameter& parameter : parameters) {
    if (parameter.name.isEmpty()) {
      return tr("A value has no name: \"%1\".").arg(parameter.value);
    }
    if (names.contains(parameter.name)) {
      return tr("Two parameters are called '%1'.").arg(parameter.name);
    }
    names += parameter.name;
  }
  return {};
}

void ParametersDialog::validate() {
  const QString fault = faultOf(typed());
  m_apply->setEnabled(fault.isEmpty());
  if (fault.isEmpty()) {
    m_fault->clear();
  } else {
    m_fault->setMessage(Severity::error, fault);
  }
}

void ParametersDialog::apply() {
  const QList<DrawnParameter> parameters = typed();
  if (parameters != m_commands.graph().parameters()) {
    m_commands.setParameters(parameters);
  }
  accept();
}

}  // namespace kelvarin
