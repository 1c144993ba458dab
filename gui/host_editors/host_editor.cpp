#include "gui/host_editors/host_editor.h"

#include <algorithm>
#include <utility>

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>

#include "gui/forms/element_check.h"
#include "gui/host_editors/choice_field.h"
#include "host/widgets/info_line.h"
#include "host/widgets/parameter_completion.h"
#include "host/widgets/path_field.h"

namespace kelvarin {

namespace {

constexpr int kLabelSpacing = 12;

}  // namespace

QFormLayout* newForm() {
  auto* form = new QFormLayout;
  form->setRowWrapPolicy(QFormLayout::WrapLongRows);
  form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  form->setHorizontalSpacing(0);  // labels have it: a form does not count it when it wraps rows
  form->setVerticalSpacing(8);
  return form;
}

QGroupBox* newGroup(const QString& title) {
  auto* group = new QGroupBox(title);
  auto* layout = new QVBoxLayout(group);
  layout->setContentsMargins(12, 8, 12, 12);
  layout->setSpacing(8);
  return group;
}

HostEditor::HostEditor(ActionItem& action, QWidget* parent)
    : ElementEditor(parent),
      m_parameters(action.globalParameters()),
      m_element(EditedElement::of(action)),
      m_document(m_element.document()),
      m_page(new QVBoxLayout(this)),
      m_faults(new InfoLine) {
  if (m_parameters == nullptr) {
    m_noParameters = std::make_unique<GlobalParameters>();
    m_parameters = m_noParameters.get();
  }
  m_action.reset(action.clone(m_parameters));
  m_page->setContentsMargins(0, 4, 12, 4);
  m_page->setSpacing(12);
  m_faults->setObjectName(QStringLiteral("faults"));
  m_page->addWidget(m_faults);
}

HostEditor::~HostEditor() = default;

const AttributeDescription& HostEditor::described(const QString& attribute) const {
  const auto& attributes = descriptionOf(*m_action)->attributes;
  return *std::ranges::find(attributes, attribute, &AttributeDescription::name);
}

PathField* HostEditor::addPath(QFormLayout& form, const QString& attribute, const QString& label) {
  const bool isWriter = m_action->endpoint() == ActionItem::Endpoint::writer;
  auto* field = new PathField(isWriter ? PathField::Mode::saveFile : PathField::Mode::openFile);
  const QString folder = isWriter ? m_parameters->dataDirWrite() : m_parameters->dataDirRead();
  field->setFolder(folder);
  field->setParameters(m_parameters->values().keys());
  m_fields.push_back({described(attribute), [field] { return field->path(); },
                      [field](const QString& text) { field->setPath(text); }});
  connect(field, &PathField::edited, this, [this](const QString& path) { m_typedPath = path; });
  connect(field, &PathField::pathChanged, this, [this, field, folder](const QString& path) {
    // A chosen name becomes relative, a typed one stays as it is.
    if (path != m_typedPath && folder == m_parameters->workingDir()) {
      field->setPath(m_parameters->contractFile(path));
    }
    commit();
  });
  addField(form, attribute, label, field, field->lineEdit());
  return field;
}

ChoiceField* HostEditor::addChoice(QFormLayout& form, const QString& attribute,
                                   const QString& label, ChoiceField* field) {
  m_fields.push_back({described(attribute), [field] { return field->value(); },
                      [field](const QString& text) { field->setValue(text); }});
  connect(field, &ChoiceField::valueChanged, this, &HostEditor::commit);
  addField(form, attribute, label, field, field);
  return field;
}

QLineEdit* HostEditor::addLine(QFormLayout& form, const QString& attribute, const QString& label) {
  auto* field = new QLineEdit;
  completeParameters(*field, m_parameters->values().keys());
  m_fields.push_back({described(attribute), [field] { return field->text(); },
                      [field](const QString& text) { field->setText(text); }});
  connect(field, &QLineEdit::editingFinished, this, &HostEditor::commit);
  addField(form, attribute, label, field, field);
  return field;
}

void HostEditor::addFlag(QFormLayout& form, const QString& attribute, const QString& label) {
  const QString value = m_element.shownValue(described(attribute));
  if (value != u"0" && value != u"1") {
    addLine(form, attribute, label + u':');
    return;
  }
  auto* box = new QCheckBox(label);
  const auto show = [box](const QString& text) {
    const QSignalBlocker isSilent(box);
    box->setChecked(text == u"1");
  };
  m_fields.push_back(
      {described(attribute),
       [box] { return box->isChecked() ? QStringLiteral("1") : QStringLiteral("0"); }, show});
  connect(box, &QCheckBox::toggled, this, &HostEditor::commit);
  addField(form, attribute, {}, box, box);
}

void HostEditor::addField(QFormLayout& form, const QString& attribute, const QString& label,
                          QWidget* widget, QWidget* buddy) {
  buddy->setObjectName(attribute);
  buddy->setToolTip(described(attribute).meaning);
  m_fields.back().setText(m_element.shownValue(described(attribute)));
  if (label.isEmpty()) {
    form.addRow(widget);
    return;
  }
  auto* text = new QLabel(label);
  text->setContentsMargins(0, 0, kLabelSpacing, 0);
  text->setBuddy(buddy);
  QString name = label;
  buddy->setAccessibleName(name.remove(u'&').remove(u':'));
  form.addRow(text, widget);
}

void HostEditor::setField(const QString& attribute, const QString& value) {
  for (const Field& field : m_fields) {
    if (field.attribute.name == attribute) {
      field.setText(value);
    }
  }
}

EditedElement HostEditor::typed() const {
  EditedElement element = m_element;
  for (const Field& field : m_fields) {
    element.setShownValue(field.attribute, field.text());
  }
  collect(element);
  return element;
}

void HostEditor::commit() {
  commitTyped();
}

bool HostEditor::commitTyped() {
  EditedElement element = typed();
  const QByteArray document = element.document();
  if (document == m_document) {
    m_faults->clear();
    return true;
  }
  const auto node = parseXml(document);
  if (!node) {
    return false;
  }
  ElementCheck check = checkElement(*node, *m_action, *m_parameters);
  showFaults(check, *m_faults);
  if (!check.canBeUsed()) {
    return false;
  }
  m_element = std::move(element);
  m_document = document;
  m_action = std::move(check.action);
  emit committed(document);
  settingsChanged();
  return true;
}

QMap<QString, QString> HostEditor::uncommittedState() const {
  QMap<QString, QString> texts;
  for (const Field& field : m_fields) {
    if (field.text() != m_element.shownValue(field.attribute)) {
      texts[field.attribute.name] = field.text();
    }
  }
  return texts;
}

void HostEditor::restoreUncommitted(const QMap<QString, QString>& texts) {
  for (const Field& field : m_fields) {
    if (const auto text = texts.find(field.attribute.name); text != texts.end()) {
      field.setText(*text);
    }
  }
}

}  // namespace kelvarin
