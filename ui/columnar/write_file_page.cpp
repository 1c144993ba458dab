#include "ui/columnar/write_file_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "columnar/actions/split_names.h"
#include "host/files/split_values.h"
#include "host/widgets/info_line.h"
#include "host/widgets/path_field.h"
#include "ui/columnar/column_box.h"
#include "ui/columnar/columnar_editor.h"
#include "ui/columnar/committed_verdict.h"
#include "ui/panels/wrapping_choice.h"
#include "ui/widgets/k_plain_text_edit.h"

namespace kelvarin {

namespace {

constexpr int kLargestSegment = 100'000'000;  // MiB
const QString kSplitValue = QStringLiteral("SplitVal");
const QString kDefaultNaming = QStringLiteral("\"+SplitVal+\"");
const QString kDefaultName = QStringLiteral("\"+SplitVal+\".cgel_kelvarin");

Formula namingFormula(const ActionItem& action, const QString& sample) {
  Formula formula;
  formula.use = ResultUse::anyValue;
  formula.output.meta = MetaTypeColumn::text;
  InputVariable value;
  value.label = kSplitValue;
  value.isNumber = false;
  value.text = sample;
  formula.variables = {value};
  formula.columns.isKnown = true;
  if (action.globalParameters() != nullptr) {
    formula.parameters = *action.globalParameters();
  }
  return formula;
}

}  // namespace

WriteFilePage::WriteFilePage(const ActionItem& action, QWidget* parent)
    : SettingsPage(parent), m_action(action) {
  addFileGroup();
  addSplitGroup();
  addExampleGroup();
  pageLayout()->addStretch();
}

void WriteFilePage::addFileGroup() {
  QGroupBox* box = group(tr("File"));
  m_file = new PathField(PathField::Mode::saveFile, this);
  watch(m_file->lineEdit(), "leFile", tr("File to write"));
  m_file->setCaption(tr("Choose where the columnar file goes"));
  m_file->setFilter(tr("Columnar files (*.cgel_kelvarin);;All files (*)"));
  auto* label = new QLabel(tr("&Write the table to:"), box);
  label->setBuddy(m_file->lineEdit());
  m_createDirectory = checkBox("cbCreateDir", tr("&Create its folder where it is missing"));
  box->layout()->addWidget(label);
  box->layout()->addWidget(m_file);
  box->layout()->addWidget(choiceRow(m_createDirectory));
  connect(m_file, &PathField::edited, this, [this](const QString& text) { m_typed = text; });
  connect(m_file, &PathField::pathChanged, this, &WriteFilePage::takePath);
}

// A chosen name becomes relative, a typed one stays as it is.
void WriteFilePage::takePath(const QString& path) {
  if (path != m_typed && m_action.globalParameters() != nullptr) {
    m_file->setPath(relativeBelow(m_action.globalParameters()->dataDirWrite(), path));
  }
  emit changed();
}

void WriteFilePage::addSplitGroup() {
  QGroupBox* box = group(tr("Number of files"));
  m_oneFile = radioButton("rbOneFile", tr("&One file"));
  m_bySize = radioButton("rbSplitBySize",
                         tr("Split into several Kelvarin Gel files. Each file is &maximum:"));
  m_byValue = radioButton("rbSplitByValue", tr("One file for each value of the col&umn:"));
  makeExclusive({m_oneFile, m_bySize, m_byValue}, box);
  m_segmentSize = spinBox("sbSegmentSize", 0, kLargestSegment, tr("Largest size of a file"));
  m_segmentSize->setSuffix(tr(" MiB"));
  m_splitColumn = columnBox("leSplitVar", tr("Column to split on"), box);
  connect(m_splitColumn, &QComboBox::activated, this, &WriteFilePage::changed);
  connect(m_splitColumn->lineEdit(), &QLineEdit::editingFinished, this, &WriteFilePage::changed);
  box->layout()->addWidget(choiceRow(m_oneFile));
  box->layout()->addWidget(choiceRow(m_bySize));
  box->layout()->addWidget(indented({m_segmentSize}, box));
  box->layout()->addWidget(choiceRow(m_byValue));
  box->layout()->addWidget(indented({m_splitColumn}, box));
  addNaming(*box);
}

void WriteFilePage::addNaming(const QGroupBox& box) {
  QLayout* layout = box.layout();
  m_advancedNaming = new QCheckBox(this);
  m_advancedNaming->setObjectName(QStringLiteral("cbAdvancedNaming"));
  m_advancedNaming->setToolTip(tr("SplitVal is the value of the column, as a text."));
  putBesideText(*m_advancedNaming, tr("&Name the files by an expression over SplitVal:"), this);
  connect(m_advancedNaming, &QCheckBox::clicked, this, &WriteFilePage::toggleNaming);
  m_naming = new ExpressionField(this);
  m_naming->setHistoryKey(QStringLiteral("naming"));
  m_naming->setAccessibleName(tr("Naming expression"));
  m_naming->setValuesShown(false);
  m_naming->editor()->setMaximumHeight(5 * fontMetrics().height());
  m_namingNote = new InfoLine(this);
  layout->addWidget(choiceRow(m_advancedNaming));
  layout->addWidget(m_naming);
  layout->addWidget(m_namingNote);
  connectNaming();
}

void WriteFilePage::connectNaming() {
  m_verdict = new CommittedVerdict(*m_naming, *this);
  connect(m_verdict, &CommittedVerdict::fieldWanted, this, &WriteFilePage::pageWanted);
  connect(m_verdict, &CommittedVerdict::checkWanted, this, [this] {
    setNamingExpression();
    m_naming->setFormula(namingFormula(m_action, m_splitValue));
  });
  connect(m_naming, &ExpressionField::helpWanted, this, &WriteFilePage::helpWanted);
  connect(m_naming, &ExpressionField::editingFinished, this, &WriteFilePage::setNamingExpression);
  connect(m_naming, &ExpressionField::answered, this, [this](const FormulaAnswer& answer) {
    showNamingNote();
    if (!m_verdict->isRefused(answer)) {
      emit examplesWanted();
    }
  });
}

std::optional<QString> WriteFilePage::fileWithNaming() const {
  const NamingText text = NamingText::of(m_file->path());
  const QString typed = m_naming->expression().trimmed();
  if (text.expressions.size() != 1 || m_naming->isHidden() || typed == m_loadedNaming.trimmed()) {
    return m_file->path();
  }
  return text.withExpression(typed.isEmpty() ? kSplitValue : typed);
}

QString WriteFilePage::typedFile() const {
  return fileWithNaming().value_or(m_file->path());
}

// A name without an expression gets the default one, and loses it again.
void WriteFilePage::toggleNaming(bool isOn) {
  const QString name = m_file->path();
  if (isOn && NamingText::of(name).expressions.isEmpty()) {
    m_file->setPath(name.isEmpty() ? kDefaultName : insertedBeforeExtension(name, kDefaultNaming));
  } else if (!isOn && name.count(kDefaultNaming) == 1) {
    m_file->setPath(name == kDefaultName ? QString() : QString(name).remove(kDefaultNaming));
  }
  emit changed();
}

void WriteFilePage::setNamingExpression() {
  const QString file = typedFile();
  if (file != m_file->path()) {
    m_verdict->expect(NamingText::of(file).expressions.first());
  }
  emit changed();
}

void WriteFilePage::addExampleGroup() {
  QGroupBox* box = group(tr("Resulting names"));
  m_examples = new QLabel(box);
  m_examples->setObjectName(QStringLiteral("examples"));
  m_examples->setTextFormat(Qt::PlainText);
  m_examples->setWordWrap(true);
  m_examples->setTextInteractionFlags(Qt::TextSelectableByMouse);
  m_exampleNote = new InfoLine(box);
  m_exampleNote->setObjectName(QStringLiteral("exampleNote"));
  box->layout()->addWidget(m_examples);
  box->layout()->addWidget(m_exampleNote);
}

void WriteFilePage::load(const WriteColumnarSettings& settings) {
  using Split = WriteColumnarSettings::Split;
  const Split split = settings.splitKind();
  m_file->setPath(settings.file);
  if (const GlobalParameters* parameters = m_action.globalParameters()) {
    m_file->setParameters(parameters->values().keys());
    m_file->setFolder(parameters->dataDirWrite());
  }
  m_createDirectory->setChecked(settings.createDirectory);
  m_oneFile->setChecked(split == Split::none);
  m_bySize->setChecked(split == Split::bySize);
  m_byValue->setChecked(split == Split::byValue);
  m_segmentSize->setValue(settings.segmentSize.value);
  m_segmentSize->setEnabled(split == Split::bySize);
  showColumn(*m_splitColumn, settings.splitColumn);
  m_splitColumn->setEnabled(split == Split::byValue);
  showNaming(settings);
}

void WriteFilePage::showNaming(const WriteColumnarSettings& settings) {
  const bool isByValue = settings.splitKind() == WriteColumnarSettings::Split::byValue;
  const QStringList expressions = NamingText::of(settings.file).expressions;
  const bool isShown = isByValue && settings.advancedNaming;
  m_advancedNaming->setChecked(settings.advancedNaming);
  choiceRow(m_advancedNaming)->setEnabled(isByValue);
  m_naming->setVisible(isShown && expressions.size() == 1);
  if (isShown && expressions.size() == 1) {
    if (fileWithNaming()) {
      m_naming->setExpression(expressions.first());
    }
    m_loadedNaming = expressions.first();
    m_naming->setFormula(namingFormula(m_action, m_splitValue));
  }
  showNamingNote();
}

void WriteFilePage::showNamingNote() {
  const auto count = NamingText::of(m_file->path()).expressions.size();
  if (!m_byValue->isChecked() || !m_advancedNaming->isChecked()) {
    m_namingNote->clear();
  } else if (count == 0) {
    m_namingNote->setMessage(
        Severity::warning,
        tr("The name has no expression. Put %1 where the value belongs.").arg(kDefaultNaming));
  } else if (count > 1) {
    m_namingNote->setMessage(
        Severity::information,
        tr("The name has %1 expressions. Change them in the name itself.").arg(count));
  } else if (!fileWithNaming()) {
    m_namingNote->setMessage(
        Severity::warning,
        tr("The name keeps its old expression: no text in the new one can begin or end with a "
           "plus sign, since that is where expressions in names begin and end."));
  } else {
    m_namingNote->clear();
  }
}

void WriteFilePage::store(WriteColumnarSettings& settings) const {
  settings.file = typedFile();
  settings.createDirectory = m_createDirectory->isChecked();
  const auto split = m_bySize->isChecked()    ? WriteColumnarSettings::Split::bySize
                     : m_byValue->isChecked() ? WriteColumnarSettings::Split::byValue
                                              : WriteColumnarSettings::Split::none;
  if (split != settings.splitKind()) {
    settings.split = static_cast<int>(split);
  }
  storeNumber(*m_segmentSize, settings.segmentSize.value);
  settings.splitColumn = m_splitColumn->currentText();
  settings.advancedNaming = m_advancedNaming->isChecked();
}

void WriteFilePage::setColumns(const PinColumns& columns) {
  offerColumns(*m_splitColumn, columns);
}

void WriteFilePage::setSplitValue(const QString& value) {
  if (value != m_splitValue) {
    m_splitValue = value;
    m_naming->setFormula(namingFormula(m_action, m_splitValue));
  }
}

void WriteFilePage::showExamples(const QStringList& names, const ShownText& note) {
  m_examples->setText(names.join(u'\n'));
  m_examples->setVisible(!names.isEmpty());
  if (note.text.isEmpty()) {
    m_exampleNote->clear();
  } else {
    m_exampleNote->setMessage(note.severity, note.text);
  }
}

}  // namespace kelvarin
