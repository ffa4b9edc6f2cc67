#include "platform/linux/locale_code_page.h"

#include <algorithm>
#include <iterator>

namespace quorrix {
namespace {

constexpr unsigned kWestern = 1252;

// A language that is written in several scripts. The variant is the locale's modifier or,
// where the script depends on it, the territory. The first row that matches counts.
struct Script {
  std::string_view language;
  std::string_view variant;
  unsigned codePage;
};

constexpr Script kScripts[] = {
    {"az", "cyrillic", 1251},
    {"az", "IR", 1256},
    {"be", "latin", 1250},
    {"bs", "cyrillic", 1251},
    {"ks", "devanagari", kWestern},
    {"ku", "IQ", 1256},
    {"ku", "IR", 1256},
    {"mn", "CN", kWestern},
    {"pa", "PK", 1256},
    {"sd", "devanagari", kWestern},
    {"sr", "latin", 1250},
    {"tt", "iqtelif", 1254},
    {"uz", "cyrillic", 1251},
};

struct Language {
  std::string_view language;
  unsigned codePage;
};

constexpr Language kLanguages[] = {
    // Central European
    {"bs", 1250},
    {"csb", 1250},
    {"szl", 1250},
    {"cs", 1250},
    {"hr", 1250},
    {"hu", 1250},
    {"pl", 1250},
    {"ro", 1250},
    {"sh", 1250},
    {"sk", 1250},
    {"sl", 1250},
    {"sq", 1250},
    {"tk", 1250},
    // Cyrillic
    {"ab", 1251},
    {"ba", 1251},
    {"be", 1251},
    {"bg", 1251},
    {"ce", 1251},
    {"cv", 1251},
    {"kk", 1251},
    {"ky", 1251},
    {"mhr", 1251},
    {"mk", 1251},
    {"mn", 1251},
    {"os", 1251},
    {"ru", 1251},
    {"sah", 1251},
    {"sr", 1251},
    {"tg", 1251},
    {"tt", 1251},
    {"uk", 1251},
    // Greek
    {"el", 1253},
    // Turkish and its relatives
    {"az", 1254},
    {"crh", 1254},
    {"ku", 1254},
    {"tr", 1254},
    {"uz", 1254},
    // Hebrew
    {"he", 1255},
    {"iw", 1255},
    {"yi", 1255},
    // Arabic
    {"ar", 1256},
    {"ckb", 1256},
    {"fa", 1256},
    {"ks", 1256},
    {"pnb", 1256},
    {"prs", 1256},
    {"ps", 1256},
    {"sd", 1256},
    {"ug", 1256},
    {"ur", 1256},
    // Baltic
    {"et", 1257},
    {"lt", 1257},
    {"ltg", 1257},
    {"sgs", 1257},
    {"lv", 1257},
    // Vietnamese and Thai
    {"vi", 1258},
    {"th", 874},
};

// Cuts `name` before the first `mark`, and returns what followed the mark.
std::string_view takeAfter(char mark, std::string_view& name) {
  const std::size_t place = name.find(mark);
  if (place == std::string_view::npos) return {};
  const std::string_view part = name.substr(place + 1);
  name = name.substr(0, place);
  return part;
}

}  // namespace

unsigned codePageOfLocale(std::string_view locale) {
  const std::string_view modifier = takeAfter('@', locale);
  takeAfter('.', locale);
  const std::string_view territory = takeAfter('_', locale);
  const auto* const script =
      std::find_if(std::begin(kScripts), std::end(kScripts), [&](const Script& row) {
        return row.language == locale && (row.variant == modifier || row.variant == territory);
      });
  if (script != std::end(kScripts)) return script->codePage;
  const auto* const language =
      std::find_if(std::begin(kLanguages), std::end(kLanguages),
                   [&](const Language& row) { return row.language == locale; });
  return language == std::end(kLanguages) ? kWestern : language->codePage;
}

}  // namespace quorrix
