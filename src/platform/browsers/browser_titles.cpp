#include "platform/browsers/browser_titles.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>
#include <string>

#include "platform/browsers/browser_title_tables.h"

namespace quorrix {
namespace {

// --- reading a name -------------------------------------------------------------------------

struct Replacement {
  std::string_view from;
  std::string_view to;
};

// Names in right-to-left languages contain directional marks, and they may be switched on
// for other languages. They are not separators. Chinese and Japanese have their own
// parentheses.
constexpr Replacement kReplacements[] = {
    {"\u061c", ""}, {"\u200e", ""}, {"\u200f", ""},  {"\u202a", ""},  {"\u202b", ""},
    {"\u202c", ""}, {"\u202d", ""}, {"\u202e", ""},  {"\u2066", ""},  {"\u2067", ""},
    {"\u2068", ""}, {"\u2069", ""}, {"\uff08", "("}, {"\uff09", ")"},
};

std::string withoutMarks(std::string_view name) {
  std::string plain;
  plain.reserve(name.size());
  while (!name.empty()) {
    const auto* const found =
        std::find_if(std::begin(kReplacements), std::end(kReplacements),
                     [name](const Replacement& each) { return name.starts_with(each.from); });
    if (found == std::end(kReplacements)) {
      plain += name.front();
      name.remove_prefix(1);
    } else {
      plain += found->to;
      name.remove_prefix(found->from.size());
    }
  }
  return plain;
}

constexpr std::string_view kBlanks[] = {" ", "\t", "\u00a0", "\u3000"};
constexpr std::string_view kClosingBrackets[] = {
    ")",      "]",      "}",      "\u300d", "\u300f", "\u3011", "\u3015", "\u3009",
    "\u300b", "\uff3d", "\uff5d", "\ufe5a", "\ufe5c", "\ufe5e", "\uff60", "\uff63"};

bool removeEnd(std::string_view& text, std::string_view end) {
  if (!text.ends_with(end)) return false;
  text.remove_suffix(end.size());
  return true;
}

// The text without the browser's name and what joins it to the page's title; nullopt if
// the text does not end with them.
std::optional<std::string_view> pageBeforeName(std::string_view text,
                                               std::span<const std::string_view> names,
                                               std::span<const NamePlace> places) {
  for (const std::string_view name : names) {
    for (const NamePlace& place : places) {
      std::string_view page = text;
      if (removeEnd(page, place.after) && removeEnd(page, name) && removeEnd(page, place.before)) {
        return page;
      }
    }
  }
  return std::nullopt;
}

// --- Firefox --------------------------------------------------------------------------------

bool isPrivatePageOfFirefox(std::string_view page) {
  if (std::any_of(std::begin(kFirefoxPrivateBeginnings), std::end(kFirefoxPrivateBeginnings),
                  [page](std::string_view beginning) { return page.starts_with(beginning); })) {
    return true;
  }
  return removeEnd(page, kFirefoxPrivatePart) && (page.empty() || page.ends_with(" — "));
}

TitleKind kindOfFirefox(std::string_view text) {
  if (text == kFirefoxName) return TitleKind::BrowserNameAlone;
  const auto page = pageBeforeName(text, std::span(&kFirefoxName, 1), kFirefoxPlaces);
  return page && !page->empty() && !isPrivatePageOfFirefox(*page) ? TitleKind::Ordinary
                                                                  : TitleKind::NotOrdinary;
}

// --- Chromium -------------------------------------------------------------------------------

// A text that ends in parentheses.
struct Parenthesised {
  std::string_view before;
  std::string_view inside;
};

// Splits at the opening parenthesis that matches the closing one at the end.
std::optional<Parenthesised> endInParentheses(std::string_view text) {
  if (!text.ends_with(')')) return std::nullopt;
  std::size_t open = 0;
  for (std::size_t at = text.size(); at-- > 0;) {
    if (text[at] == ')') ++open;
    if (text[at] == '(' && --open == 0) {
      const std::string_view inside = text.substr(at + 1, text.size() - at - 2);
      return Parenthesised{text.substr(0, at), inside};
    }
  }
  return std::nullopt;
}

bool isPrivateWord(std::string_view text) {
  return std::find(std::begin(kPrivateWords), std::end(kPrivateWords), text) !=
         std::end(kPrivateWords);
}

// Finds a word also among others, in case a future version adds some.
bool hasPrivateWord(std::string_view text) {
  return std::any_of(
      std::begin(kPrivateWords), std::end(kPrivateWords), [text](std::string_view word) {
        for (auto at = text.find(word); at != std::string_view::npos;
             at = text.find(word, at + 1)) {
          const auto end = at + word.size();
          if ((at == 0 || text[at - 1] == ' ') && (end == text.size() || text[end] == ' ')) {
            return true;
          }
        }
        return false;
      });
}

bool endsWithName(std::string_view text, std::span<const std::string_view> names) {
  return pageBeforeName(text, names, kChromiumPlaces).has_value();
}

bool followsName(const Parenthesised& text, std::span<const std::string_view> names) {
  std::string_view before = text.before;
  removeEnd(before, " ");
  // Lithuanian quotes everything before the parentheses: „„Page“ – „Chromium““ (svečias)
  return endsWithName(before, names) || (removeEnd(before, "“") && endsWithName(before, names));
}

// Words in parentheses directly after the browser's name mean a private window in every
// language, even if the words are not known here. The exception is a profile's name in
// Russian.
TitleKind kindByParentheses(const Parenthesised& text, std::span<const std::string_view> names) {
  if (text.inside.empty()) return TitleKind::NotOrdinary;
  std::string_view before = text.before;
  const bool spaced = removeEnd(before, " ");
  return spaced && pageBeforeName(before, names, std::span(&kPlaceBeforeProfileInParentheses, 1))
             ? TitleKind::Ordinary
             : TitleKind::NotOrdinary;
}

// The page's title may contain the browser's name too, so there may be several ways to
// read a name. If one of them is private, the window is not ordinary.
TitleKind kindByProfile(std::string_view text, std::span<const std::string_view> names) {
  TitleKind kind = TitleKind::NotOrdinary;
  for (const std::string_view separator : kProfileSeparators) {
    for (auto at = text.find(separator); at != std::string_view::npos;
         at = text.find(separator, at + 1)) {
      const std::string_view profile = text.substr(at + separator.size());
      if (profile.empty() || !endsWithName(text.substr(0, at), names)) continue;
      if (isPrivateWord(profile)) return TitleKind::NotOrdinary;
      kind = TitleKind::Ordinary;
    }
  }
  return kind;
}

TitleKind kindOfChromium(std::string_view text, std::span<const std::string_view> names) {
  if (endsWithName(text, names)) return TitleKind::Ordinary;
  if (const auto end = endInParentheses(text)) {
    // The window of an incognito app has no browser's name before the parentheses, and
    // its page can choose a title that looks like an ordinary window with a profile.
    if (hasPrivateWord(end->inside)) return TitleKind::NotOrdinary;
    if (followsName(*end, names)) return kindByParentheses(*end, names);
  }
  return kindByProfile(text, names);
}

}  // namespace

TitleKind titleKind(BrowserKind family, std::string_view accessibleName) {
  const std::string text = withoutMarks(accessibleName);
  switch (family) {
    case BrowserKind::Firefox:
      return kindOfFirefox(text);
    case BrowserKind::Chromium:
      return kindOfChromium(text, kChromiumNames);
    case BrowserKind::GoogleChrome:
      return kindOfChromium(text, kChromeNames);
    case BrowserKind::GnomeWeb:
      break;
  }
  return TitleKind::NotOrdinary;
}

bool endsInBrackets(std::string_view accessibleName) {
  const std::string plain = withoutMarks(accessibleName);
  std::string_view text = plain;
  const auto removeBlank = [&text](std::string_view blank) { return removeEnd(text, blank); };
  while (std::ranges::any_of(kBlanks, removeBlank)) {
  }
  return std::ranges::any_of(kClosingBrackets,
                             [text](std::string_view bracket) { return text.ends_with(bracket); });
}

}  // namespace quorrix
