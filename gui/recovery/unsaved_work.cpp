#include "gui/recovery/unsaved_work.h"

#include <chrono>
#include <utility>

#include <QFileInfo>

#include "gui/properties/property_panel.h"
#include "host/widgets/user_interface.h"

namespace kelvarin {

namespace {

constexpr std::chrono::seconds kTypingInterval{2};

}  // namespace

UnsavedWork::UnsavedWork(GraphCommands& commands, const PropertyPanel& properties, QObject* parent)
    : QObject(parent), m_commands(commands), m_properties(properties) {
  m_soon.setSingleShot(true);
  connect(&m_soon, &QTimer::timeout, this, &UnsavedWork::note);
  connect(&m_typing, &QTimer::timeout, this, &UnsavedWork::noteTyping);
  connect(&m_commands.stack(), &QUndoStack::indexChanged, this, [this] {
    if (m_typing.isActive()) {
      m_soon.start();
    }
  });
  connect(&m_journal, &RecoveryJournal::failed, this, &UnsavedWork::failed);
}

void UnsavedWork::begin(const QString& graphFile, const QByteArray& onDisk) {
  m_record = {};
  if (!graphFile.isEmpty()) {
    m_record.graphFile = QFileInfo(graphFile).absoluteFilePath();
    m_record.savedDigest = contentDigest(onDisk);
  }
  m_typing.start(kTypingInterval);
  note();
}

void UnsavedWork::resume(std::unique_ptr<RecoveryFile> file) {
  m_record = file->found();
  m_hasFile = true;
  m_journal.adopt(std::move(file));
  m_typing.start(kTypingInterval);
}

void UnsavedWork::end() {
  m_soon.stop();
  m_typing.stop();
  m_hasFile = false;
  m_journal.remove();
  m_journal.waitForDisk();
}

QMap<QString, QString> UnsavedWork::typed() const {
  const UpdateClassWidget* editor = m_properties.editor();
  return editor == nullptr ? QMap<QString, QString>() : editor->uncommittedState();
}

void UnsavedWork::noteTyping() {
  if (typed() != m_record.typed) {
    note();
  }
}

void UnsavedWork::note() {
  m_soon.stop();
  const EditedGraph& graph = m_commands.graph();
  m_record.typed = typed();
  if (!graph.isModified() && m_record.typed.isEmpty()) {
    if (std::exchange(m_hasFile, false)) {
      m_journal.remove();
    }
    return;
  }
  m_hasFile = true;
  const ActionId action = m_properties.action();
  m_record.action = action == kNoId ? QString() : graph.name(action);
  m_record.time = QDateTime::currentDateTimeUtc();
  m_record.document = graph.document();
  m_journal.write(m_record);
}

}  // namespace kelvarin
