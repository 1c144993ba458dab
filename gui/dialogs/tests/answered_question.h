// Answers the questions of a window as a user does.
//
// Used by the tests of the windows.
#pragma once

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QCoreApplication>
#include <QMessageBox>
#include <QTest>

namespace kelvarin::testing {

// Waits for it; null where none comes.
inline QMessageBox* questionOf(QWidget& window) {
  QMessageBox* found = nullptr;
  (void)QTest::qWaitFor([&] {
    found = window.findChild<QMessageBox*>();
    return found != nullptr && found->isVisible();
  });
  return found;
}

inline void answerQuestion(QWidget& window, QMessageBox::StandardButton button) {
  QMessageBox* box = questionOf(window);
  ASSERT_NE(box, nullptr);
  box->button(button)->click();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace kelvarin::testing
