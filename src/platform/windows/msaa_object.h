// An object of another program's window, as Microsoft Active Accessibility shows it.
// Every call may block for as long as that program does not answer; use it only on a
// QuestionThread. A call that fails counts as an answer without content.
#pragma once

#include <windows.h>

#include <oleacc.h>
#include <wrl/client.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace quorrix {

class MsaaObject {
 public:
  MsaaObject() = default;

  // The window's client object. Empty if the window does not provide one of its own, or
  // does not answer within `patience`.
  [[nodiscard]] static MsaaObject ofWindow(HWND window, std::chrono::milliseconds patience);

  explicit operator bool() const { return object_.Get() != nullptr; }

  // UTF-8; nullopt if the call fails.
  [[nodiscard]] std::optional<std::string> name() const;
  [[nodiscard]] std::optional<std::string> value() const;

  // 0 if the call fails.
  [[nodiscard]] long role() const;
  [[nodiscard]] long state() const;

  [[nodiscard]] long childCount() const;

  // The document that a window of Firefox shows.
  [[nodiscard]] MsaaObject embedded() const;

  // At most so many.
  [[nodiscard]] std::vector<MsaaObject> children(long most) const;

  // Whether both are the same object of the other program.
  [[nodiscard]] bool isSameAs(const MsaaObject& other) const;

 private:
  explicit MsaaObject(IDispatch* object);

  Microsoft::WRL::ComPtr<IAccessible> object_;
  Microsoft::WRL::ComPtr<IUnknown> identity_;
};

}  // namespace quorrix
