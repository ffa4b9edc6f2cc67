// A running stand-in for Firefox or Chromium (msaa_browser_program.cpp).
#pragma once

#include <filesystem>
#include <string>

#include "support/temporary_folder.h"

namespace quorrix::test {

enum class StandInFor {
  Firefox,
  Chromium,
  Electron  // a program that is built from the parts of Chromium
};

class MsaaBrowser {
 public:
  // Returns once it has a window. `profile` is Firefox's; empty for none.
  explicit MsaaBrowser(StandInFor browser, const std::filesystem::path& profile = {});
  ~MsaaBrowser();
  MsaaBrowser(const MsaaBrowser&) = delete;
  MsaaBrowser& operator=(const MsaaBrowser&) = delete;

  // Gives a command and returns the answer. Throws if the program has ended.
  std::string tell(const std::string& command);

  void kill();

 private:
  [[nodiscard]] std::string readLine() const;

  TemporaryFolder folder_;
  void* process_ = nullptr;
  void* commands_ = nullptr;
  void* answers_ = nullptr;
};

}  // namespace quorrix::test
