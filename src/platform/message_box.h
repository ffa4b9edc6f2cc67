// One modal box titled "Quorrix" with a text and one or two buttons.
#pragma once

#include <string_view>

namespace quorrix {

// The values are the classic sums of button set, icon and default button.
enum class MessageBoxStyle : int {
  Critical = 16,          // stop icon, OK: failures
  Exclamation = 48,       // OK: missing input
  Information = 64,       // OK: notices
  ConfirmQuestion = 289,  // question icon, OK and Cancel, Cancel is the default
  ConfirmWarning = 305,   // exclamation icon, OK and Cancel, Cancel is the default
  SystemModal = 4096,     // no icon, OK, stays in front of every window
};

enum class MessageBoxButton : int { Ok = 1, Cancel = 2 };

class MessageBox {
 public:
  virtual ~MessageBox() = default;

  // `text` is UTF-8 and never interpreted as markup. Returns when the user has answered.
  // Closing the box counts as Cancel if it has that button, otherwise as OK.
  virtual MessageBoxButton show(std::string_view text, MessageBoxStyle style) = 0;
};

}  // namespace quorrix
