// Programs on the accessibility bus that call themselves browsers and answer nonsense. No
// pass takes long, nothing crashes, and a browser beside them is read.
#include <atspi/atspi-constants.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "platform/linux/accessible_windows_stage.h"

namespace quorrix {
namespace {

using test::FakeBrowser;
using test::FakeChromium;
using test::FakeFirefox;
using test::FakeObject;

// A user would notice a longer pass. Most of it may be other work of a busy machine.
constexpr std::chrono::milliseconds kNoticeable{500};
constexpr std::size_t kMegabyte = 1'000'000;
constexpr std::size_t kManyChildren = 10'000;
const std::string kRoot = test::FakeAccessibleProgram::kRoot;

class HostileWindows : public test::AccessibleWindowsStage {
 protected:
  ~HostileWindows() override {
    std::cout << "measured: " << passes_ << " passes beside hostile programs, "
              << std::chrono::duration<double, std::milli>(longest_).count() << " ms at most\n";
  }

  // Lists the hostile programs, and makes passes until the healthy browser is read, which
  // must happen with each of its visits.
  void expectHealthyBrowserRead(const std::vector<FakeBrowser*>& hostile) {
    FakeFirefox healthy(bus_.address());
    healthy.show("/one", firefoxWindow("A", "http://www.a.test/", true));
    std::vector<FakeBrowser*> listed = hostile;
    listed.push_back(&healthy);
    list(listed);
    expectRead(healthy);
  }

  void expectRead(FakeFirefox& healthy) {
    for (int i = 0; i < 3; ++i) {
      const std::string address = "http://www.b.test/" + std::to_string(i);
      healthy.load("/one", "/one/next" + std::to_string(i), address);
      EXPECT_TRUE(test::eventually([&] { return timedPass().address == address; })) << address;
      for (int more = 0; more < 20; ++more) static_cast<void>(timedPass());
    }
  }

  test::Seen timedPass() {
    test::Seen seen = pass();
    EXPECT_LT(duration(), kNoticeable);
    longest_ = std::max(longest_, duration());
    ++passes_;
    return seen;
  }

  // The healthy browser beside each kind of hostile one.
  void expectHealthyBrowserRead(const std::function<void(FakeBrowser&)>& corrupt) {
    FakeFirefox firefox(bus_.address());
    FakeChromium chromium(bus_.address());
    firefox.show("/one", firefoxWindow("Hostile", "http://www.hostile.test/"));
    chromium.show("/one", chromiumWindow("Hostile", "http://www.hostile.test/"));
    corrupt(firefox);
    corrupt(chromium);
    expectHealthyBrowserRead({&firefox, &chromium});
  }

