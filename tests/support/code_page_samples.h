// A word in a language of each code page, with the bytes that the page has for it.
#pragma once

namespace quorrix::test {

struct CodePageSample {
  unsigned codePage;
  const char* word;      // UTF-8
  const char* capitals;  // the word in capitals; the word itself in a script without case
  const char* bytes;     // of the word
};

inline constexpr CodePageSample kCodePageSamples[] = {
    {874, "ไทย", "ไทย", "\xE4\xB7\xC2"},
    {1250, "Żółw", "ŻÓŁW", "\xAF\xF3\xB3w"},
    {1251, "Жук", "ЖУК", "\xC6\xF3\xEA"},
    {1252, "Käse", "KÄSE", "K\xE4se"},
    {1253, "Όχις", "ΌΧΙΣ", "\xBC\xF7\xE9\xF2"},
    {1254, "Ağaç", "AĞAÇ",
     "A\xF0"
     "a\xE7"},
    {1255, "שלום", "שלום", "\xF9\xEC\xE5\xED"},
    {1256, "سلام", "سلام", "\xD3\xE1\xC7\xE3"},
    {1257, "Ąžuolas", "ĄŽUOLAS", "\xC0\xFEuolas"},
    {1258, "Tiếng", "TIẾNG", "Ti\xEA\xECng"},
};

}  // namespace quorrix::test
