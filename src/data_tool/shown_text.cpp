#include "data_tool/shown_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

#include "platform/utf8.h"

namespace quorrix {
namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Control characters, marks and isolates of the direction of text, line and paragraph
// separators.
constexpr Range kEscaped[] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0x61C, 0x61C},
                              {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}};

// Marks that are drawn over the character before them, and characters that are not drawn.
constexpr Range kWithoutWidth[] = {{0x300, 0x36F},   {0x591, 0x5BD},   {0x5BF, 0x5C7},
                                   {0x610, 0x61A},   {0x64B, 0x65F},   {0xE31, 0xE31},
                                   {0xE34, 0xE3A},   {0xE47, 0xE4E},   {0x200B, 0x200D},
                                   {0x20D0, 0x20F0}, {0xFE00, 0xFE0F}, {0xFEFF, 0xFEFF}};

// Characters of East Asia, and pictures.
constexpr Range kOfDoubleWidth[] = {
    {0x1100, 0x115F}, {0x2E80, 0xA4CF}, {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},
    {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

template <std::size_t count>
bool isIn(const Range (&ranges)[count], char32_t character) {
  return std::any_of(std::begin(ranges), std::end(ranges), [character](const Range& range) {
    return character >= range.first && character <= range.last;
  });
}

std::size_t columnsOf(char32_t character) {
  if (isIn(kWithoutWidth, character)) return 0;
  return isIn(kOfDoubleWidth, character) ? 2 : 1;
}

bool isPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char byte) { return byte >= 0x20 && byte < 0x7F; });
}

void appendEscaped(std::string& text, char32_t character) {
  std::array<char, 16> code{};
  std::snprintf(code.data(), code.size(), character < 0x100 ? "\\x%02X" : "\\u{%X}",
                static_cast<unsigned>(character));
  text += code.data();
}

template <typename Predicate>
std::string escapedIf(Predicate isEscaped, std::string_view utf8) {
  if (isPlain(utf8)) return std::string(utf8);
  std::string text;
  while (!utf8.empty()) {
    const std::string_view before = utf8;
    const char32_t character = takeCharacter(utf8);
    if (character == kMalformed) {
      appendUtf8(text, u'\uFFFD');
    } else if (isEscaped(character)) {
      appendEscaped(text, character);
    } else {
      text += before.substr(0, before.size() - utf8.size());
    }
  }
  return text;
}

bool isTabOrLineBreak(char32_t character) {
  return character == '\t' || character == '\r' || character == '\n';
}

bool isControl(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

}  // namespace

std::string escapedText(std::string_view utf8) {
  return escapedIf([](char32_t character) { return isIn(kEscaped, character); }, utf8);
}

std::string escapedControls(std::string_view utf8) {
  return escapedIf(
      [](char32_t character) { return isControl(character) && !isTabOrLineBreak(character); },
      utf8);
}

std::size_t columnsOf(std::string_view utf8) {
  if (isPlain(utf8)) return utf8.size();
  std::size_t columns = 0;
  while (!utf8.empty()) columns += columnsOf(takeCharacter(utf8));
  return columns;
}

std::string cutToColumns(std::string_view utf8, std::size_t columns) {
  if (columnsOf(utf8) <= columns) return std::string(utf8);
  if (columns == 0) return {};
  std::string_view rest = utf8;
  std::size_t taken = 0;
  std::size_t end = 0;
  while (!rest.empty()) {
    taken += columnsOf(takeCharacter(rest));
    if (taken > columns - 1) break;
    end = utf8.size() - rest.size();
  }
  return std::string(utf8.substr(0, end)) + "…";
}

std::string paddedTo(std::string text, std::size_t columns) {
  const std::size_t taken = columnsOf(text);
  if (taken < columns) text.append(columns - taken, ' ');
  return text;
}

}  // namespace quorrix