 private:
  int passes_ = 0;
  std::chrono::microseconds longest_{};
};

TEST_F(HostileWindows, WithTitlesAndAddressesOfAMegabyte) {
  expectHealthyBrowserRead([](FakeBrowser& browser) {
    browser.show("/one", {.name = std::string(kMegabyte, 'x') + " - Chromium",
                          .address = "http://www.hostile.test/"});
    browser.show("/two", {.name = "B - Chromium",
                          .address = "http://www.hostile.test/" + std::string(kMegabyte, 'x')});
  });
}

TEST_F(HostileWindows, WithDescriptionsAndAttributesOfAMegabyte) {
  expectHealthyBrowserRead([](FakeBrowser& browser) {
    FakeObject object;
    object.role = ATSPI_ROLE_FRAME;
    object.name = "A - Chromium";
    object.description = std::string(kMegabyte, 'x');
    object.attributes = {{"class", std::string(kMegabyte, 'x')}, {"id", "nav-bar"}};
    object.children = {"/one/page"};
    browser.program().set("/one", object);
  });
}

// An address with a character that it cannot have is not shown. A character without a
// place in the code page becomes "?".
TEST_F(HostileWindows, WithControlCharactersAndDirectionMarksInAddresses) {
  const struct Case {
    std::string text;
    std::string address;
  } cases[] = {
      {"\x01\x02\x1F\x7F", ""},
      {"a\nb\rc\td", ""},
      {"a b", ""},
      {"\xE2\x80\xAEmoc.elpmaxe", "http://www.a.test/?moc.elpmaxe"},
      {"\xE2\x80\x8F\xE2\x81\xA6", "http://www.a.test/??"},
      {"\xEF\xBF\xBE", "http://www.a.test/?"},
      {"\xF4\x8F\xBF\xBF", "http://www.a.test/?"},
      {"%00%0A", "http://www.a.test/%00%0A"},
      {"<b>&amp;</b>", "http://www.a.test/<b>&amp;</b>"},
  };
  for (const Case& each : cases) {
    FakeFirefox firefox(bus_.address());
    firefox.show("/one", firefoxWindow("A", "http://www.a.test/" + each.text, true));
    list({&firefox});
    EXPECT_TRUE(test::eventually([&] { return timedPass().address == each.address; })) << each.text;
    for (int i = 0; i < 20; ++i) EXPECT_EQ(timedPass().address, each.address) << each.text;
  }
}

TEST_F(HostileWindows, WithControlCharactersAndDirectionMarksInTitles) {
  for (const char* const title : {"\x01\x02\x1F\x7F", "a\nb\rc\td", "\xE2\x80\xAEmoc.elpmaxe",
                                  "\xE2\x80\x8F\xE2\x81\xA6", "\xF4\x8F\xBF\xBF"}) {
    SCOPED_TRACE(title);
    expectHealthyBrowserRead([title](FakeBrowser& browser) {
      browser.show("/one", {.name = title + std::string(" - Chromium"), .address = title});
      browser.show("/two", {.name = " - Chromium" + std::string(title), .address = title});
    });
  }
}

TEST_F(HostileWindows, WithAnswersOfTheWrongType) {
  for (const char* const member :
       {"GetApplicationBusAddress", "GetRole", "GetState", "GetChildren", "GetChildAtIndex",
        "GetRelationSet", "GetAttributes", "Get", "Name", "ToolkitName", "ChildCount", "Parent"}) {
    SCOPED_TRACE(member);
    expectHealthyBrowserRead(
        [member](FakeBrowser& browser) { browser.program().answerWrongly(member); });
  }
}

TEST_F(HostileWindows, WhoseTreesContainThemselves) {
  for (const char* const inner :
       {"/one", "/one/pane", "/one/panels", "/one/navigation", "/one/browser", "/one/page"}) {
    SCOPED_TRACE(inner);
    expectHealthyBrowserRead([inner](FakeBrowser& browser) {
      FakeObject object;
      object.role = ATSPI_ROLE_FRAME;
      object.name = "A - Chromium";
      object.attributes = {{"class", "NonClientView"}};
      object.embeds = "/one";
      object.children = {"/one", inner, kRoot};
      browser.program().set(inner, object);
    });
  }
}

TEST_F(HostileWindows, WithTenThousandChildren) {
  for (const std::string& parent :
       {kRoot, std::string("/one"), std::string("/one/panels"), std::string("/one/navigation")}) {
    SCOPED_TRACE(parent);
    expectHealthyBrowserRead([&parent](FakeBrowser& browser) {
      FakeObject object;
      object.role = ATSPI_ROLE_FRAME;
      object.name = "A - Chromium";
      for (std::size_t i = 0; i < kManyChildren; ++i) {
        object.children.push_back("/child/c" + std::to_string(i));
      }
      browser.program().set(parent, object);
    });
  }
}

TEST_F(HostileWindows, WithAsManyWindowsAsAreRead) {
  expectHealthyBrowserRead([](FakeBrowser& browser) {
    FakeObject root;
    for (int i = 0; i < 300; ++i) {
      const std::string path = "/w" + std::to_string(i);
      FakeObject window;
      window.role = ATSPI_ROLE_FRAME;
      window.name = std::to_string(i) + " - Chromium";
      browser.program().set(path, window);
      root.children.push_back(path);
    }
    browser.program().set(kRoot, root);
  });
}

// The programs after the first 256 are not read, so the browser is the last of these.
TEST_F(HostileWindows, InARegistryWithTenThousandProgramsOfWhich256AreRead) {
  FakeFirefox healthy(bus_.address());
  healthy.show("/one", firefoxWindow("A", "http://www.a.test/", true));
  FakeObject root;
  for (std::size_t i = 0; i < kManyChildren; ++i) {
    if (i == 255) root.children.push_back(healthy.root());
    root.children.push_back(":1." + std::to_string(1'000'000 + i) + kRoot);
  }
  root.children.push_back(registry_->uniqueName() + kRoot);
  registry_->set(kRoot, root);
  expectRead(healthy);
}

TEST_F(HostileWindows, WhosePartsComeAndGo) {
  std::mt19937 random(1);
  FakeFirefox firefox(bus_.address());
  FakeChromium chromium(bus_.address());
  list({&firefox, &chromium});
  const char* const parts[] = {"/one",         "/one/navigation", "/one/tools", "/one/button",
                               "/one/panels",  "/one/pane",       "/one/page",  "/one/browser",
                               "/one/content", "/one/view",       "/one/bar",   "/one/label"};
  const auto showBoth = [&] {
    firefox.show("/one", firefoxWindow("A", "http://www.a.test/", true));
    chromium.show("/one", chromiumWindow("B", "http://www.b.test/"));
  };
  for (int i = 0; i < 300; ++i) {
    if (random() % 4 == 0) showBoth();
    FakeBrowser& victim = random() % 2 == 0 ? static_cast<FakeBrowser&>(firefox) : chromium;
    victim.program().remove(parts[random() % std::size(parts)]);
    static_cast<void>(timedPass());
  }
  showBoth();
  firefox.load("/one", "/one/last", "http://www.a.test/last");
  EXPECT_TRUE(test::eventually([&] { return timedPass().address == "http://www.a.test/last"; }));
}

}  // namespace
}  // namespace quorrix
