#include "platform/linux/browser_processes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/temporary_folder.h"

namespace quorrix {
namespace {

constexpr const char* kBus = "unix:path=/run/user/1000/bus";

class BrowserProcessesTest : public testing::Test {
 protected:
  void given(int number, const std::string& name, const std::vector<std::string>& arguments,
             const std::vector<std::string>& environment) {
    const Path process = processes_ / std::to_string(number);
    std::filesystem::create_directories(process);
    std::ofstream(process / "comm") << name << '\n';
    write(process / "cmdline", arguments);
    write(process / "environ", environment);
  }
  void givenOfSession(int number, const std::string& name,
                      const std::vector<std::string>& arguments = {"program"},
                      const std::string& more = "HOME=/home/anna") {
    given(number, name, arguments,
          {"LANG=C", std::string("DBUS_SESSION_BUS_ADDRESS=") + kBus, more});
  }
  static void write(const Path& file, const std::vector<std::string>& texts) {
    std::ofstream stream(file, std::ios::binary);
    for (const std::string& text : texts) stream << text << '\0';
  }

  // A Chromium that is running: its arguments have become one text, and its environment
  // is overwritten with zeros.
  void givenChromium(int number, const std::string& arguments, int start) {
    given(number, "chromium", {arguments}, std::vector<std::string>(40));
    givenStart(number, start);
  }
  void givenReporter(int number, const std::vector<std::string>& environment, int start) {
    given(number, "chrome_crashpad", {"chrome_crashpad_handler"}, environment);
    givenStart(number, start);
  }
  void givenStart(int number, int start) {
    std::ofstream(processes_ / std::to_string(number) / "stat")
        << number << " (a name) S 1 2 3 0 -1 4194560 100 0 0 0 5 6 0 0 20 0 9 0 " << start
        << " 7000000\n";
  }

  // Each process as "number kind".
  std::vector<std::string> found() {
    std::vector<std::string> found;
    for (const BrowserProcess& process : browserProcesses(processes_, kBus)) {
      found.push_back(std::to_string(process.id) + ' ' + std::string(nameOf(process.kind)));
    }
    std::ranges::sort(found);
    return found;
  }

  test::TemporaryFolder folder_;
  Path processes_ = folder_.path();
};

TEST_F(BrowserProcessesTest, FindsBrowsersByTheirName) {
  givenOfSession(11, "firefox-esr");
  givenOfSession(12, "chromium");
  givenOfSession(13, "chrome");
  givenOfSession(14, "epiphany");
  givenOfSession(15, "bash", {"bash", "chromium"});
  std::filesystem::create_directories(processes_ / "self");
  EXPECT_EQ(found(),
            (std::vector<std::string>{"11 Firefox", "12 Chromium", "13 Google Chrome", "14 Web"}));
}

TEST_F(BrowserProcessesTest, LeavesOutWhatHasNoWindows) {
  givenOfSession(11, "chromium", {"/usr/lib/chromium/chromium", "--type=renderer", "--lang=en"});
  givenOfSession(12, "chromium", {"/usr/lib/chromium/chromium", "--headless=new"});
  givenOfSession(13, "firefox-esr", {"/usr/lib/firefox-esr/firefox-esr", "-contentproc"});
  givenOfSession(14, "firefox-esr", {"firefox-esr", "--headless"});
  EXPECT_EQ(found(), std::vector<std::string>{});
}

TEST_F(BrowserProcessesTest, LeavesOutOtherSessionsAndOtherUsers) {
  given(11, "chromium", {"chromium"}, {"DBUS_SESSION_BUS_ADDRESS=unix:path=/tmp/another"});
  given(12, "chromium", {"chromium"}, {"LANG=C"});
  given(13, "chromium", {"chromium"}, {});
  EXPECT_EQ(found(), std::vector<std::string>{});
}

TEST_F(BrowserProcessesTest, TellsWhatTheEnvironmentVetoes) {
  givenOfSession(11, "chromium", {"chromium"}, "GNOME_ACCESSIBILITY=0");
  givenOfSession(12, "chromium", {"chromium"}, "GNOME_ACCESSIBILITY=1");
  for (const BrowserProcess& process : browserProcesses(processes_, kBus)) {
    EXPECT_EQ(process.vetoesAccessibility, process.id == 11);
  }
}

TEST_F(BrowserProcessesTest, FindsAChromiumThatHasOverwrittenItsEnvironment) {
  givenChromium(11, "/usr/lib/chromium/chromium --no-default-browser-check http://a.example/", 50);
  EXPECT_EQ(found(), std::vector<std::string>{"11 Chromium"});
  EXPECT_FALSE(browserProcesses(processes_, kBus).at(0).vetoesAccessibility);
}

TEST_F(BrowserProcessesTest, LeavesOutHelpersWithOneTextForAllArguments) {
  givenChromium(11, "/usr/lib/chromium/chromium --type=zygote --no-sandbox", 50);
  givenChromium(12, "/usr/lib/chromium/chromium --headless", 50);
  EXPECT_EQ(found(), std::vector<std::string>{});
}

TEST_F(BrowserProcessesTest, TakesTheEnvironmentOfTheCrashReporterThatStartedNext) {
  const std::string here = std::string("DBUS_SESSION_BUS_ADDRESS=") + kBus;
  const std::string elsewhere = "DBUS_SESSION_BUS_ADDRESS=unix:path=/tmp/another";
  givenReporter(10, {elsewhere}, 49);
  givenChromium(11, "chromium", 50);
  givenReporter(12, {here, "ACCESSIBILITY_ENABLED=0"}, 51);
  givenChromium(13, "chromium", 60);
  givenReporter(14, {here}, 60);
  givenChromium(15, "chromium", 70);
  givenReporter(16, {elsewhere}, 72);
  givenReporter(17, {here}, 90);
  EXPECT_EQ(found(), (std::vector<std::string>{"11 Chromium", "13 Chromium"}));
  for (const BrowserProcess& process : browserProcesses(processes_, kBus)) {
    EXPECT_EQ(process.vetoesAccessibility, process.id == 11);
  }
}

TEST_F(BrowserProcessesTest, FindsNothingWithoutAFolderOfProcesses) {
  EXPECT_TRUE(browserProcesses(processes_ / "none", kBus).empty());
}

}  // namespace
}  // namespace quorrix
