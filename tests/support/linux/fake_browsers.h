// Browsers as they appear on the accessibility bus: the parts of a window that say what
// kind it is, and the path to its page. The parts of window "/one" have paths
// such as "/one/pane". In FakeGnomeWeb, the second tab's paths begin with "/tab/one".
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "support/linux/fake_accessible_program.h"

namespace quorrix::test {

struct FakeBrowserWindow {
  std::string name;     // accessible name
  std::string address;  // of its page; the document is "/one/page"
  bool isActive = false;
  enum class Mark { Ordinary, Private, None } mark = Mark::Ordinary;
};

class FakeBrowser {
 public:
  FakeBrowser(const std::string& busAddress, const std::string& name, const std::string& toolkit,
              const std::string& wellKnownName = "");
  virtual ~FakeBrowser() = default;

  // Opens a window, or changes the one with that path.
  void show(const std::string& path, const FakeBrowserWindow& window);
  void close(const std::string& path);

  // Loads another document in the window's tab.
  virtual void load(const std::string& path, const std::string& document,
                    const std::string& address, std::uint64_t documentStates = 0) = 0;

  [[nodiscard]] FakeAccessibleProgram& program() { return program_; }
  [[nodiscard]] std::string root() const;

 protected:
  virtual void showParts(const std::string& path, const FakeBrowserWindow& window) = 0;
  [[nodiscard]] FakeObject frame(const FakeBrowserWindow& window) const;
  void part(const std::string& path, std::uint32_t role, const std::string& attribute,
            const std::vector<std::string>& children);

  FakeAccessibleProgram program_;
  std::map<std::string, FakeBrowserWindow> windows_;

 private:
  void list();
};

class FakeFirefox final : public FakeBrowser {
 public:
  explicit FakeFirefox(const std::string& busAddress)
      : FakeBrowser(busAddress, "Firefox", "Gecko") {}
  void load(const std::string& path, const std::string& document, const std::string& address,
            std::uint64_t documentStates = 0) override;

 private:
  void showParts(const std::string& path, const FakeBrowserWindow& window) override;
};

class FakeChromium final : public FakeBrowser {
 public:
  explicit FakeChromium(const std::string& busAddress)
      : FakeBrowser(busAddress, "Chromium", "Chromium") {}
  void load(const std::string& path, const std::string& document, const std::string& address,
            std::uint64_t documentStates = 0) override;

  // Changes only the committed address, as history.pushState does.
  void push(const std::string& path, const std::string& address);

  // Opens a side panel. Until the next load() or chooseTab(), the frame embeds the panel's
  // document.
  void openSidePanel(const std::string& path);

  // Chooses another tab while a side panel is open. The frame then embeds nothing.
  void chooseTab(const std::string& path, const std::string& document, const std::string& address);

  // Splits the view, or changes the page in its second half.
  void split(const std::string& path, const std::string& document, const std::string& address,
             bool isSecondActive);

 private:
  void label(const std::string& path, const std::string& address, std::uint64_t states);
  void embed(const std::string& path, const std::string& document);  // empty: nothing
  void showSide(const std::string& path, const std::vector<std::string>& children);

  void showParts(const std::string& path, const FakeBrowserWindow& window) override;
};

// Its pages are in another process. Only the process of the ordinary windows owns the
// browser's name on the session bus, which here is also the accessibility bus.
class FakeGnomeWeb final : public FakeBrowser {
 public:
  FakeGnomeWeb(const std::string& busAddress, FakeBrowserWindow::Mark kind)
      : FakeBrowser(busAddress, "epiphany", "gtk",
                    kind == FakeBrowserWindow::Mark::Ordinary ? "org.gnome.Epiphany" : ""),
        pages_(busAddress),
        otherPages_(busAddress) {}
  void load(const std::string& path, const std::string& document, const std::string& address,
            std::uint64_t documentStates = 0) override;

  // Shows the window's second tab (2), or the first one again (1).
  void chooseTab(const std::string& path, int number);

  // Shows the second tab without a page; it gets one when it is chosen again.
  void openEmptyTab(const std::string& path);

  // Loads a page of another site in another process. The previous page's process stays,
  // without content.
  void loadElsewhere(const std::string& path, const std::string& address);

  // Goes back to the previous page. The view still refers to the other process.
  void goBack(const std::string& path, const std::string& document, const std::string& address);

  [[nodiscard]] FakeAccessibleProgram& pages() { return pages_; }

 private:
  void showParts(const std::string& path, const FakeBrowserWindow& window) override;
  void showTab(const std::string& path, bool isChosen);
  void showView(const std::string& path, const FakeAccessibleProgram& namedProcess);
  static void showPage(FakeAccessibleProgram& process, const std::string& path,
                       const std::string& document, const std::string& address);
  static void keepPage(FakeAccessibleProgram& process, const std::string& path);

  FakeAccessibleProgram pages_;
  FakeAccessibleProgram otherPages_;
};

}  // namespace quorrix::test
