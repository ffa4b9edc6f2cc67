// Answers OK to every question, and keeps the messages about failures.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/message_box.h"

namespace quorrix::test {

class AgreeingMessageBox final : public MessageBox {
 public:
  MessageBoxButton show(std::string_view text, MessageBoxStyle style) override {
    if (style == MessageBoxStyle::Critical) {
      sentences.emplace_back(text);
      if (whileCritical) whileCritical();
    }
    return MessageBoxButton::Ok;
  }

  std::vector<std::string> sentences;
  std::function<void()> whileCritical;  // called while such a message is shown
};

}  // namespace quorrix::test
