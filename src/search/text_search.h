// Searches many texts for one text, ignoring letter case. The text sought is prepared
// once, and the texts that are searched are not copied.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "platform/code_page.h"

namespace quorrix {

class TextSearch {
 public:
  // `codePage` decides which letters differ only in case, and must outlive this.
  TextSearch(const CodePage& codePage, std::string_view sought);

  // The empty text is in every text.
  [[nodiscard]] bool isIn(std::string_view text) const noexcept;

 private:
  // The forms in which a character may appear in a text. A letter has two at most, except
  // the Greek sigma, which has three, and the Turkish i, which has four. Unused places
  // repeat the character.
  using Forms = std::array<char, 4>;
  [[nodiscard]] Forms formsOf(char character) const;
  [[nodiscard]] bool endsAreIn(std::string_view text) const noexcept;

  const CodePage& codePage_;
  std::string sought_;  // folded
  Forms first_{};
  Forms last_{};
};

}  // namespace quorrix
