#include "shell/qt_command_shell.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <string>

#include "support/code_pages.h"
#include "support/failure_number.h"

namespace quorrix {
namespace {

// Puts a test opener in front of the desktop's, which writes down what it is given.
class QtCommandShellTest : public testing::Test {
 protected:
  QtCommandShellTest() {
    QFile opener(folder_.filePath(QStringLiteral("xdg-open")));
    EXPECT_TRUE(opener.open(QIODevice::WriteOnly));
    opener.write(
        "#!/bin/sh\nprintf '%s\\n' \"$#\" \"$@\" > \"$OPENED.part\"\n"
        "mv \"$OPENED.part\" \"$OPENED\"\n");
    opener.close();
    opener.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    path_ = qgetenv("PATH");
    qputenv("PATH", folder_.path().toLocal8Bit() + ':' + path_);
    qputenv("OPENED", opened().toLocal8Bit());
  }

  ~QtCommandShellTest() override {
    qputenv("PATH", path_);
    qunsetenv("OPENED");
  }

  QString opened() const { return folder_.filePath(QStringLiteral("opened")); }

  // The number of arguments that the opener was given, then each on a line.
  QByteArray whenRun(const std::string& line) {
    QFile::remove(opened());
    QtCommandShell(test::westernCodePage()).run(line);
    EXPECT_TRUE(QTest::qWaitFor([this] { return QFileInfo::exists(opened()); }));
    QFile file(opened());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  QTemporaryDir folder_;
  QByteArray path_;
};

TEST_F(QtCommandShellTest, GivesTheOpenerTheAddressAsItsOneArgument) {
  EXPECT_EQ(whenRun("start http://one.two.three/a"), "1\nhttp://one.two.three/a\n");
}

TEST_F(QtCommandShellTest, ChangesNothingInAnAddressMadeToHurt) {
  for (const std::string address :
       {R"(http://a.b.c/"quoted" 'too')", "http://a.b.c/x&y|z;w", "http://a.b.c/$(touch x)`id`",
        "http://a.b.c/%0A%20", "http://a.b.c/<b>*?[x]{y}~#!\\", "http:// -leading"}) {
    EXPECT_EQ(whenRun("start " + address).toStdString(), "1\n" + address + "\n");
  }
}

TEST_F(QtCommandShellTest, OpensAnAddressOf300Characters) {
  const std::string address = "https://a.b.c/" + std::string(294, 'x');
  EXPECT_EQ(whenRun("start " + address).toStdString(), "1\n" + address + "\n");
}

TEST_F(QtCommandShellTest, HandsOnWhatIsNotAsciiInTheWorldsEncoding) {
  EXPECT_EQ(whenRun("start http://a.b.c/\xE9"), "1\nhttp://a.b.c/\xC3\xA9\n");
}

TEST_F(QtCommandShellTest, FailsIfThereIsNoOpener) {
  const QTemporaryDir empty;
  qputenv("PATH", empty.path().toLocal8Bit());
  QtCommandShell shell(test::westernCodePage());
  EXPECT_EQ(test::failureNumberOf([&shell] { shell.run("start http://one.two.three/a"); }), 53);
}

}  // namespace
}  // namespace quorrix
