// A text that is sought in many others, whatever the case of their letters. What
// can be prepared for all of them is prepared once, and the texts that are searched
// are not copied.
#pragma once

#include <string>
#include <string_view>

namespace quorrix {

class TextSearch {
 public:
  explicit TextSearch(std::string_view sought);

  // The empty text is in every text.
  [[nodiscard]] bool isIn(std::string_view text) const noexcept;

 private:
  // A character as it may stand in a text.
  struct EitherCase {
    char small = '\0';
    char capital = '\0';
  };
  [[nodiscard]] static EitherCase bothCasesOf(char character);
  [[nodiscard]] bool endsAreIn(std::string_view text) const noexcept;

  std::string sought_;  // folded
  EitherCase first_;
  EitherCase last_;
};

}  // namespace quorrix
