#include "ui/panels/time_parameters_panel.h"

#include <limits>

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

#include "ui/panels/form_layout.h"
#include "ui/panels/time_example.h"

namespace kelvarin {

namespace {

QLabel* exampleLabel(const char* name, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(QLatin1String(name));
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

template <typename Control>
Control* named(Control* control, const char* name) {
  control->setObjectName(QLatin1String(name));
  return control;
}

// The items carry their values as data; a value that is none of theirs gets an item of its own.
void choose(QComboBox* box, int value) {
  if (box->findData(value) < 0) {
    box->addItem(TimeParametersPanel::tr("%1 (unknown)").arg(value), value);
  }
  box->setCurrentIndex(box->findData(value));
}

}  // namespace

class TimeParametersPanel::Parts {
 public:
  explicit Parts(TimeParametersPanel& panel);

  void fill();
  void showExample();

  TimeParameters parameters;
  std::function<QString(const QString&)> expand;

 private:
  QGroupBox* nowGroup();
  QGroupBox* elapsedGroup();
  QGroupBox* formatGroup();
  QGroupBox* seedGroup();
  QWidget* zeroChoice(QRadioButton*& null, QRadioButton*& zero, const char* suffix,
                      int TimeParameters::* member, const QString& name);
  QCheckBox* checkBox(const char* name, const QString& text, bool TimeParameters::* member);
  void addUnits();
  void addFormats();

  template <typename Value>
  void set(Value TimeParameters::* member, Value value) {
    if (m_isFilling || parameters.*member == value) {
      return;
    }
    parameters.*member = value;
    fill();
    emit m_panel.changed();
  }

  // A field that loses the focus while it is destroyed may signal after this object's end.
  QObject m_lifetime;
  TimeParametersPanel& m_panel;
  bool m_isFilling = false;
  QCheckBox* m_addNow;
  QCheckBox* m_addNowDate;
  QComboBox* m_unit;
  QLineEdit* m_referenceTime;
  QCheckBox* m_utc;
  QCheckBox* m_utc2;
  QRadioButton* m_earlyToNull;
  QRadioButton* m_earlyToReference;
  QRadioButton* m_unreadableToNull;
  QRadioButton* m_unreadableToReference;
  QCheckBox* m_emptyToNull;
  QComboBox* m_formatType;
  QLineEdit* m_format;
  QSpinBox* m_seed;
  QLabel* m_formatExample;
  QLabel* m_referenceExample;
};

TimeParametersPanel::Parts::Parts(TimeParametersPanel& panel) : m_panel(panel) {
  auto* layout = new QVBoxLayout(&panel);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kGroupSpacing);
  layout->addWidget(nowGroup());
  layout->addWidget(elapsedGroup());
  layout->addWidget(formatGroup());
  layout->addWidget(seedGroup());
  fill();
}

QCheckBox* TimeParametersPanel::Parts::checkBox(const char* name, const QString& text,
                                                bool TimeParameters::* member) {
  auto* box = named(new QCheckBox(text, &m_panel), name);
  connect(box, &QCheckBox::toggled, &m_lifetime, [this, member](bool isOn) { set(member, isOn); });
  return box;
}

QGroupBox* TimeParametersPanel::Parts::nowGroup() {
  auto* group = new QGroupBox(tr("Current Time"), &m_panel);
  auto* layout = new QVBoxLayout(group);
  m_addNow = checkBox("cbAddNow", tr("add '_now' as input var"), &TimeParameters::addNow);
  m_addNow->setToolTip(tr("_now is the time elapsed since the reference time, a number."));
  m_addNowDate = checkBox("cbAddNowDate", tr("add '_nowS' as input var"), &TimeParameters::addNowS);
  m_addNowDate->setToolTip(tr("_nowS is the current time as a text in the date format."));
  layout->addWidget(m_addNow);
  layout->addWidget(m_addNowDate);
  return group;
}

void TimeParametersPanel::Parts::addUnits() {
  const QStringList units{tr("Seconds"), tr("Minutes"), tr("Hours"), tr("Days"), tr("Weeks")};
  for (int unit = 0; unit < units.size(); ++unit) {
    m_unit->addItem(units[unit], unit);
  }
}

QWidget* TimeParametersPanel::Parts::zeroChoice(QRadioButton*& null, QRadioButton*& zero,
                                                const char* suffix, int TimeParameters::* member,
                                                const QString& name) {
  auto* choice = new QWidget(&m_panel);
  choice->setAccessibleName(name);
  auto* layout = new QVBoxLayout(choice);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kControlSpacing);
  null = new QRadioButton(tr("null"), choice);
  null->setObjectName(QStringLiteral("rbETToNull") + QLatin1String(suffix));
  zero = new QRadioButton(tr("the reference time (0)"), choice);
  zero->setObjectName(QStringLiteral("rbETToRefTime") + QLatin1String(suffix));
  layout->addWidget(null);
  layout->addWidget(zero);
  connect(zero, &QRadioButton::toggled, &m_lifetime, [this, member](bool isZero) {
    if (isZero != (parameters.*member != 0)) {  // a flag other than 1 stays what it is
      set(member, isZero ? 1 : 0);
    }
  });
  return choice;
}

