// The single-byte code page of the data files. A stored character is one byte, so that a
// field's width is its length in bytes.
//
// Every byte has a character and is stored again as the same byte. A byte that the page
// does not assign stands for the control character with its number, or from 0xA0 on for a
// private-use character. The Vietnamese page has most letters with a tone only as two
// bytes, the letter and its mark; they are read as one character.
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

  // Each character that is missing from the page, and each malformed sequence, becomes
  // "?".
  [[nodiscard]] std::string fromUtf8(std::string_view utf8) const;

  // nullopt when any character would become "?".
  [[nodiscard]] std::optional<std::string> exactFromUtf8(std::string_view utf8) const;

  [[nodiscard]] std::u16string toUtf16(std::string_view text) const;
  [[nodiscard]] std::string toUtf8(std::string_view text) const;

  // How many bytes the character takes: 1 or 2; 0 if it is missing from the page.
  [[nodiscard]] std::size_t storedLength(char16_t character) const;

  // The most bytes that a character takes.
  [[nodiscard]] std::size_t longestCharacter() const { return composed_.empty() ? 1 : 2; }

  // Two characters are equal except for letter case if and only if this is the same for
  // both. It does not depend on the language: in the Turkish page, "I" and "i" are equal,
  // and so are both to the capital with a dot and the small letter without one.
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
  std::map<char16_t, std::string> bytes_;     // one or two for each character
  std::map<std::string, char16_t> composed_;  // characters of two bytes
  std::array<char, kBytes> folded_{};
};

}  // namespace quorrix
