// Browsers as they show themselves on the accessibility bus: the parts of a window
// that say what kind it is, and the way to its page. A window's paths begin with its
// name, such as "/one": "/one/pane".
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

  // Opens a window, or changes the one at that path.
  void show(const std::string& path, const FakeBrowserWindow& window);
  void close(const std::string& path);

  // Another document in the window's tab.
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

  // The committed address alone, as history.pushState does.
  void push(const std::string& path, const std::string& address);

  // Opens a side panel, whose document the frame embeds from then on.
  void openSidePanel(const std::string& path);

  // Another tab, while a side panel is open: the frame then embeds nothing.
  void chooseTab(const std::string& path, const std::string& document, const std::string& address);

  // Splits the view, or changes its second half, which shows another document.
  void split(const std::string& path, const std::string& document, const std::string& address,
             bool isSecondActive);

 private:
  void label(const std::string& path, const std::string& address, std::uint64_t states);
  void embed(const std::string& path, const std::string& document);  // empty: none
  void showSide(const std::string& path, const std::vector<std::string>& children);

  void showParts(const std::string& path, const FakeBrowserWindow& window) override;
};

// Its pages are in another process. Only the process of the ordinary windows owns the
// browser's name on the session bus, which here is the accessibility bus as well.
class FakeGnomeWeb final : public FakeBrowser {
 public:
  FakeGnomeWeb(const std::string& busAddress, FakeBrowserWindow::Mark kind)
      : FakeBrowser(busAddress, "epiphany", "gtk",
                    kind == FakeBrowserWindow::Mark::Ordinary ? "org.gnome.Epiphany" : ""),
        pages_(busAddress),
        otherPages_(busAddress) {}
  void load(const std::string& path, const std::string& document, const std::string& address,
            std::uint64_t documentStates = 0) override;

  // Shows the window's second tab, or the first one again.
  void chooseTab(const std::string& path, int number);

  // Shows the second tab without a page, which it gets when it is chosen next.
  void openEmptyTab(const std::string& path);

  // A page at another site, in another process. The one before it is kept and empty.
  void loadElsewhere(const std::string& path, const std::string& address);

  // Back to the one before, after which the view goes on naming the other one.
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
