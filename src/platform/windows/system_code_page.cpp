#include "platform/system_code_page.h"

#include <windows.h>

#include "platform/failure.h"

namespace quorrix {
namespace {

constexpr unsigned kWestern = 1252;

bool isSingleByte(unsigned codePage) {
  CPINFO info{};
  return ::GetCPInfo(codePage, &info) != 0 && info.MaxCharSize == 1;
}

// The page of the system's language. It differs from GetACP() if the user has set UTF-8
// for programs that use single-byte text.
unsigned codePageOfSystemLanguage() {
  DWORD codePage = 0;
  ::GetLocaleInfoEx(LOCALE_NAME_SYSTEM_DEFAULT, LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
                    reinterpret_cast<LPWSTR>(&codePage), sizeof codePage / sizeof(WCHAR));
  return codePage;
}

std::u16string narrowed(const std::wstring& text) { return {text.begin(), text.end()}; }

std::u16string composed(const std::wstring& text) {
  const int length = static_cast<int>(text.size());
  std::wstring result(text.size() + 1, L'\0');
  const int count = ::NormalizeString(NormalizationC, text.data(), length, result.data(),
                                      static_cast<int>(result.size()));
  if (count <= 0) return narrowed(text);
  result.resize(static_cast<std::size_t>(count));
  return narrowed(result);
}

std::u16string converted(unsigned codePage, const std::string& text) {
  std::wstring characters(text.size(), L'\0');
  const int length = static_cast<int>(text.size());
  const int count = ::MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, text.data(), length,
                                          characters.data(), length);
  if (count <= 0) return {};
  characters.resize(static_cast<std::size_t>(count));
  return count == 1 ? narrowed(characters) : composed(characters);
}

std::u16string changed(std::u16string_view characters, DWORD change) {
  const std::wstring text(characters.begin(), characters.end());
  const int length = static_cast<int>(text.size());
  std::wstring result(text.size(), L'\0');
  ::LCMapStringEx(LOCALE_NAME_INVARIANT, change, text.data(), length, result.data(), length,
                  nullptr, nullptr, 0);
  return narrowed(result);
}

}  // namespace

unsigned systemCodePage() {
  for (const unsigned codePage : {::GetACP(), codePageOfSystemLanguage()}) {
    if (isSingleByte(codePage)) return codePage;
  }
  return kWestern;
}

std::vector<std::u16string> decoded(unsigned codePage, const std::vector<std::string>& texts) {
  if (!isSingleByte(codePage)) throw Failure(failure::kFileNotFound);
  std::vector<std::u16string> characters;
  characters.reserve(texts.size());
  for (const std::string& text : texts) characters.push_back(converted(codePage, text));
  return characters;
}

std::u16string capitalLetters(std::u16string_view characters) {
  return changed(characters, LCMAP_UPPERCASE);
}

std::u16string smallLetters(std::u16string_view characters) {
  return changed(characters, LCMAP_LOWERCASE);
}

}  // namespace quorrix
