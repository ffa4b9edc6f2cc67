// Searches many texts for one text, ignoring letter case. The text sought is prepared
// once, and the texts that are searched are not copied.
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
  // The two forms in which a character may appear in a text.
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
