// The message box on screen.
#pragma once

#include "platform/message_box.h"

namespace quorrix {

class QtMessageBox final : public MessageBox {
 public:
  // Modal over the active window.
  MessageBoxButton show(std::string_view text, MessageBoxStyle style) override;
};

}  // namespace quorrix
