#include "ui/help_browser/interface_math_parser_help.h"

#include <algorithm>
#include <string_view>

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSplitter>
#include <QStackedWidget>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "ui/help_browser/example_trial.h"
#include "ui/help_browser/help_details.h"

namespace kelvarin {

namespace {

constexpr int kSpacing = 8;

// An item of an entry holds its index in languageEntries(); a heading holds none.
constexpr int kEntryRole = Qt::UserRole;

const LanguageEntry* entryOf(const QTreeWidgetItem* item) {
  const QVariant index = item == nullptr ? QVariant() : item->data(0, kEntryRole);
  return index.isValid() ? &languageEntries()[index.toUInt()] : nullptr;
}

QTreeWidgetItem* itemOf(const LanguageEntry& entry) {
  auto* item = new QTreeWidgetItem;
  const QString comment = translatedHelp(entry.entry->comment);
  item->setText(0, QString::fromUtf8(entry.entry->signature));
  item->setText(1, comment);
  item->setToolTip(1, comment);
  item->setData(0, kEntryRole, static_cast<uint>(&entry - languageEntries().data()));
  return item;
}

QTreeWidgetItem* headingOf(const QString& text) {
  auto* item = new QTreeWidgetItem({text});
  QFont font = QApplication::font();
  font.setBold(true);
  item->setFont(0, font);
  return item;
}

// Of the first column, so that every signature can be read.
int signatureWidth(const QTreeWidget& tree) {
  int width = 0;
  for (const LanguageEntry& entry : languageEntries()) {
    width = std::max(
        width, tree.fontMetrics().horizontalAdvance(QString::fromUtf8(entry.entry->signature)));
  }
  return width + 2 * tree.indentation() + 2 * kSpacing;
}

QTreeWidgetItem* itemWith(const QTreeWidget& tree, const LanguageEntry& entry) {
  for (int group = 0; group < tree.topLevelItemCount(); ++group) {
    QTreeWidgetItem* heading = tree.topLevelItem(group);
    for (int i = 0; i < heading->childCount(); ++i) {
      if (entryOf(heading->child(i)) == &entry) {
        return heading->child(i);
      }
    }
  }
  return nullptr;
}

}  // namespace

Interface_mathParserHelp::Interface_mathParserHelp(QWidget* parent)
    : QWidget(parent), m_search(translatedHelp) {
  setObjectName(QStringLiteral("Interface_mathParserHelp"));
  makeSearch();
  m_functions = makeTree(QStringLiteral("twFunctions"), tr("Functions by group"));
  m_results = makeTree(QStringLiteral("twResults"), tr("Results of the search"));
  fillFunctions();
  m_trees = new QStackedWidget;
  m_trees->addWidget(m_functions);
  m_trees->addWidget(m_results);

  auto* label = new QLabel(QCoreApplication::translate("Help", kParametersRemark));
  label->setObjectName(QStringLiteral("lblParameters"));
  label->setWordWrap(true);

  auto* splitter = new QSplitter(Qt::Vertical);
  splitter->setChildrenCollapsible(false);
  splitter->addWidget(m_trees);
  splitter->addWidget(makeDetails());
  splitter->setStretchFactor(0, 3);
  splitter->setStretchFactor(1, 2);

  auto* search = new QHBoxLayout;
  search->setSpacing(kSpacing);
  auto* searchLabel = new QLabel(tr("&Search:"));
  searchLabel->setBuddy(m_query);
  search->addWidget(searchLabel);
  search->addWidget(m_query, 1);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kSpacing, kSpacing, kSpacing, kSpacing);
  layout->setSpacing(kSpacing);
  layout->addLayout(search);
  layout->addWidget(label);
  layout->addWidget(m_remark);
  layout->addWidget(splitter, 1);
  showSelected();
}

void Interface_mathParserHelp::makeSearch() {
  m_query = new QLineEdit;
  m_query->setObjectName(QStringLiteral("leSearch"));
  m_query->setPlaceholderText(tr("round, days between, IFNULL"));
  m_query->setToolTip(
      tr("A name, words of what it does, or its name in spreadsheets and databases"));
  m_query->setClearButtonEnabled(true);
  m_query->installEventFilter(this);
  connect(m_query, &QLineEdit::textChanged, this, &Interface_mathParserHelp::search);
  m_remark = new QLabel;
  m_remark->setObjectName(QStringLiteral("lblRemark"));
  m_remark->setTextFormat(Qt::PlainText);
  m_remark->setWordWrap(true);
  m_remark->hide();
}

QTreeWidget* Interface_mathParserHelp::makeTree(const QString& objectName,
                                                const QString& accessibleName) {
  auto* tree = new QTreeWidget;
  tree->setObjectName(objectName);
  tree->setAccessibleName(accessibleName);
  tree->setHeaderLabels({tr("Functions"), tr("Comments")});
  tree->setUniformRowHeights(true);
  tree->setTabKeyNavigation(false);
  tree->header()->resizeSection(0, signatureWidth(*tree));
  tree->setExpandsOnDoubleClick(true);
  connect(tree, &QTreeWidget::currentItemChanged, this, &Interface_mathParserHelp::showSelected);
  connect(tree, &QTreeWidget::itemDoubleClicked, this, &Interface_mathParserHelp::insert);
  tree->installEventFilter(this);
  return tree;
}

void Interface_mathParserHelp::fillFunctions() {
  const char* group = nullptr;
  QTreeWidgetItem* heading = nullptr;
  for (const LanguageEntry& entry : languageEntries()) {
    if (isFurther(entry)) {
      break;
    }
    if (entry.group != group) {
      group = entry.group;
      heading = headingOf(translatedHelp(group));
      m_functions->addTopLevelItem(heading);
    }
    heading->addChild(itemOf(entry));
  }
}

