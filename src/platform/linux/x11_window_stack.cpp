#include "platform/linux/x11_window_stack.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace quorrix {
namespace {

struct Disconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
struct Free {
  void operator()(void* reply) const { std::free(reply); }
};
using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;
using PropertyReply = std::unique_ptr<xcb_get_property_reply_t, Free>;

constexpr std::uint32_t kMostWords = 4096;  // of a property: windows, or a quarter of a title

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
  const auto cookie =
      xcb_intern_atom(connection, 1, static_cast<std::uint16_t>(name.size()), name.data());
  const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(
      xcb_intern_atom_reply(connection, cookie, nullptr));
  return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

std::vector<xcb_window_t> stackedWindows(xcb_connection_t* connection, xcb_window_t root) {
  const auto cookie =
      xcb_get_property(connection, 0, root, atom(connection, "_NET_CLIENT_LIST_STACKING"),
                       XCB_ATOM_WINDOW, 0, kMostWords);
  const PropertyReply reply(xcb_get_property_reply(connection, cookie, nullptr));
  if (!reply || reply->format != 32) return {};
  const auto* windows = static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
  return {windows, windows + reply->value_len};
}

}  // namespace

std::vector<std::string> titlesOfX11WindowStack() {
  if (!std::getenv("DISPLAY")) return {};
  int screenNumber = 0;
  const Connection connection(xcb_connect(nullptr, &screenNumber));
  if (xcb_connection_has_error(connection.get()) != 0) return {};
  const xcb_setup_t* setup = xcb_get_setup(connection.get());
  xcb_screen_iterator_t screens = xcb_setup_roots_iterator(setup);
  for (; screenNumber > 0 && screens.rem > 1; --screenNumber) xcb_screen_next(&screens);
  if (screens.rem == 0) return {};

  const std::vector<xcb_window_t> windows = stackedWindows(connection.get(), screens.data->root);
  const xcb_atom_t title = atom(connection.get(), "_NET_WM_NAME");
  const xcb_atom_t utf8 = atom(connection.get(), "UTF8_STRING");
  std::vector<xcb_get_property_cookie_t> cookies;
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    cookies.push_back(xcb_get_property(connection.get(), 0, *window, title, utf8, 0, kMostWords));
  }
  std::vector<std::string> titles;
  for (const auto& cookie : cookies) {
    const PropertyReply reply(xcb_get_property_reply(connection.get(), cookie, nullptr));
    if (!reply || reply->format != 8) continue;
    titles.emplace_back(static_cast<const char*>(xcb_get_property_value(reply.get())),
                        reply->value_len);
  }
  return titles;
}

}  // namespace quorrix
