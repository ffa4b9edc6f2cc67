// Where a command writes its result, in UTF-8.
#pragma once

#include <string_view>

namespace quorrix {

class Output {
 public:
  virtual ~Output() = default;

  virtual void write(std::string_view text) = 0;
};

}  // namespace quorrix
