#include "platform/linux/x11_window_stack.h"

#include <xcb/xcbext.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace quorrix {
namespace {

constexpr std::uint32_t kMostWords = 4096;  // of a property: one window each, or 4 bytes of a title

unsigned requestAtom(xcb_connection_t* connection, std::string_view name) {
  return xcb_intern_atom(connection, 1, static_cast<std::uint16_t>(name.size()), name.data())
      .sequence;
}

xcb_atom_t atomIn(const void* reply) {
  if (!reply) return XCB_ATOM_NONE;
  return static_cast<const xcb_intern_atom_reply_t*>(reply)->atom;
}

std::vector<xcb_window_t> windowsIn(const void* reply) {
  const auto* property = static_cast<const xcb_get_property_reply_t*>(reply);
  if (!property || property->format != 32) return {};
  const auto* windows = static_cast<const xcb_window_t*>(xcb_get_property_value(property));
  return {windows, windows + property->value_len};
}

}  // namespace

std::optional<std::vector<std::string>> X11WindowStack::titles() {
  if (!connection_ || xcb_connection_has_error(connection_) != 0) {
    giveUp();
    return std::vector<std::string>();
  }
  if (step_ == Step::Idle) askForAtoms();
  while (areAnswered()) {
    if (step_ == Step::Atoms) {
      askForWindows();
    } else if (step_ == Step::Windows) {
      askForTitles();
    } else {
      return takeTitles();
    }
  }
  return std::nullopt;
}

bool X11WindowStack::areAnswered() {
  for (Request& request : requests_) {
    if (request.isAnswered) continue;
    xcb_generic_error_t* error = nullptr;
    if (xcb_poll_for_reply(connection_, request.sequence, &request.reply, &error) == 0) {
      return false;
    }
    std::free(error);  // a window that has closed has no title
    request.isAnswered = true;
  }
  return true;
}

void X11WindowStack::askForAtoms() {
  step_ = Step::Atoms;
  for (const char* const name : {"_NET_CLIENT_LIST_STACKING", "_NET_WM_NAME", "UTF8_STRING"}) {
    requests_.push_back({.sequence = requestAtom(connection_, name)});
  }
  xcb_flush(connection_);
}

void X11WindowStack::askForWindows() {
  stackAtom_ = atomIn(requests_[0].reply);
  titleAtom_ = atomIn(requests_[1].reply);
  utf8Atom_ = atomIn(requests_[2].reply);
  giveUp();
  step_ = Step::Windows;
  xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection_));
  const xcb_window_t root =
      screens.rem > 0 ? screens.data->root : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
  requests_.push_back({.sequence = xcb_get_property(connection_, 0, root, stackAtom_,
                                                    XCB_ATOM_WINDOW, 0, kMostWords)
                                       .sequence});
  xcb_flush(connection_);
}

void X11WindowStack::askForTitles() {
  std::vector<xcb_window_t> windows = windowsIn(requests_[0].reply);
  std::ranges::reverse(windows);  // now the topmost one is first
  giveUp();
  step_ = Step::Titles;
  for (const xcb_window_t window : windows) {
    requests_.push_back(
        {.sequence = xcb_get_property(connection_, 0, window, titleAtom_, utf8Atom_, 0, kMostWords)
                         .sequence});
  }
  xcb_flush(connection_);
}

std::vector<std::string> X11WindowStack::takeTitles() {
  std::vector<std::string> titles;
  for (const Request& request : requests_) {
    const auto* property = static_cast<const xcb_get_property_reply_t*>(request.reply);
    if (!property || property->format != 8) continue;
    titles.emplace_back(static_cast<const char*>(xcb_get_property_value(property)),
                        property->value_len);
  }
  giveUp();
  return titles;
}

void X11WindowStack::giveUp() {
  for (const Request& request : requests_) {
    std::free(request.reply);
    if (!request.isAnswered && connection_) {
      xcb_discard_reply(connection_, request.sequence);
    }
  }
  requests_.clear();
  step_ = Step::Idle;
}

}  // namespace quorrix
