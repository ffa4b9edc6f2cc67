// Collects what is written, and passes it on in large pieces.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "data_tool/output.h"

namespace quorrix {

class BufferedOutput final : public Output {
 public:
  explicit BufferedOutput(std::function<void(std::string_view)> passOn);

  void write(std::string_view text) override;

  // Passes on the rest. The destructor does not, because that may fail.
  void flush();

 private:
  std::function<void(std::string_view)> passOn_;
  std::string buffer_;
};

}  // namespace quorrix
