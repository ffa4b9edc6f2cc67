#include "platform/system_code_page.h"

#include <iconv.h>
#include <locale.h>
#include <wctype.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "platform/failure.h"
#include "platform/linux/locale_code_page.h"

namespace quorrix {
namespace {

constexpr const char* kLocaleVariables[] = {"LC_ALL", "LC_CTYPE", "LANG"};

class Converter {
 public:
  explicit Converter(unsigned codePage)
      : handle_(::iconv_open("UTF-16LE", ("CP" + std::to_string(codePage)).c_str())) {
    if (!isOpen()) throw Failure(failure::kFileNotFound);
  }
  ~Converter() { ::iconv_close(handle_); }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  // A letter that could be followed by a mark is kept back until the end of the text.
  [[nodiscard]] std::u16string convert(std::string text) const {
    ::iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    std::array<char, 16> buffer{};
    char* from = text.data();
    std::size_t fromLeft = text.size();
    char* to = buffer.data();
    std::size_t toLeft = buffer.size();
    constexpr auto kFailed = static_cast<std::size_t>(-1);
    if (::iconv(handle_, &from, &fromLeft, &to, &toLeft) == kFailed ||
        ::iconv(handle_, nullptr, nullptr, &to, &toLeft) == kFailed) {
      return {};
    }
    std::u16string characters;
    for (std::size_t i = 0; i + 1 < buffer.size() - toLeft; i += 2) {
      const auto low = static_cast<unsigned char>(buffer[i]);
      const auto high = static_cast<unsigned char>(buffer[i + 1]);
      characters.push_back(static_cast<char16_t>((high << 8U) | low));
    }
    return characters;
  }

 private:
  [[nodiscard]] bool isOpen() const { return reinterpret_cast<std::intptr_t>(handle_) != -1; }

  iconv_t handle_;
};

// The program's own locale may be "C", in which only the letters of ASCII have a case. A
// system without "C.UTF-8" has to do with them.
locale_t localeOfAllLetters() {
  const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale ? locale : ::newlocale(LC_CTYPE_MASK, "C", nullptr);
}

template <typename Change>
std::u16string changed(std::u16string_view characters, Change change) {
  const std::unique_ptr<std::remove_pointer_t<locale_t>, decltype(&::freelocale)> locale(
      localeOfAllLetters(), &::freelocale);
  std::u16string result(characters);
  for (char16_t& character : result) {
    character = static_cast<char16_t>(change(character, locale.get()));
  }
  return result;
}

}  // namespace

unsigned systemCodePage() {
  for (const char* const variable : kLocaleVariables) {
    const char* const locale = std::getenv(variable);
    if (locale != nullptr && *locale != '\0') return codePageOfLocale(locale);
  }
  return codePageOfLocale("C");
}

std::vector<std::u16string> decoded(unsigned codePage, const std::vector<std::string>& texts) {
  const Converter converter(codePage);
  std::vector<std::u16string> characters;
  characters.reserve(texts.size());
  for (const std::string& text : texts) characters.push_back(converter.convert(text));
  return characters;
}

std::u16string capitalLetters(std::u16string_view characters) {
  return changed(characters, ::towupper_l);
}

std::u16string smallLetters(std::u16string_view characters) {
  return changed(characters, ::towlower_l);
}

}  // namespace quorrix
