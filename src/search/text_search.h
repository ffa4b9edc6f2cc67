// A text that is sought in many others, whatever the case of their letters. What
// can be prepared for all of them is prepared once, and nothing is copied or folded
// in the texts that are searched.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace quorrix {

class TextSearch {
 public:
  explicit TextSearch(std::string_view sought);

  // The empty text is in every text.
  [[nodiscard]] bool isIn(std::string_view text) const noexcept;

 private:
  std::string sought_;  // folded
  // By a byte of the text, as it stands there: how far from it the sought text can
  // end next, when it does not end with this very byte.
  std::array<std::size_t, 256> skips_;
};

}  // namespace quorrix
