// Runs the form tests: they need the one QApplication, which has to be there
// before the first widget and gone after the last.
#include <gtest/gtest.h>

#include <QApplication>

#include "shell/resources.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  // Form tests need no display, and none of their windows shall show on the user's.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  // Windows that a test closes must not end the program under the next test.
  QApplication::setQuitOnLastWindowClosed(false);
  const QApplication application(argc, argv);
  quorrix::registerResources();
  return RUN_ALL_TESTS();
}
