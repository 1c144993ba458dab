#include "gui/document/command_step.h"

namespace kelvarin {

GraphCommands::Step::Step(GraphCommands& commands, const QString& text)
    : m_commands(commands), m_changes(commands.m_graph) {
  if (commands.m_step == nullptr) {
    m_step = std::make_unique<GraphStep>(
        commands.m_graph, [receiver = &commands](const EditOfAction& edit) {
          emit receiver->editorPositionWanted(edit.action, edit.position);
        });
    m_step->setText(text);
    commands.m_step = this;
  }
}

GraphCommands::Step::~Step() {
  if (m_step == nullptr) {
    return;
  }
  m_commands.m_step = nullptr;
  if (!m_step->isEmpty()) {
    m_commands.m_stack.push(m_step.release());
  }
}

void GraphCommands::Step::setText(const QString& text) {
  if (m_step != nullptr) {
    m_step->setText(text);
  }
}

void GraphCommands::Step::setEdit(const EditOfAction& edit, const QString& key,
                                  int longestPauseMilliseconds) {
  outermost().m_step->append(edit);
  setJoining({key, longestPauseMilliseconds});
}

}  // namespace kelvarin
