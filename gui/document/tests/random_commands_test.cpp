// Commands in any order, on all graphs and actions there are: undone and redone they lead to the
// same document, and what is saved reads back as the graph that was edited.
//
// The seed is printed; KELVARIN_SEED and KELVARIN_COMMANDS repeat and lengthen the test.
#include <algorithm>
#include <random>

#include <gtest/gtest.h>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include "gui/document/graph_commands.h"
#include "gui/document/tests/loaded_catalogue.h"

namespace kelvarin {
namespace {

QByteArray contentOf(const QString& file) {
  QFile source(file);
  EXPECT_TRUE(source.open(QIODevice::ReadOnly)) << qPrintable(file);
  return source.readAll();
}

// With comments, attributes and elements that no program knows, and quotes, blanks and line ends of
// all kinds.
const QByteArray kStrange =
    "\xEF\xBB\xBF<?xml version=\"1.0\"?>\r\n<!-- first -->\r\n"
    "<KelvarinGraph  version = \"1.0\" colour='none'>\r\n\t<Actions >\r\n"
    "\t\t<!-- reads --><InlineTable name=\"a\" x='1.5' later = \"&lt;3\" >\r\n"
    "\t\t\t<Column name='n' meta='F'/><!-- a number -->\r\n"
    "\t\t\t<Row><V>1</V></Row> <!-- one -->\r\n\t\t\t<Row >\r\n<V>2</V>\r\n</Row>\r\n"
    "\t\t</InlineTable>\r\n"
    "\t\t<Calculator name='b' x='200' y='0' useJIT='1'><OutputVars><!-- sum --><OutputVar "
    "name='m'><![CDATA[n < 5 && n > 1]]></OutputVar></OutputVars>\r\n"
    "\t\t\t<InputVars><InputVar column='n' future='1'/></InputVars></Calculator>\r\n"
    "\t\t<Calculator name='bad' addN='perhaps'/> <Absent name='gone' key='1'>"
    "<!-- inner --></Absent>\r\n"
    "\t\t<WriteCSV name='a' file='twice.csv'/>\r\n"
    "\t</Actions>\r\n\t<Links><!-- none yet --><Link from='a' to='b'/>\r\n"
    "\t\t<Link from='gone' fromPin='2' to='bad'/> <Link from='nobody' to='gone'/>\r\n"
    "\t\t<Path/></Links>\r\n\t<Unknown>text</Unknown>\r\n</KelvarinGraph>\r\n<!-- last -->";

std::vector<QByteArray> documents() {
  std::vector<QByteArray> all{kStrange};
  QDirIterator examples(QStringLiteral(EXAMPLES), {QStringLiteral("*.kelvarin")}, QDir::Files,
                        QDirIterator::Subdirectories);
  while (examples.hasNext()) {
    all.push_back(contentOf(examples.next()));
  }
  QByteArray actions;
  const QDir saved(QStringLiteral(SAVED_ACTIONS));
  for (const QString& file : saved.entryList({QStringLiteral("*.xml")})) {
    actions +=
        contentOf(saved.filePath(file)).replace("name='action'", "name='" + file.toUtf8() + "'");
  }
  all.push_back(
      "<KelvarinGraph><Parameters><Parameter name='dir' value='d'/><Parameter "
      "name='second' value='s'/><Parameter name='type' value='F'/></Parameters>\n<Actions>" +
      actions + "</Actions></KelvarinGraph>");
  return all;
}

class RandomCommands {
 public:
  RandomCommands(GraphCommands& commands, unsigned seed)
      : m_commands(commands), m_graph(commands.graph()), m_random(seed) {}

