#include "gui/drops/file_drop.h"

#include <algorithm>

#include <QFileInfo>

#include "gui/document/graph_layout.h"
#include "gui/forms/edited_element.h"
#include "gui/palette/action_search.h"
#include "host/contract/described_action.h"
#include "host/widgets/background_task.h"

namespace kelvarin {

namespace {

using Files = std::vector<DroppedFile>;

const AttributeDescription* attributeOf(const ActionDescription& reader, QStringView name) {
  const auto found = std::ranges::find(reader.attributes, name, &AttributeDescription::name);
  return found == reader.attributes.end() ? nullptr : &*found;
}

// The attribute that names the file which a reader reads; null when it has none.
const AttributeDescription* fileAttributeOf(const ActionDescription& reader) {
  const AttributeDescription* file = attributeOf(reader, u"file");
  return file != nullptr ? file : attributeOf(reader, u"fileName");
}

void takeGuess(const DroppedFile& file, const ActionDescription& reader, EditedElement& element) {
  const CsvGuess& guess = file.csv;
  const auto set = [&](QStringView name, const QString& value) {
    if (const AttributeDescription* attribute = attributeOf(reader, name)) {
      element.setShownValue(*attribute, value);
    }
  };
  if (guess.columnCount == 0) {
    return;
  }
  if (guess.columnCount > 1) {
    set(u"separator", separatorText(guess.separator));
  }
  if (guess.hasQuotes) {
    set(u"quote", QString(QLatin1Char(guess.quote)));
  }
  set(u"header", guess.hasHeader ? QStringLiteral("1") : QStringLiteral("0"));
  set(u"encoding", nameOfEncoding(file.encoding));
  if (!guess.nullText.isEmpty()) {
    set(u"nullText", guess.nullText);
  }
  if (!guess.numbers.isPlain()) {
    set(u"decimal", QString(QLatin1Char(guess.numbers.decimal)));
    if (guess.numbers.thousands != '\0') {
      set(u"thousands", QString(QLatin1Char(guess.numbers.thousands)));
    }
  }
}

bool hasTable(const Files& files) {
  return std::ranges::find(files, DroppedFile::Kind::table, &DroppedFile::kind) != files.end();
}

}  // namespace

FileDrop::FileDrop(GraphCommands& commands, QObject* parent)
    : QObject(parent), m_commands(commands) {}

// A task of its own for each drop, so that a second one does not make the first one forgotten.
void FileDrop::take(const QStringList& files, QPointF position) {
  auto* task = new BackgroundTask(this);
  task->start<Files>(
      [files, types = readableFileTypes(m_commands.graph().catalogue())](
          const BackgroundTask::IsStopped&) -> Result<Files, QString> {
        return lookAtDropped(files, types);
      },
      [this, task, position](const Result<Files, QString>& found) {
        task->deleteLater();
        if (found) {
          use(*found, position);
        } else {
          emit refused(found.error());
        }
      });
}

void FileDrop::use(const Files& files, QPointF position) {
  if (files.size() == 1 && files.front().kind == DroppedFile::Kind::graph) {
    emit graphWanted(files.front().path);
    return;
  }
  ActionId last = kNoId;
  if (hasTable(files)) {
    emit tablesFound();
    const auto count =
        static_cast<int>(std::ranges::count(files, DroppedFile::Kind::table, &DroppedFile::kind));
    m_commands.together(count == 1 ? tr("Add a reader") : tr("Add %n readers", nullptr, count),
                        [&] {
                          for (const DroppedFile& file : files) {
                            if (file.kind == DroppedFile::Kind::table) {
                              last = addReader(file, position);
                            }
                          }
                        });
  }
  QStringList reasons;
  for (const DroppedFile& file : files) {
    if (file.kind == DroppedFile::Kind::graph) {
      reasons += tr("'%1' is a graph. Drop it alone to open it.").arg(file.path);
    } else if (file.kind == DroppedFile::Kind::other) {
      reasons += file.why;
    }
  }
  if (!reasons.isEmpty()) {
    emit refused(reasons.join(u'\n'));
  }
  if (last != kNoId) {
    emit added(last);
  }
}

ActionId FileDrop::addReader(const DroppedFile& file, QPointF position) {
  EditedGraph& graph = m_commands.graph();
  const CatalogueEntry* entry = readerOf(graph.catalogue(), u'.' + file.fileType);
  const ActionDescription* reader = entry == nullptr ? nullptr : descriptionOf(*entry->prototype);
  const AttributeDescription* attribute = reader == nullptr ? nullptr : fileAttributeOf(*reader);
  if (attribute == nullptr) {
    return kNoId;
  }
  EditedElement element;
  element.name = entry->typeName;
  element.setAttribute(attribute->name, graph.graph().settings->contractFile(file.path));
  takeGuess(file, *reader, element);
  return m_commands.addAction(entry->typeName, freePositionBelow(graph, position),
                              QFileInfo(file.path).completeBaseName(), element.document());
}

}  // namespace kelvarin
