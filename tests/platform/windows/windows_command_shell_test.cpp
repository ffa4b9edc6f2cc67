#include "platform/windows/windows_command_shell.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "support/code_pages.h"
#include "support/eventually.h"
#include "support/failure_number.h"
#include "support/temporary_folder.h"
#include "support/windows/helper.h"

namespace quorrix {
namespace {

TEST(AsOneArgument, LeavesAnOrdinaryAddressAsItIs) {
  EXPECT_EQ(asOneArgument(test::westernCodePage(), "https://one.two.three/a?b=c&d=%0A|$(e)#f"),
            "https://one.two.three/a?b=c&d=%0A|$(e)#f");
}

TEST(AsOneArgument, EncodesWhatCouldEndTheArgument) {
  EXPECT_EQ(asOneArgument(test::westernCodePage(), "http://a.b.c/\" -x \t\n\x7F"),
            "http://a.b.c/%22%20-x%20%09%0A%7F");
}

TEST(AsOneArgument, IsUtf8) {
  EXPECT_EQ(asOneArgument(test::westernCodePage(), "http://a.b.c/\xE9"), "http://a.b.c/\xC3\xA9");
}

// Registers a test browser, as browsers are registered, for addresses that begin with
// "quorrix-test:". It writes down what it is given.
class WindowsCommandShellTest : public testing::Test {
 protected:
  WindowsCommandShellTest() {
    set(L"", L"URL Protocol", L"");
    set(L"\\shell\\open\\command", nullptr,
        L"\"" + test::helperPath().wstring() + L"\" write \"" + opened().wstring() + L"\" \"%1\"");
  }
  ~WindowsCommandShellTest() override { ::RegDeleteTreeW(HKEY_CLASSES_ROOT, kKey.c_str()); }

  void set(const std::wstring& below, const wchar_t* name, const std::wstring& text) {
    EXPECT_EQ(
        ::RegSetKeyValueW(HKEY_CLASSES_ROOT, (kKey + below).c_str(), name, REG_SZ, text.c_str(),
                          static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))),
        ERROR_SUCCESS);
  }

  std::filesystem::path opened() const { return folder_ / "opened by it"; }

  // The number of arguments that the browser was given, then each on a line.
  std::string whenRun(const std::string& line) {
    std::filesystem::remove(opened());
    WindowsCommandShell(test::westernCodePage()).run(line);
    // The file exists, but for a moment not every program can open it.
    EXPECT_TRUE(test::eventually([this] { return std::ifstream(opened()).is_open(); }));
    return folder_.bytesOf(opened().filename());
  }

  const std::wstring kKey = L"quorrix-test";
  test::TemporaryFolder folder_;
};

TEST_F(WindowsCommandShellTest, GivesTheBrowserTheAddressAsItsOneArgument) {
  EXPECT_EQ(whenRun("start quorrix-test://one.two.three/a?b=c&d"),
            "1\nquorrix-test://one.two.three/a?b=c&d\n");
}

TEST_F(WindowsCommandShellTest, LetsNoShellReadTheAddress) {
  EXPECT_EQ(whenRun("start quorrix-test://a.b.c/x&y|z;w>v^$(u)"),
            "1\nquorrix-test://a.b.c/x&y|z;w>v^$(u)\n");
  EXPECT_EQ(whenRun("start quorrix-test://a.b.c/\" -x \\"),
            "1\nquorrix-test://a.b.c/%22%20-x%20%5C\n");
}

TEST_F(WindowsCommandShellTest, FailsWhenNothingOpensTheAddress) {
  EXPECT_EQ(test::failureNumberOf([] {
              WindowsCommandShell(test::westernCodePage()).run("start quorrix-none://a.b.c");
            }),
            53);
}

}  // namespace
}  // namespace quorrix
