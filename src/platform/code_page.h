// The single-byte code page of the data files. A stored character is one byte, so that a
// field's width is its length in bytes; everything outside the program uses UTF-8.
//
// Every byte has a character and is stored again as the same byte. A byte that the page
// does not assign stands for the control character with its number, or from 0xA0 on for a
// private-use character.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace quorrix {

class CodePage {
 public:
  // A page of Windows, such as 1252. Throws kFileNotFound if the system lacks the page.
  explicit CodePage(unsigned number);

  [[nodiscard]] unsigned number() const { return number_; }

  [[nodiscard]] char16_t character(char byte) const { return characters_[indexOf(byte)]; }

  // Each character that is missing from the page, and each malformed sequence, becomes
  // "?". A letter that the page has only as a letter and a mark becomes these two.
  [[nodiscard]] std::string fromUtf8(std::string_view utf8) const;

  // nullopt when any character would become "?".
  [[nodiscard]] std::optional<std::string> exactFromUtf8(std::string_view utf8) const;

  [[nodiscard]] std::string toUtf8(std::string_view text) const;

  // Two characters are equal except for letter case if and only if this is the same for
  // both. The same in every locale: "I" and "i" are a pair in the Turkish page, too, and
  // the letters with and without a dot that have no such partner equal only themselves.
  [[nodiscard]] char folded(char byte) const { return folded_[indexOf(byte)]; }

  [[nodiscard]] bool beginsWithIgnoringCase(std::string_view text,
                                            std::string_view beginning) const;

 private:
  static constexpr std::size_t kBytes = 256;

  [[nodiscard]] static std::size_t indexOf(char byte) { return static_cast<unsigned char>(byte); }
  [[nodiscard]] const std::string* find(char32_t character) const;
  void readCharacters();
  void readComposedLetters();
  void readLetterCase();

  unsigned number_;
  std::array<char16_t, kBytes> characters_{};
  std::map<char16_t, std::string> bytes_;  // one or two for each character
  std::array<char, kBytes> folded_{};
};

}  // namespace quorrix