  void doOne() {
    constexpr int kManyActions = 50;
    const int count = m_graph.actionCount();
    switch (count == 0 ? 0 : count > kManyActions ? 14 : number(16)) {
      case 0:
        m_commands.addAction(type(), point(), {});
        break;
      case 1:
        m_commands.addLinked(type(), {action(), number(2), number(2) == 1});
        break;
      case 2:
        m_commands.insertIntoLink(type(), link());
        break;
      case 3:
        m_commands.replaceAction(action(), type());
        break;
      case 4:
        m_commands.rename(action(), QStringLiteral("<%1> & 'more'").arg(number(1000)));
        break;
      case 5:
        m_commands.setDisabled({action(), action()}, number(2) == 1);
        break;
      case 6:
      case 7:
        m_commands.moveActions({{action(), point()}, {action(), point()}}, {}, number(2) == 1);
        break;
      case 8:
      case 9:
      case 10:
        editSettings();
        break;
      case 11:
        m_commands.addLink(action(), number(3), action(), number(2));
        break;
      case 12:
        changeNotes();
        break;
      case 13:
        m_commands.setParameters({{QStringLiteral("dir"), QString::number(number(9))},
                                  {QStringLiteral("n%1").arg(number(3)), QStringLiteral("'&'")}});
        break;
      case 14:
        removeSome();
        break;
      default:
        m_commands.duplicate({{action(), action(), action()}, {}, {}});
    }
  }

 private:
  int number(int end) { return std::uniform_int_distribution(0, end - 1)(m_random); }
  QPointF point() { return QPointF(number(2000) - 500, number(2000) - 500); }
  template <typename Id>
  Id one(const QList<Id>& ids) {
    return ids.isEmpty() ? kNoId : ids[number(static_cast<int>(ids.size()))];
  }
  ActionId action() { return one(m_graph.actions()); }
  LinkId link() { return one(m_graph.links()); }
  QString type() {
    const QStringList types = loadedCatalogue().typeNames();
    return types[number(static_cast<int>(types.size()))];
  }

  void changeNotes() {
    const NoteId note = one(m_graph.notes());
    if (note == kNoId || number(2) == 1) {
      m_commands.addNote({point(), QSizeF(100, 50)}, QStringLiteral("a < b\n"), Qt::yellow);
    } else {
      m_commands.setNote(note, {point(), QSizeF(20, 20)}, QString::number(number(5)), {});
    }
  }

  void removeSome() {
    GraphSelection selection{{action(), action()}, {}, {}};
    if (const LinkId some = link(); some != kNoId) {
      selection.links.insert(some);
    }
    if (const NoteId note = one(m_graph.notes()); note != kNoId) {
      selection.notes.insert(note);
    }
    if (number(2) == 1) {
      m_commands.remove(selection);
    } else {
      m_commands.removeClosingGaps(selection);
    }
  }

  // Of an element of the action, one attribute is changed, added or taken away, or a child doubled
  // or removed.
  void editSettings() {
    const ActionId id = action();
    std::wostringstream out;
    m_graph.action(id).saveXML(out, m_graph.name(id));
    QString element = QString::fromStdWString(out.str());
    const QStringList changes[] = {
        {QStringLiteral("<InputVars>"), QStringLiteral("<InputVars><InputVar column='c%1'/>")},
        {QStringLiteral("</OutputVars>"),
         QStringLiteral("<OutputVar name='o%1'>a &lt; %1</OutputVar></OutputVars>")},
        {QStringLiteral("<Row>"), QStringLiteral("<Row><V>%1</V></Row><Row>")},
        {QStringLiteral("<V>"), QStringLiteral("<V>%1")},
        {QStringLiteral("column='"), QStringLiteral("column='x%1")},
        {QStringLiteral("<Expression>"), QStringLiteral("<Expression>%1 + ")},
        {QStringLiteral(" useJIT='0'"), QString()},
        {QStringLiteral(" file='"), QStringLiteral(" file='%1")}};
    for (const QStringList& change : changes) {
      const qsizetype at = element.indexOf(change[0]);
      if (at >= 0 && number(2) == 1) {
        const QString now = change[1].isEmpty() ? change[1] : change[1].arg(number(1000));
        element.replace(at, change[0].size(), now);
      }
    }
    m_commands.setElement(id, element.toUtf8());
  }

