#include "gui/forms/action_form.h"

#include <algorithm>

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

#include "gui/forms/element_check.h"
#include "gui/forms/element_tree.h"
#include "host/contract/declared_content.h"
#include "host/widgets/info_line.h"
#include "host/widgets/parameter_completion.h"
#include "host/widgets/path_field.h"

namespace kelvarin {

namespace {

// An action of a plug-in that declares nothing: what its element has.
std::vector<AttributeDescription> attributesIn(const EditedElement& element) {
  std::vector<AttributeDescription> attributes;
  for (const auto& [name, value] : element.attributes) {
    if (std::ranges::find(attributesOfEveryAction(), name, &AttributeDescription::name) ==
        attributesOfEveryAction().end()) {
      attributes.emplace_back().name = name;
    }
  }
  return attributes;
}

bool isFileName(const AttributeDescription& attribute) {
  return attribute.kind == AttributeKind::text &&
         (attribute.name == u"file" || attribute.name == u"fileName");
}

// For the eye: a sentence.
QString sentence(const QString& meaning) {
  return meaning.isEmpty() ? meaning : meaning[0].toUpper() + meaning.mid(1) + u'.';
}

}  // namespace

ActionForm::ActionForm(ActionItem& action, ActionItem& prototype, GlobalParameters& parameters,
                       QWidget* parent)
    : ElementEditor(parent),
      m_prototype(prototype),
      m_parameters(parameters),
      m_isWriter(action.endpoint() == ActionItem::Endpoint::writer),
      m_element(EditedElement::of(action)),
      m_faults(new InfoLine) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 4, 12, 4);
  layout->setSpacing(12);
  layout->addWidget(m_faults);
  addFields(descriptionOf(action));
  if (m_tree == nullptr) {
    layout->addStretch();
  }
}

ActionForm::~ActionForm() = default;

void ActionForm::addFields(const ActionDescription* description) {
  auto* form = new QFormLayout;
  form->setHorizontalSpacing(12);
  form->setVerticalSpacing(8);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  for (const AttributeDescription& attribute :
       description == nullptr ? attributesIn(m_element) : description->attributes) {
    addField(*form, attribute);
  }
  auto* page = static_cast<QVBoxLayout*>(layout());
  page->addLayout(form);
  if (m_fields.empty() && (description == nullptr || description->children.empty())) {
    page->addWidget(new QLabel(tr("This action has no settings.")));
  }
  if (description != nullptr && !description->children.empty()) {
    m_tree = new ElementTree(description->children);
    m_tree->setElements(m_element.children);
    connect(m_tree, &ElementTree::changed, this, &ActionForm::commit);
    page->addWidget(m_tree, 1);
  }
}

void ActionForm::addField(QFormLayout& form, const AttributeDescription& attribute) {
  const QString value = m_element.shownValue(attribute);
  if (isFileName(attribute)) {
    addFileField(form, attribute);
  } else if (attribute.kind == AttributeKind::flag && (value == u"0" || value == u"1")) {
    auto* box = new QCheckBox;
    box->setChecked(value == u"1");
    box->setMinimumHeight(QLineEdit().sizeHint().height());  // the label stands beside it
    connect(box, &QCheckBox::toggled, this, &ActionForm::commit);
    m_fields.push_back({attribute, [box] {
                          return box->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
                        }});
    addRow(form, attribute, box, box);
  } else {
    auto* line = new QLineEdit(value);
    completeParameters(*line, m_parameters.values().keys());
    if (attribute.kind != AttributeKind::text) {
      line->setPlaceholderText(valuesInWords(attribute));
    }
    connect(line, &QLineEdit::editingFinished, this, &ActionForm::commit);
    m_fields.push_back({attribute, [line] { return line->text(); }});
    addRow(form, attribute, line, line);
  }
}

void ActionForm::addFileField(QFormLayout& form, const AttributeDescription& attribute) {
  auto* path = new PathField(m_isWriter ? PathField::Mode::saveFile : PathField::Mode::openFile);
  path->setPath(m_element.shownValue(attribute));
  path->setFolder(m_parameters.workingDir());
  path->setParameters(m_parameters.values().keys());
  connect(path, &PathField::pathChanged, this, &ActionForm::commit);
  m_fields.push_back({attribute, [path] { return path->path(); }});
  addRow(form, attribute, path, path->lineEdit());
}

// The attribute's name as the graph file has it, and its meaning below the field.
void ActionForm::addRow(QFormLayout& form, const AttributeDescription& attribute, QWidget* field,
                        QWidget* buddy) {
  buddy->setObjectName(attribute.name);
  buddy->setAccessibleName(attribute.name);
  const QString values = valuesInWords(attribute);
  const QString meaning = sentence(attribute.meaning);
  const QString allowed = values.isEmpty() ? QString() : tr("Values: %1.").arg(values);
  buddy->setAccessibleDescription(meaning);
  buddy->setToolTip(attribute.defaultText.isNull()
                        ? allowed
                        : tr("%1 Default: \"%2\".").arg(allowed, attribute.defaultText).trimmed());
  auto* label = new QLabel(attribute.name);
  label->setBuddy(buddy);
  auto* explanation = new QLabel(meaning);
  explanation->setWordWrap(true);
  explanation->setTextFormat(Qt::PlainText);
  auto* column = new QVBoxLayout;
  column->setSpacing(4);
  column->addWidget(field);
  column->addWidget(explanation);
  form.addRow(label, column);
}

EditedElement ActionForm::typed() const {
  EditedElement element = m_element;
  for (const Field& field : m_fields) {
    element.setShownValue(field.attribute, field.text());
  }
  if (m_tree != nullptr) {
    element.children = m_tree->elements();
  }
  return element;
}

void ActionForm::commit() {
  const EditedElement element = typed();
  const QByteArray document = element.document();
  const auto node = parseXml(document);
  if (!node) {
    return;
  }
  const ElementCheck check = checkElement(*node, m_prototype, m_parameters);
  showFaults(check, *m_faults);
  if (check.canBeUsed() && document != m_element.document()) {
    m_element = element;
    emit committed(document);
  }
}

QMap<QString, QString> ActionForm::uncommittedState() const {
  QMap<QString, QString> texts;
  for (const Field& field : m_fields) {
    if (field.text() != m_element.shownValue(field.attribute)) {
      texts[field.attribute.name] = field.text();
    }
  }
  return texts;
}

void ActionForm::restoreUncommitted(const QMap<QString, QString>& texts) {
  for (const Field& field : m_fields) {
    auto* line = findChild<QLineEdit*>(field.attribute.name);
    if (line != nullptr && texts.contains(field.attribute.name)) {
      line->setText(texts.value(field.attribute.name));
    }
  }
}

}  // namespace kelvarin
