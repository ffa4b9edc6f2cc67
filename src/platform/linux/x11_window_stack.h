// The stacking order of the windows on an X11 desktop. It shows which window was used
// last if no window of interest is active. XWayland knows only its own windows.
#pragma once

#include <xcb/xcb.h>

#include <optional>
#include <string>
#include <vector>

namespace quorrix {

// Uses an existing connection and never waits: an answer that has not arrived yet is read
// by a later call.
class X11WindowStack {
 public:
  // `connection` must outlive this object; null without X11.
  explicit X11WindowStack(xcb_connection_t* connection) : connection_(connection) {}
  ~X11WindowStack() { giveUp(); }
  X11WindowStack(const X11WindowStack&) = delete;
  X11WindowStack& operator=(const X11WindowStack&) = delete;

  // Titles, UTF-8, topmost first, including those of minimised windows, each truncated to
  // 16 KiB. Empty without X11, or without a window manager that keeps the list. nullopt
  // while an answer is missing: call again later. After a result, the next call asks
  // again.
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