QWidget* Interface_mathParserHelp::makeDetails() {
  auto* widget = new QWidget;
  m_details = new QTextBrowser;
  m_details->setObjectName(QStringLiteral("tbDetails"));
  m_details->setAccessibleName(tr("About the selected entry"));
  m_details->setOpenLinks(false);
  m_details->setTabChangesFocus(false);
  connect(m_details, &QTextBrowser::anchorClicked, this, &Interface_mathParserHelp::follow);
  m_trial = new ExampleTrial;
  auto* layout = new QVBoxLayout(widget);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kSpacing);
  layout->addWidget(m_details, 1);
  layout->addWidget(m_trial);
  return widget;
}

void Interface_mathParserHelp::follow(const QUrl& link) {
  if (m_shown == nullptr) {
    return;
  }
  const QString target = link.toString();
  if (target.startsWith(kExampleLink)) {
    const std::vector<HelpExample> examples = examplesOf(*m_shown->entry);
    const auto index = target.mid(kExampleLink.size()).toUInt();
    m_trial->setExample(QString::fromUtf8(examples.at(index).expression));
    return;
  }
  emit insertWanted(insertionsOf(*m_shown).value(target.toInt()));
}

QTreeWidget* Interface_mathParserHelp::shownTree() const {
  return m_trees->currentWidget() == m_results ? m_results : m_functions;
}

void Interface_mathParserHelp::addResults(const QString& heading,
                                          const std::vector<const LanguageEntry*>& entries) {
  if (entries.empty()) {
    return;
  }
  QTreeWidgetItem* top = headingOf(heading);
  m_results->addTopLevelItem(top);
  for (const LanguageEntry* entry : entries) {
    top->addChild(itemOf(*entry));
  }
  top->setFirstColumnSpanned(true);
  top->setExpanded(true);
}

void Interface_mathParserHelp::search() {
  const HelpFinds finds = m_search.find(m_query->text());
  const bool isSearching = !m_query->text().trimmed().isEmpty();
  m_trees->setCurrentWidget(isSearching ? m_results : m_functions);
  showRemark(finds);
  m_results->clear();
  std::vector<const LanguageEntry*> listed = finds.entries;
  const auto further = std::stable_partition(
      listed.begin(), listed.end(), [](const LanguageEntry* entry) { return !isFurther(*entry); });
  addResults(finds.areGuesses ? tr("Names that look alike") : tr("Found"),
             {listed.begin(), further});
  addResults(tr("Further names, which the list of functions leaves out"), {further, listed.end()});
  if (!listed.empty()) {
    m_results->setCurrentItem(itemWith(*m_results, *finds.entries.front()));
  }
  showSelected();
}

void Interface_mathParserHelp::showRemark(const HelpFinds& finds) {
  QString remark;
  if (!finds.foreignName.isEmpty()) {
    remark = finds.entries.empty()
                 ? tr("There is no '%1' in expressions.").arg(finds.foreignName)
                 : tr("There is no '%1' in expressions; the first ones below do the same.")
                       .arg(finds.foreignName);
    remark += finds.advice.isEmpty() ? QString() : u' ' + translatedHelp(finds.advice.toUtf8());
  } else if (finds.entries.empty() && !m_query->text().trimmed().isEmpty()) {
    remark = tr("Nothing is found. Try another word, or clear the search to see all groups.");
  }
  m_remark->setText(remark);
  m_remark->setVisible(!remark.isEmpty());
}

void Interface_mathParserHelp::showSelected() {
  const LanguageEntry* entry = entryOf(shownTree()->currentItem());
  if (entry == m_shown && entry != nullptr) {
    return;
  }
  m_shown = entry;
  m_trial->setEnabled(entry != nullptr);
  if (entry == nullptr) {
    m_details->setPlainText(
        tr("Select an entry to read about it. Enter or a double click inserts "
           "it at the cursor of the expression."));
    m_trial->setExample(QString());
    return;
  }
  m_details->setHtml(detailsOf(*entry));
  m_trial->setExample(QString::fromUtf8(entry->entry->example));
}

void Interface_mathParserHelp::insert(const QTreeWidgetItem* item) {
  if (const LanguageEntry* entry = entryOf(item)) {
    emit insertWanted(insertionsOf(*entry).front());
  }
}

void Interface_mathParserHelp::showName(const QString& name) {
  const LanguageMatch match = findInLanguage(name.trimmed().toStdString());
  QTreeWidgetItem* item = match.isForeign || match.entries.empty()
                              ? nullptr
                              : itemWith(*m_functions, *match.entries.front());
  if (item == nullptr) {
    m_query->setText(name.trimmed());
    return;
  }
  m_query->clear();
  m_functions->setCurrentItem(item);
  m_functions->scrollToItem(item, QAbstractItemView::PositionAtCenter);
}

bool Interface_mathParserHelp::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) {
    return QWidget::eventFilter(watched, event);
  }
  const int key = static_cast<QKeyEvent*>(event)->key();
  const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
  QTreeWidgetItem* current = shownTree()->currentItem();
  if (isEnter && current != nullptr) {
    insert(current);
    current->setExpanded(!current->isExpanded());
    return true;
  }
  if (watched == m_query && (key == Qt::Key_Down || key == Qt::Key_Up)) {
    shownTree()->setFocus(Qt::OtherFocusReason);
    return QApplication::sendEvent(shownTree(), event);
  }
  if (key == Qt::Key_Escape && !m_query->text().isEmpty()) {
    m_query->clear();
    m_query->setFocus(Qt::OtherFocusReason);
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace kelvarin
