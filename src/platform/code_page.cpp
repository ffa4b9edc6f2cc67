#include "platform/code_page.h"

#include <algorithm>
#include <vector>

#include "platform/system_code_page.h"
#include "platform/utf8.h"

namespace quorrix {
namespace {

constexpr unsigned kFirstUpperByte = 0x80;
constexpr unsigned kFirstPrintableUpperByte = 0xA0;
constexpr char16_t kPrivateUse = 0xF700;  // plus the byte
constexpr char16_t kFinalSigma = 0x03C2;
constexpr char16_t kSigma = 0x03C3;
constexpr char16_t kCapitalIWithDot = 0x0130;
constexpr char16_t kSmallIWithoutDot = 0x0131;

char16_t standInFor(unsigned byte) {
  return static_cast<char16_t>(byte < kFirstPrintableUpperByte ? byte : kPrivateUse + byte);
}

// Without a branch in the loop, the compiler handles many bytes at a time.
bool isAscii(std::string_view text) {
  unsigned all = 0;
  for (const char byte : text) all |= static_cast<unsigned char>(byte);
  return all < kFirstUpperByte;
}

bool isPrivateUse(char16_t character) { return character >= 0xE000 && character < 0xF900; }

}  // namespace

CodePage::CodePage(unsigned number) : number_(number) {
  readCharacters();
  readComposedLetters();
  readLetterCase();
}

void CodePage::readCharacters() {
  std::vector<std::string> texts;
  for (unsigned byte = kFirstUpperByte; byte < kBytes; ++byte) {
    texts.emplace_back(1, static_cast<char>(byte));
  }
  const std::vector<std::u16string> upper = decoded(number_, texts);
  for (unsigned byte = 0; byte < kBytes; ++byte) {
    auto character = static_cast<char16_t>(byte);
    if (byte >= kFirstUpperByte) {
      const std::u16string& text = upper[byte - kFirstUpperByte];
      const bool isAssigned = text.size() == 1 && !isPrivateUse(text.front());
      character = isAssigned ? text.front() : standInFor(byte);
    }
    characters_[byte] = character;
    bytes_.try_emplace(character, 1, static_cast<char>(byte));
  }
}

// Keyboards type a letter with a tone as one character.
void CodePage::readComposedLetters() {
  std::vector<std::string> pairs;
  for (unsigned mark = kFirstUpperByte; mark < kBytes; ++mark) {
    pairs.push_back({'a', static_cast<char>(mark)});
  }
  const std::vector<std::u16string> withEveryByte = decoded(number_, pairs);
  std::vector<std::string> letters;
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    if (withEveryByte[i].size() != 1) continue;
    for (unsigned letter = 0; letter < kBytes; ++letter) {
      letters.push_back({static_cast<char>(letter), pairs[i].back()});
    }
  }
  const std::vector<std::u16string> composed = decoded(number_, letters);
  for (std::size_t i = 0; i < letters.size(); ++i) {
    if (composed[i].size() != 1) continue;
    if (bytes_.try_emplace(composed[i].front(), letters[i]).second) {
      composed_.emplace(letters[i], composed[i].front());
    }
  }
}

// Two letters are a pair only if each is the other's. Greek and Turkish have letters with
// more forms.
void CodePage::readLetterCase() {
  const std::u16string small =
      smallLetters(std::u16string_view(characters_.data(), characters_.size()));
  const std::u16string capitals = capitalLetters(small);
  for (std::size_t byte = 0; byte < kBytes; ++byte) {
    char16_t letter = capitals[byte] == characters_[byte] ? small[byte] : characters_[byte];
    if (letter == kFinalSigma) letter = kSigma;
    if (letter == kCapitalIWithDot || letter == kSmallIWithoutDot) letter = u'i';
    const std::string* const stored = find(letter);
    const bool isInPage = stored != nullptr && stored->size() == 1;
    folded_[byte] = isInPage ? stored->front() : static_cast<char>(byte);
  }
}

const std::string* CodePage::find(char32_t character) const {
  if (character > 0xFFFF) return nullptr;
  const auto found = bytes_.find(static_cast<char16_t>(character));
  return found == bytes_.end() ? nullptr : &found->second;
}

std::string CodePage::fromUtf8(std::string_view utf8) const {
  std::string text;
  text.reserve(utf8.size());
  while (!utf8.empty()) {
    const std::string* const bytes = find(takeCharacter(utf8));
    if (bytes != nullptr) {
      text += *bytes;
    } else {
      text += '?';
    }
  }
  return text;
}

std::optional<std::string> CodePage::exactFromUtf8(std::string_view utf8) const {
  std::string text;
  while (!utf8.empty()) {
    const std::string* const bytes = find(takeCharacter(utf8));
    if (bytes == nullptr) return std::nullopt;
    text += *bytes;
  }
  return text;
}

std::u16string CodePage::toUtf16(std::string_view text) const {
  std::u16string characters;
  characters.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto pair =
        composed_.empty() ? composed_.end() : composed_.find(std::string(text.substr(i, 2)));
    if (pair == composed_.end()) {
      characters.push_back(characters_[indexOf(text[i])]);
    } else {
      characters.push_back(pair->second);
      ++i;
    }
  }
  return characters;
}

std::string CodePage::toUtf8(std::string_view text) const {
  // The lower half of every page is ASCII. Most texts have nothing else.
  if (isAscii(text)) return std::string(text);
  std::string utf8;
  utf8.reserve(text.size());
  for (const char16_t character : toUtf16(text)) appendUtf8(utf8, character);
  return utf8;
}

std::size_t CodePage::storedLength(char16_t character) const {
  const std::string* const bytes = find(character);
  return bytes == nullptr ? 0 : bytes->size();
}

bool CodePage::beginsWithIgnoringCase(std::string_view text, std::string_view beginning) const {
  return text.size() >= beginning.size() &&
         std::equal(beginning.begin(), beginning.end(), text.begin(),
                    [this](char a, char b) { return folded(a) == folded(b); });
}

}  // namespace quorrix
