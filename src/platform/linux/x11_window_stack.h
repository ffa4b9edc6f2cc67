// How the windows of an X11 desktop lie on each other, which tells the one used last
// where no window of interest is active. XWayland knows of its own windows only.
#pragma once

#include <xcb/xcb.h>

#include <optional>
#include <string>
#include <vector>

namespace quorrix {

// Asks over a connection that is there already and never waits: an answer that is
// not there yet is taken in by a later call.
class X11WindowStack {
 public:
  // `connection` must outlive this object; null where there is no X11.
  explicit X11WindowStack(xcb_connection_t* connection) : connection_(connection) {}
  ~X11WindowStack() { giveUp(); }
  X11WindowStack(const X11WindowStack&) = delete;
  X11WindowStack& operator=(const X11WindowStack&) = delete;

  // Titles, UTF-8, topmost first, those of minimised windows included, each cut after
  // 16 KiB. Empty without a window manager that keeps the list. nullopt while an
  // answer is missing: ask again later. After an answer the next call asks afresh.
  [[nodiscard]] std::optional<std::vector<std::string>> titles();

 private:
  enum class Step { Idle, Atoms, Windows, Titles };

  struct Request {
    unsigned sequence = 0;
    void* reply = nullptr;  // owned
    bool isAnswered = false;
  };

  [[nodiscard]] bool areAnswered();
  void askForAtoms();
  void askForWindows();
  void askForTitles();
  [[nodiscard]] std::vector<std::string> takeTitles();
  void giveUp();

  xcb_connection_t* connection_;
  Step step_ = Step::Idle;
  std::vector<Request> requests_;
  xcb_atom_t stackAtom_ = XCB_ATOM_NONE;
  xcb_atom_t titleAtom_ = XCB_ATOM_NONE;
  xcb_atom_t utf8Atom_ = XCB_ATOM_NONE;
};

}  // namespace quorrix
