#include "platform/linux/x11_activation.h"

#include <cstdlib>
#include <memory>
#include <string_view>

namespace quorrix {
namespace {

constexpr std::uint32_t kFromTaskBar = 2;

}  // namespace

void activateX11Window(xcb_connection_t* connection, xcb_window_t window) {
  constexpr std::string_view kName = "_NET_ACTIVE_WINDOW";
  const auto question = xcb_intern_atom(connection, 1, kName.size(), kName.data());
  const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
      xcb_intern_atom_reply(connection, question, nullptr), &std::free);
  if (!atom || atom->atom == XCB_ATOM_NONE) return;  // no window manager supports it
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = atom->atom;
  message.data.data32[0] = kFromTaskBar;
  message.data.data32[1] = XCB_CURRENT_TIME;
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  xcb_send_event(connection, 0, root,
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(connection);
}

}  // namespace quorrix
