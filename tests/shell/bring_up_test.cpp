#include "shell/bring_up.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QTest>

namespace quorrix {
namespace {

TEST(BringUp, ShowsAWindowThatIsMinimised) {
  QWidget window;
  window.showMinimized();
  bringUp(window);
  EXPECT_FALSE(window.isMinimized());
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
}

TEST(BringUpProgram, LeavesAWindowHiddenThatIsNotShownYet) {
  QWidget window;
  bringUpProgram(window, "");
  EXPECT_FALSE(window.isVisible());
}

TEST(BringUpProgram, GivesTheKeyboardToTheDialogThatWaitsForAnAnswer) {
  QWidget window;
  window.showMinimized();
  QDialog dialog(&window);
  dialog.setModal(true);
  dialog.show();
  bringUpProgram(window, "");
  EXPECT_FALSE(window.isMinimized());
  EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
}

TEST(BringUpProgram, LeavesNoActivationTokenToProgramsThatAreStarted) {
  QWidget window;
  window.show();
  bringUpProgram(window, "token-1");
  EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
}

}  // namespace
}  // namespace quorrix
