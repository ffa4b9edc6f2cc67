// A message box that answers from a script. The test fails if one is shown that was not
// expected, or if one was expected and not shown.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/message_box.h"
#include "support/slashes.h"

namespace quorrix::test {

class ScriptedMessageBox final : public MessageBox {
 public:
  ScriptedMessageBox() = default;
  ScriptedMessageBox(const ScriptedMessageBox&) = delete;
  ScriptedMessageBox& operator=(const ScriptedMessageBox&) = delete;

  ~ScriptedMessageBox() override {
    for (const Entry& entry : script_) {
      ADD_FAILURE() << "a message box was expected and not shown: " << entry.text;
    }
  }

  // Boxes must come in the order in which they are expected. `whileOpen` runs before the
  // box is answered; it does what the user does in other windows while the box is open.
  void expect(std::string_view text, MessageBoxStyle style,
              MessageBoxButton answer = MessageBoxButton::Ok,
              std::function<void()> whileOpen = nullptr) {
    script_.push_back({std::string(text), style, answer, std::move(whileOpen)});
  }

  // Whether everything expected so far has been shown.
  [[nodiscard]] bool isThrough() const { return script_.empty(); }

  // The number of boxes shown, including unexpected ones.
  [[nodiscard]] int shown() const { return shown_; }

  MessageBoxButton show(std::string_view text, MessageBoxStyle style) override {
    ++shown_;
    if (script_.empty()) {
      ADD_FAILURE() << "nobody expected a message box: " << text;
      return MessageBoxButton::Cancel;
    }
    const Entry entry = std::move(script_.front());
    script_.pop_front();
    EXPECT_EQ(entry.text, withSlashes(std::string(text)));
    EXPECT_EQ(static_cast<int>(entry.style), static_cast<int>(style));
    if (entry.whileOpen) entry.whileOpen();
    return entry.answer;
  }

 private:
  struct Entry {
    std::string text;
    MessageBoxStyle style;
    MessageBoxButton answer;
    std::function<void()> whileOpen;
  };

  std::deque<Entry> script_;
  int shown_ = 0;
};

}  // namespace quorrix::test
