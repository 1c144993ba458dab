#include "gui/dialogs/question.h"

#include <QPushButton>

namespace kelvarin {

void ask(QWidget* window, const Question& question,
         const std::function<void(QMessageBox::StandardButton)>& answer) {
  auto* box =
      new QMessageBox(QMessageBox::Warning, window->windowTitle().remove(QStringLiteral("[*]")),
                      question.text, QMessageBox::NoButton, window);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setInformativeText(question.further);
  for (const auto& [button, label] : question.choices) {
    QPushButton* added = box->addButton(button);
    if (!label.isEmpty()) {
      added->setText(label);
    }
  }
  box->setDefaultButton(question.choices.front().first);
  QObject::connect(box, &QMessageBox::finished, window, [answer](int button) {
    answer(static_cast<QMessageBox::StandardButton>(button));
  });
  box->open();
}

}  // namespace kelvarin