  GraphCommands& m_commands;
  EditedGraph& m_graph;
  std::mt19937 m_random;
};

QString settingsOf(ActionItem& action) {
  static const QRegularExpression kPosition(QStringLiteral(" x='[^']*' y='[^']*'"));
  std::wostringstream out;
  action.saveXML(out, action.name());
  return QString::fromStdWString(out.str()).remove(kPosition);
}

// What actions, links and notes say, whatever their document looks like.
QStringList meaningOf(const EditedGraph& graph) {
  QStringList lines;
  for (const ActionId id : graph.actions()) {
    lines += graph.name(id) + settingsOf(graph.action(id));
    const QPointF at = graph.position(id);
    lines += QStringLiteral("%1 %2 %3").arg(at.x()).arg(at.y()).arg(graph.isDisabled(id));
  }
  for (const LinkId id : graph.links()) {
    const DrawnLink& link = graph.link(id);
    lines += QStringLiteral("%1.%2 %3.%4")
                 .arg(link.from < 0 ? QString() : graph.name(link.from))
                 .arg(link.fromPin)
                 .arg(link.to < 0 ? QString() : graph.name(link.to))
                 .arg(link.toPin);
  }
  for (const NoteId id : graph.notes()) {
    const DrawnNote& note = graph.note(id);
    lines += QStringLiteral("%1 %2 %3 %4")
                 .arg(note.rectangle.x())
                 .arg(note.rectangle.y())
                 .arg(note.colour.name(), note.text);
  }
  for (const DrawnParameter& parameter : graph.parameters()) {
    lines += parameter.name + u'=' + parameter.value;
  }
  return lines;
}

int environment(const char* name, int otherwise) {
  bool isSet = false;
  const int value = qEnvironmentVariableIntValue(name, &isSet);
  return isSet ? value : otherwise;
}

TEST(RandomCommands, AreUndoneAndRedoneToTheSameDocument) {
  const auto seed = static_cast<unsigned>(
      environment("KELVARIN_SEED", static_cast<int>(std::random_device()() >> 1U)));
  const int count = environment("KELVARIN_COMMANDS", 2000);
  std::printf("KELVARIN_SEED=%u\n", seed);
  const std::vector<QByteArray> all = documents();
  ASSERT_GE(all.size(), 5U);
  for (const QByteArray& document : all) {
    EditedGraph graph(loadedCatalogue());
    GraphCommands commands(graph);
    ASSERT_TRUE(graph.load(document, QStringLiteral("g.kelvarin")));
    ASSERT_EQ(graph.document(), document);
    RandomCommands random(commands, seed);
    const int share = count / static_cast<int>(all.size());
    std::vector<QByteArray> states{document};
    for (int i = 0; i < share; ++i) {
      random.doOne();
      const QByteArray after = graph.document();
      ASSERT_EQ(graph.isModified(), after != document);
      states.resize(static_cast<std::size_t>(commands.stack().index()));  // some steps are joined
      if (!states.empty()) {
        commands.stack().undo();
        ASSERT_EQ(graph.document(), states.back()) << "command " << i;
        commands.stack().redo();
      }
      ASSERT_EQ(graph.document(), after) << "command " << i;
      if (i % 20 == 0) {
        EditedGraph read(loadedCatalogue());
        ASSERT_TRUE(read.load(after, QStringLiteral("g.kelvarin")))
            << qPrintable(read.faults().front().text());
        ASSERT_EQ(meaningOf(read).join(u'\n').toStdString(),
                  meaningOf(graph).join(u'\n').toStdString())
            << "command " << i << after.constData();
      }
      states.push_back(after);
    }
    const QByteArray last = graph.document();
    commands.stack().setIndex(0);
    EXPECT_EQ(graph.document(), document);
    EXPECT_FALSE(graph.isModified());
    commands.stack().setIndex(commands.stack().count());
    EXPECT_EQ(graph.document(), last);
  }
}

}  // namespace
}  // namespace kelvarin
