// A day of tracking on the real disk: the clock runs fast, and the browser shows another
// page in every pass. QUORRIX_VISITS sets how many pages that are.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <utility>

#include "platform/browsers/played_windows.h"
#include "platform/linux/posix_file_system.h"
#include "sitetree/site_file.h"
#include "support/code_pages.h"
#include "support/scripted_message_box.h"
#include "support/temporary_folder.h"
#include "tracking/tracking_loop.h"

namespace quorrix {
namespace {

constexpr unsigned kSites = 1000;
constexpr std::uint64_t kSecondsOfTheDay = std::uint64_t{24} * 60 * 60;

unsigned visitsWanted() {
  const char* const wanted = std::getenv("QUORRIX_VISITS");
  return wanted ? static_cast<unsigned>(std::atoi(wanted)) : 5000;
}

// A site in three is visited over https.
std::string addressOf(unsigned visit) {
  const unsigned site = visit % kSites;
  return (site % 3 == 0 ? "https://" : "http://") + std::string("www.site-") +
         std::to_string(site / 10) + ".example/page-" + std::to_string(site % 10);
}

// A browser that shows the next page in every pass.
class RestlessBrowser final : public WindowSystem {
 public:
  [[nodiscard]] unsigned visits() const { return visits_; }

  void EnumWindows(const std::function<bool(WindowHandle)>& callback) override {
    played_.beginPass();
    played_.add("A page");
    played_.showInFront({.address = addressOf(visits_++), .isVisit = true});
    callback(played_.frame(0));
  }
  std::size_t GetWindowTextA(WindowHandle window, std::span<char> buffer) override {
    return played_.GetWindowTextA(window, buffer);
  }
  std::size_t GetClassNameA(WindowHandle window, std::span<char> buffer) override {
    return played_.GetClassNameA(window, buffer);
  }
  [[nodiscard]] WindowHandle GetParent(WindowHandle window) override {
    return played_.GetParent(window);
  }
  [[nodiscard]] WindowHandle GetWindow(WindowHandle window, WindowRelation relation) override {
    return played_.GetWindow(window, relation);
  }
  std::size_t SendMessageA(WindowHandle window, WindowMessage message,
                           std::span<char> buffer) override {
    return played_.SendMessageA(window, message, buffer);
  }

 private:
  PlayedWindows played_{test::westernCodePage()};
  unsigned visits_ = 0;
};

class QuietDisplay final : public TrackingDisplay {
 public:
  void showTrackingStatus(std::string_view) override {}
  void makeVisible(NodeId) override {}
  void showUnreadableBrowsers(const std::vector<UnreadableBrowser>&) override {}
};

// Midnight to midnight while the browser shows its pages.
class FastClock final : public Clock {
 public:
  FastClock(const RestlessBrowser& browser, unsigned visits) : browser_(browser), visits_(visits) {}

  [[nodiscard]] LocalDateTime now() override {
    const auto second = static_cast<int>(kSecondsOfTheDay * (browser_.visits() - 1) / visits_);
    return {.year = 2026,
            .month = 11,
            .day = 20,
            .hour = second / 3600,
            .minute = second / 60 % 60,
            .second = second % 60};
  }
  [[nodiscard]] std::chrono::milliseconds elapsed() override { return {}; }

 private:
  const RestlessBrowser& browser_;
  unsigned visits_;
};

class EachPass final : public EventPump {
 public:
  explicit EachPass(std::function<void()> action) : action_(std::move(action)) {}

  void processPending() override { action_(); }
  void pause(std::chrono::milliseconds) override {}

 private:
  std::function<void()> action_;
};

struct InUse {
  std::size_t memory = 0;  // KiB
  std::ptrdiff_t descriptors = 0;
};

InUse inUse() {
  std::ifstream file("/proc/self/statm");
  std::size_t pages = 0;
  file >> pages >> pages;
  const auto open = std::filesystem::directory_iterator("/proc/self/fd");
  return {pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) / 1024,
          std::distance(begin(open), end(open))};
}

TEST(DayOfTracking, NeedsNoMoreAtItsEndThanAtItsBeginning) {
  const unsigned visits = visitsWanted();
  const test::TemporaryFolder folder;
  WorkingPaths paths;
  paths.setFolder(folder.path());
  PosixFileSystem files;
  RestlessBrowser browser;
  FastClock clock(browser, visits);
  SiteTree tree;
  tree.addRoot();
  SiteFile siteFile(files, clock, paths);
  QuietDisplay display;
  test::ScriptedMessageBox messageBox;
  InUse early;
  TrackingLoop* tracking = nullptr;
  bool isOver = false;  // stopping lets events run, too
  EachPass events([&] {
    if (browser.visits() == visits / 10) early = inUse();
    if (browser.visits() == visits && !std::exchange(isOver, true)) tracking->stopTracking();
  });
  TrackingLoop loop({.windows = browser,
                     .tree = tree,
                     .siteFile = siteFile,
                     .events = events,
                     .messageBox = messageBox,
                     .display = display});
  tracking = &loop;
  loop.startTracking();

  const InUse late = inUse();
  std::cout << "measured: over " << visits << " visits memory went from " << early.memory << " to "
            << late.memory << " KiB, descriptors from " << early.descriptors << " to "
            << late.descriptors << '\n';
#ifndef __SANITIZE_ADDRESS__  // which keeps memory that was freed
  EXPECT_LT(late.memory, early.memory + 1024);
#endif
  EXPECT_EQ(late.descriptors, early.descriptors);

  EXPECT_EQ(tree.size(), 1U + 100U + kSites);  // the root, the hosts and the pages
  const std::string bytes = folder.bytesOf("nodes.dat");
  ASSERT_EQ(bytes.size(), kSites * 322U);
  EXPECT_EQ(bytes.substr(0, 26), "www.site-0.example/page-0 ");
  EXPECT_EQ(bytes.substr(300, 1), "S");
  EXPECT_EQ(bytes.substr(bytes.size() - 21, 15), "11/20/26 11:59:");
  EXPECT_EQ(bytes.substr(bytes.size() - 4), " PM~");
}

}  // namespace
}  // namespace quorrix