QGroupBox* TimeParametersPanel::Parts::elapsedGroup() {
  auto* group = new QGroupBox(tr("Elapsed Times"), &m_panel);
  auto* form = wrappingForm(group);
  m_unit = named(new QComboBox(group), "cbETUnit");
  addUnits();
  connect(m_unit, &QComboBox::currentIndexChanged, &m_lifetime,
          [this] { set(&TimeParameters::elapsedTimeUnit, m_unit->currentData().toInt()); });
  m_referenceTime = named(new QLineEdit(group), "leRefTime");
  m_referenceTime->setPlaceholderText(QStringLiteral("20000101 00:00:00"));
  m_referenceTime->setToolTip(
      tr("The instant from which elapsed times count, as "
         "yyyyMMdd hh:mm:ss."));
  connect(m_referenceTime, &QLineEdit::textEdited, &m_lifetime,
          [this](const QString& text) { set(&TimeParameters::referenceTime, text); });
  m_utc =
      checkBox("cbUTC", tr("It is a time in UTC (otherwise: local time)"), &TimeParameters::isUTC);
  m_referenceExample = exampleLabel("lbReferenceExample", group);
  m_emptyToNull = checkBox("cbEmptyETToNull", tr("An empty date input is null (otherwise: 0)"),
                           &TimeParameters::emptyETToNull);
  form->addRow(tr("Elapsed Time Unit:"), m_unit);
  form->addRow(tr("Reference Time:"), m_referenceTime);
  form->addRow(m_utc);
  form->addRow(m_referenceExample);
  const QString early = tr("A date before the reference time becomes:");
  const QString unreadable = tr("A date that cannot be read becomes:");
  form->addRow(
      early, zeroChoice(m_earlyToNull, m_earlyToReference, "", &TimeParameters::castToET1, early));
  form->addRow(unreadable, zeroChoice(m_unreadableToNull, m_unreadableToReference, "2",
                                      &TimeParameters::castToET2, unreadable));
  form->addRow(m_emptyToNull);
  return group;
}

void TimeParametersPanel::Parts::addFormats() {
  const QStringList formats{tr("as written below"),          tr("system: short date"),
                            tr("system: long date"),         tr("system: short time"),
                            tr("system: long time"),         tr("system: short date and time"),
                            tr("system: long date and time")};
  for (int type = 0; type < formats.size(); ++type) {
    m_formatType->addItem(formats[type], type);
  }
}

QGroupBox* TimeParametersPanel::Parts::formatGroup() {
  auto* group = new QGroupBox(tr("Date Texts"), &m_panel);
  auto* form = wrappingForm(group);
  m_formatType = named(new QComboBox(group), "cbDateFormat");
  addFormats();
  connect(m_formatType, &QComboBox::currentIndexChanged, &m_lifetime,
          [this] { set(&TimeParameters::dateFormatType, m_formatType->currentData().toInt()); });
  m_format = named(new QLineEdit(group), "leDateFormat");
  m_format->setPlaceholderText(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
  m_format->setToolTip(
      tr("Years are yyyy, months MM, days dd, hours hh, minutes mm, seconds ss, "
         "a time zone t."));
  connect(m_format, &QLineEdit::textEdited, &m_lifetime,
          [this](const QString& text) { set(&TimeParameters::dateFormat, text); });
  m_utc2 =
      checkBox("cbUTC2", tr("Dates are in UTC (otherwise: local time)"), &TimeParameters::isUTC);
  m_formatExample = exampleLabel("lbFormatExample", group);
  form->addRow(tr("Date Format:"), m_formatType);
  form->addRow(tr("Own Format:"), m_format);
  form->addRow(m_utc2);
  form->addRow(m_formatExample);
  return group;
}

QGroupBox* TimeParametersPanel::Parts::seedGroup() {
  auto* group = new QGroupBox(tr("Random Numbers"), &m_panel);
  auto* form = wrappingForm(group);
  m_seed = named(new QSpinBox(group), "sbSeed");
  m_seed->setRange(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
  connect(m_seed, &QSpinBox::valueChanged, &m_lifetime,
          [this](int seed) { set(&TimeParameters::seed, seed); });
  form->addRow(tr("seed (-1=always a different seed)="), m_seed);
  return group;
}

void TimeParametersPanel::Parts::fill() {
  m_isFilling = true;
  m_addNow->setChecked(parameters.addNow);
  m_addNowDate->setChecked(parameters.addNowS);
  choose(m_unit, parameters.elapsedTimeUnit);
  setTextKeepingCursor(*m_referenceTime, parameters.referenceTime);
  m_utc->setChecked(parameters.isUTC);
  m_utc2->setChecked(parameters.isUTC);
  (parameters.castToET1 != 0 ? m_earlyToReference : m_earlyToNull)->setChecked(true);
  (parameters.castToET2 != 0 ? m_unreadableToReference : m_unreadableToNull)->setChecked(true);
  m_emptyToNull->setChecked(parameters.emptyETToNull);
  choose(m_formatType, parameters.dateFormatType);
  setTextKeepingCursor(*m_format, parameters.dateFormat);
  m_format->setEnabled(parameters.dateFormatType == 0);
  m_seed->setValue(parameters.seed);
  m_isFilling = false;
  showExample();
}

void TimeParametersPanel::Parts::showExample() {
  TimeParameters expanded = parameters;
  if (expand) {
    expanded.referenceTime = expand(expanded.referenceTime);
    expanded.dateFormat = expand(expanded.dateFormat);
  }
  const TimeExample example = timeExample(expanded);
  m_formatExample->setText(example.dateText);
  m_referenceExample->setText(example.reference);
}

TimeParametersPanel::TimeParametersPanel(QWidget* parent)
    : QWidget(parent), m_parts(std::make_unique<Parts>(*this)) {}

TimeParametersPanel::~TimeParametersPanel() = default;

const TimeParameters& TimeParametersPanel::parameters() const {
  return m_parts->parameters;
}

void TimeParametersPanel::setParameters(const TimeParameters& parameters) {
  m_parts->parameters = parameters;
  m_parts->fill();
}

void TimeParametersPanel::setExpansion(std::function<QString(const QString&)> expand) {
  m_parts->expand = std::move(expand);
  m_parts->showExample();
}

}  // namespace kelvarin
