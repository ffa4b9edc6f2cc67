// Runs the form tests. They need the one QApplication, which must exist before the first
// widget and be destroyed after the last.
#include <gtest/gtest.h>

#include <QApplication>

#include "shell/resources.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  // Form tests need no display, and none of their windows may appear on the user's.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  // Closing a test's windows must not end the program while the next test runs.
  QApplication::setQuitOnLastWindowClosed(false);
  const QApplication application(argc, argv);
  quorrix::registerResources();
  return RUN_ALL_TESTS();
}
