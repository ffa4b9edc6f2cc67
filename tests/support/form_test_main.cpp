// Runs the form tests: they need the one QApplication, which has to be there
// before the first widget and gone after the last.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFontDatabase>

#ifdef _WIN32
namespace {

// The offscreen platform asks for a font by a name that Windows has none of, and draws
// boxes in place of letters. Any font that is there will do.
void useAFontThatIsThere() {
  const QStringList families = QFontDatabase::families();
  if (!families.isEmpty()) QApplication::setFont(QFont(families.first()));
}

}  // namespace
#endif

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  // Form tests need no display, and none of their windows shall show on the user's.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  // Windows that a test closes must not end the program under the next test.
  QApplication::setQuitOnLastWindowClosed(false);
#ifdef _WIN32
  if (!qEnvironmentVariableIsSet("QT_QPA_FONTDIR")) {
    qputenv("QT_QPA_FONTDIR", qgetenv("WINDIR") + "\\Fonts");
  }
#endif
  const QApplication application(argc, argv);
#ifdef _WIN32
  useAFontThatIsThere();
#endif
  return RUN_ALL_TESTS();
}
