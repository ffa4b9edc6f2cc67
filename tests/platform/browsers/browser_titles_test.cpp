#include "platform/browsers/browser_titles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/browsers/browser_titles_data.h"

namespace quorrix {
namespace {

constexpr std::string_view kPage = "{page}";
constexpr std::string_view kProfile = "{profile}";

// --- the data file --------------------------------------------------------------------------

// How one kind of window is named in one language.
struct Row {
  std::string browser;
  std::string language;
  std::string kind;
  std::string versions;
  std::string title;

  [[nodiscard]] bool isOrdinary() const { return kind.starts_with("ordinary"); }
  [[nodiscard]] bool isApp() const { return kind == "app" || kind == "app-profile"; }
  [[nodiscard]] BrowserKind family() const {
    return browser == "firefox" ? BrowserKind::Firefox : BrowserKind::Chromium;
  }
  [[nodiscard]] bool has(std::string_view part) const {
    return title.find(part) != std::string::npos;
  }
};

// Removes the text before the next separator, and the separator.
std::string takeUntil(char separator, std::string_view& text) {
  const auto end = std::min(text.find(separator), text.size());
  std::string taken(text.substr(0, end));
  text.remove_prefix(std::min(end + 1, text.size()));
  return taken;
}

// Invisible characters are written as \\u and four hexadecimal digits; in UTF-8 they take
// two or three bytes.
std::string withInvisibleCharacters(std::string_view text) {
  std::string result;
  for (auto at = text.find("\\u"); at != std::string_view::npos; at = text.find("\\u")) {
    result += text.substr(0, at);
    const auto code =
        static_cast<unsigned>(std::stoul(std::string(text.substr(at + 2, 4)), nullptr, 16));
    if (code < 0x800) {
      result += static_cast<char>(0xc0U | (code >> 6U));
    } else {
      result += static_cast<char>(0xe0U | (code >> 12U));
      result += static_cast<char>(0x80U | ((code >> 6U) & 0x3fU));
    }
    result += static_cast<char>(0x80U | (code & 0x3fU));
    text.remove_prefix(at + 6);
  }
  return result.append(text);
}

std::vector<Row> readRows() {
  std::vector<Row> rows;
  for (std::string_view rest = test::kBrowserTitles; !rest.empty();) {
    const std::string line = takeUntil('\n', rest);
    if (line.empty() || line.starts_with('#')) continue;
    std::string_view cells = line;
    Row row;
    for (std::string* cell : {&row.browser, &row.language, &row.kind, &row.versions, &row.title}) {
      *cell = takeUntil('\t', cells);
    }
    row.title = withInvisibleCharacters(row.title);
    rows.push_back(std::move(row));
  }
  return rows;
}

std::string replaced(std::string text, std::string_view from, std::string_view to) {
  for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

std::string titleOf(const Row& row, std::string_view page, std::string_view profile) {
  const auto at = row.title.find(kPage);
  if (at == std::string::npos) return replaced(row.title, kProfile, profile);
  // Page and profile are inserted separately, so that a placeholder in one is not
  // replaced by the other.
  return replaced(row.title.substr(0, at), kProfile, profile) + std::string(page) +
         replaced(row.title.substr(at + kPage.size()), kProfile, profile);
}

// --- page titles and profile names ----------------------------------------------------------

const std::vector<std::string>& pages() {
  static const std::vector<std::string> kPages = {
      "Roses",
      "Розы",
      "薔薇 (バラ)",
      "\u200fورود",
      "\u2068Roses\u2069",
      "Chromium",
      "Google Chrome",
      "Mozilla Firefox",
      "Roses - Chromium",
      "Roses – Chromium",
      "Roses — Mozilla Firefox",
      "Roses - Chromium - Work",
      "Roses – Chromium – Work",
      "Roses – Chromium (Work)",
      "Roses – Chromium (Work",
      "Roses: Chromium: Work",
      "„Roses“ – „Chromium“ – Work",
      "Roses - Chromium - ",
      "Roses - Google Chrome - Work",
      "Roses – Google Chrome (Work)",
      "Roses - Chromium (Incognito)",
      "Roses – Chromium (инкогнито",
      "Roses — Mozilla Firefox Private Browsing",
      "Incognito",
      "(Guest)",
      "(",
      ")",
      ":) :( ((",
      " – ",
      "{profile}",
  };
  return kPages;
}

const std::vector<std::string>& profiles() {
  static const std::vector<std::string> kProfiles = {
      "Work",
      "Person 1",
      "Пользователь\u00a01",
      "小明",
      "أحمد",
      "a - b",
      "a: b – c",
      "Alice (Work)",
      "Alice (Guesthouse)",
      "Alice (NoGuest)",
      "(Work)",
      "Chromium",
      "Roses - Chromium",
      "Mozilla Firefox",
  };
  return kProfiles;
}

// In Persian and Scottish Gaelic, the title of a private window of Firefox 140 has its
// words before the page's title, in Czech after it. Nothing else distinguishes such a
// name from that of an ordinary window.
bool readsLikeAPrivateWindowOfFirefox(std::string_view name) {
  return name.starts_with("مرور خصوصی ") || name.starts_with("Brabhsadh prìobhaideach ") ||
         name.find("Anonymní prohlížení — ") != std::string_view::npos;
}

std::string inWords(const Row& row, const std::string& name) {
  return row.browser + " " + row.versions + " " + row.language + " " + row.kind + ": " + name;
}

template <typename Check>
void forEveryName(const Check& check) {
  for (const Row& row : readRows()) {
    for (const std::string& page : pages()) {
      for (const std::string& profile : profiles()) {
        const std::string name = titleOf(row, page, profile);
        check(row, page, name);
        if (!row.has(kProfile)) break;
      }
      if (!row.has(kPage)) break;
    }
  }
}

// --- all languages --------------------------------------------------------------------------

TEST(BrowserTitleData, HasEveryLanguageOfEveryVersion) {
  std::map<std::pair<std::string, std::string>, std::set<std::string>> languages;
  std::map<std::string, std::set<std::string>> kinds;
  for (const Row& row : readRows()) {
    std::string_view versions = row.versions;
    while (!versions.empty()) {
      const std::string version = takeUntil(' ', versions);
      languages[{row.browser, version}].insert(row.language);
      kinds[row.browser + " " + version + " " + row.language].insert(
          row.kind + (row.has(kPage) ? " with page" : ""));
    }
  }
  // 55 files of texts in Debian's chromium-l10n and chromium-common; 102 packages
  // firefox-esr-l10n-*, and the American English of firefox-esr.
  EXPECT_EQ((languages[{"chromium", "150"}].size()), 55U);
  EXPECT_EQ((languages[{"chromium", "156"}].size()), 55U);
  EXPECT_EQ((languages[{"firefox", "140"}].size()), 103U);
  EXPECT_EQ((languages[{"firefox", "153"}].size()), 103U);
  EXPECT_EQ(languages.size(), 4U);
  const std::set<std::string> chromiumKinds = {"ordinary with page",  "ordinary-profile with page",
                                               "app with page",       "app-profile with page",
                                               "incognito with page", "incognito-app with page",
                                               "guest with page",     "guest-app with page"};
  const std::set<std::string> firefoxKinds = {
      "ordinary", "ordinary with page", "ordinary-profile", "ordinary-profile with page",
      "private",  "private with page",  "private-profile",  "private-profile with page"};
  for (auto& [language, found] : kinds) {
    if (language.starts_with("chromium 156")) {
      EXPECT_EQ(found.erase("isolated with page"), 1U) << language;
      EXPECT_EQ(found.erase("isolated-app with page"), 1U) << language;
    }
    EXPECT_EQ(found, language.starts_with("chromium") ? chromiumKinds : firefoxKinds) << language;
  }
}

TEST(BrowserTitle, IsOrdinaryInEveryLanguageWhateverThePageAndTheProfileAreCalled) {
  int taken = 0;
  forEveryName([&](const Row& row, const std::string&, const std::string& name) {
    if (!row.isOrdinary() || readsLikeAPrivateWindowOfFirefox(name)) return;
    const bool nameAlone = row.title == "Mozilla Firefox";
    EXPECT_EQ(titleKind(row.family(), name),
              nameAlone ? TitleKind::BrowserNameAlone : TitleKind::Ordinary)
        << inWords(row, name);
    ++taken;
  });
  EXPECT_GT(taken, 10'000);
}

TEST(BrowserTitle, IsNeverOrdinaryForAPrivateWindowWhateverThePageIsCalled) {
  int refused = 0;
  forEveryName([&](const Row& row, const std::string&, const std::string& name) {
    if (row.isOrdinary() || row.isApp()) return;
    EXPECT_EQ(titleKind(row.family(), name), TitleKind::NotOrdinary) << inWords(row, name);
    ++refused;
  });
  EXPECT_GT(refused, 10'000);
}

// A page's title may look like the name of an ordinary window in another language.
TEST(BrowserTitle, IsNeverOrdinaryForAPrivateWindowOnAPageThatImitatesAnOrdinaryOne) {
  const std::vector<Row> rows = readRows();
  std::set<std::string> imitations;
  for (const Row& row : rows) {
    if (row.isOrdinary()) imitations.insert(titleOf(row, "Roses", "Work"));
  }
  for (const Row& row : rows) {
    if (row.isOrdinary() || row.isApp()) continue;
    for (const std::string& page : imitations) {
      const std::string name = titleOf(row, page, "Work");
      EXPECT_EQ(titleKind(row.family(), name), TitleKind::NotOrdinary) << inWords(row, name);
    }
  }
}

TEST(BrowserTitle, IsNeverOrdinaryForAPrivateWindowOnAPageOfRandomPieces) {
  const std::vector<std::string_view> pieces = {"Roses",
                                                "Work",
                                                "Chromium",
                                                "Google Chrome",
                                                "Mozilla Firefox",
                                                "क्रोमियम",
                                                " - ",
                                                " – ",
                                                " — ",
                                                ": ",
                                                " -- ",
                                                "\u00a0— ",
                                                "“ – „",
                                                "“",
                                                "„",
                                                " (",
                                                ")",
                                                "（",
                                                "）",
                                                "(",
                                                " ",
                                                "Incognito",
                                                "инкогнито",
                                                "Private Browsing",
                                                "\u200f",
                                                "\u2068",
                                                "\u2069",
                                                "․ "};
  std::vector<Row> rows = readRows();
  std::erase_if(rows, [](const Row& row) { return row.isApp(); });
  std::mt19937 random(12);  // NOLINT: the same pages in every run
  const auto below = [&random](std::size_t limit) { return random() % limit; };
  for (int count = 0; count < 100'000; ++count) {
    std::string page = "R";
    for (std::size_t left = below(9); left > 0; --left) page += pieces[below(pieces.size())];
    const Row& row = rows[below(rows.size())];
    const std::string name = titleOf(row, page, "Work");
    if (!row.isOrdinary()) {
      ASSERT_EQ(titleKind(row.family(), name), TitleKind::NotOrdinary) << inWords(row, name);
    } else if (row.has(kPage)) {
      ASSERT_EQ(titleKind(row.family(), name), TitleKind::Ordinary) << inWords(row, name);
    }
  }
}

TEST(BrowserTitle, IsNotOrdinaryForAnAppUnlessItsPageSaysSo) {
  int refused = 0;
  forEveryName([&](const Row& row, const std::string& page, const std::string& name) {
    // The name of an app's window is its page's title, so the page decides.
    if (!row.isApp() || page.find("Chromium") != std::string::npos ||
        name.find("Chromium") != std::string::npos) {
      return;
    }
    EXPECT_EQ(titleKind(row.family(), name), TitleKind::NotOrdinary) << inWords(row, name);
    ++refused;
  });
  EXPECT_GT(refused, 1'000);
}

// Debian has no packages of it; its texts are known to differ only in the name.
TEST(BrowserTitle, OfGoogleChromeIsReadLikeThatOfChromium) {
  forEveryName([](const Row& row, const std::string&, const std::string& name) {
    const std::string chrome = replaced(name, "Chromium", "Google Chrome");
    if (row.browser != "chromium" || row.isApp() || row.language == "hi") return;
    EXPECT_EQ(titleKind(BrowserKind::GoogleChrome, chrome),
              row.isOrdinary() ? TitleKind::Ordinary : TitleKind::NotOrdinary)
        << inWords(row, chrome);
  });
}

// --- by hand --------------------------------------------------------------------------------

TitleKind chromium(std::string_view name) { return titleKind(BrowserKind::Chromium, name); }
TitleKind firefox(std::string_view name) { return titleKind(BrowserKind::Firefox, name); }

TEST(BrowserTitle, OfAnIncognitoWindowIsNotTakenForAPageAndAProfile) {
  EXPECT_EQ(chromium("X - Chromium - Chromium (Incognito)"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium("X – Chromium (Work – Chromium (инкогнито)"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium("X – Chromium (Work – Chromium（无痕）"), TitleKind::NotOrdinary);
  // The name of an incognito app's window does not contain the browser's name.
  EXPECT_EQ(chromium("X - Chromium - Work (Incognito)"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium(" (инкогнито)"), TitleKind::NotOrdinary);
}

TEST(BrowserTitle, InParenthesesAfterTheNameIsPrivateAlsoInWordsThatAreNotKnown) {
  EXPECT_EQ(chromium("X - Chromium (Xyz)"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium("X - Chromium(Xyz)"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium("X - Chromium（Xyz）"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium("X - Chromium - Y - Chromium (Xyz)"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium("„„X - Chromium - Y“ – „Chromium““ (Xyz)"), TitleKind::NotOrdinary);
}

TEST(BrowserTitle, OfARussianProfileIsOrdinaryUnlessItNamesAPrivateWindow) {
  EXPECT_EQ(chromium("Розы – Chromium (Работа)"), TitleKind::Ordinary);
  EXPECT_EQ(chromium("Розы – Chromium (Анна (Работа))"), TitleKind::Ordinary);
  EXPECT_EQ(chromium("Розы – Chromium (инкогнито)"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium("Розы – Chromium (режим инкогнито)"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium("Roser – Chromium (Inkognito)"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium("Rosor – Chromium (isolerat)"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium("Розы – Chromium ()"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium("Розы – Chromium(Работа)"), TitleKind::NotOrdinary);
}

TEST(BrowserTitle, WithAProfileNamedLikeAPrivateWindowIsNotOrdinary) {
  EXPECT_EQ(chromium("X - Chromium - Guest"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium("X - Chromium - Y - Chromium - Guest"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium("X - Chromium - Alice (Incognito)"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium("X - Chromium - Guests"), TitleKind::Ordinary);
  EXPECT_EQ(chromium("X - Chromium - Alice (Guesthouse)"), TitleKind::Ordinary);
}

// Direction marks after the word must not hide it.
TEST(BrowserTitle, IsReadWithoutMarksOfDirection) {
  EXPECT_EQ(chromium("\u202bX - Chromium (مجزا)\u202c"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium("X - Chromium - Y - Chromium (Incognito)\u200f"), TitleKind::NotOrdinary);
  EXPECT_EQ(firefox("\u200fX - \u200fMozilla Firefox"), TitleKind::Ordinary);
  EXPECT_EQ(firefox("\u2068X\u2069 — Anonymní prohlížení — Mozilla Firefox"),
            TitleKind::NotOrdinary);
}

TEST(BrowserTitle, OfAnotherProgramOrChannelIsNotOrdinary) {
  for (const std::string_view name :
       {"", "Chromium", "X", "X - Chromium Beta", "X - Chromium-", "X-Chromium", "Chromium - X",
        "X - Chromium - ", "X - Chromium (Incognito", "X - Chromium)", "\xff\xfe"}) {
    EXPECT_EQ(chromium(name), TitleKind::NotOrdinary) << name;
  }
  for (const std::string_view name :
       {"", "Firefox", "X", "X — Firefox", "X Mozilla Firefox", "X — Mozilla Firefox Nightly",
        " — Mozilla Firefox", "Mozilla Firefox — X"}) {
    EXPECT_EQ(firefox(name), TitleKind::NotOrdinary) << name;
  }
}

// As the accessibility bus reported them, with the direction marks that a right-to-left
// Chromium adds to its texts.
TEST(BrowserTitle, IsReadAsRunningBrowsersGiveIt) {
  for (const std::string_view name :
       {"Roses – Chromium", "Roses – Chromium (Пользователь\u00a01)",
        "\u200fبلا عنوان - Chromium - \u200fالشخص 1", "Roses — Chromium\u00a0— 1.\u00a0persona",
        "„Roses“ – „Chromium“", "„Roses“ – „Chromium“ – Asmuo 1", "Roses - क्रोमियम",
        "Roses - क्रोमियम - व्यक्ति 1", "\u200e\u200fبلا عنوان - Chromium - \u200fشخص 1",
        "Roses: Chromium: Persona 1", "Roses -- Chromium – Személy: 1"}) {
    EXPECT_EQ(chromium(name), TitleKind::Ordinary) << name;
  }
  for (const std::string_view name :
       {"Roses – Chromium (инкогнито)", "Roses (инкогнито)", "Roses (Пользователь\u00a01)",
        "\u200f\u200fبلا عنوان - Chromium (وضع الضيف)", "Roses — Chromium (viesa režīms)",
        "„„Roses“ – „Chromium““ (Inkognito)", "„Roses“ (Inkognito)", "Roses – Asmuo 1",
        "Roses - क्रोमियम (गुप्त)", "\u200f\u200eRoses - Chromium (پوشیدگی)",
        "Roses: Chromium (convidat)", "Roses: Persona 1", "Roses -- Chromium (Inkognitó mód)"}) {
    EXPECT_EQ(chromium(name), TitleKind::NotOrdinary) << name;
  }
}

TEST(BrowserTitle, OfAnotherFamilyIsNotOrdinary) {
  EXPECT_EQ(chromium("X - Google Chrome"), TitleKind::NotOrdinary);
  EXPECT_EQ(chromium("X — Mozilla Firefox"), TitleKind::NotOrdinary);
  EXPECT_EQ(firefox("X - Chromium"), TitleKind::NotOrdinary);
  EXPECT_EQ(titleKind(BrowserKind::GoogleChrome, "X - Chromium"), TitleKind::NotOrdinary);
  EXPECT_EQ(titleKind(BrowserKind::GoogleChrome, "X - Google Chrome"), TitleKind::Ordinary);
}

TEST(BrowserTitle, OfGnomeWebIsNeverOrdinary) {
  for (const std::string_view name : {"X", "X - Web", "X - Chromium", "X — Mozilla Firefox", ""}) {
    EXPECT_EQ(titleKind(BrowserKind::GnomeWeb, name), TitleKind::NotOrdinary) << name;
  }
}

TEST(BrowserTitle, OfFirefoxAloneSaysNothingYet) {
  EXPECT_EQ(firefox("Mozilla Firefox"), TitleKind::BrowserNameAlone);
}

TEST(BrowserTitle, OfAPrivateWindowOfFirefox140ThatEndsInTheNameIsNotOrdinary) {
  EXPECT_EQ(firefox("X — Anonymní prohlížení — Mozilla Firefox"), TitleKind::NotOrdinary);
  EXPECT_EQ(firefox("Anonymní prohlížení — Mozilla Firefox"), TitleKind::NotOrdinary);
  EXPECT_EQ(firefox("مرور خصوصی X — Mozilla Firefox"), TitleKind::NotOrdinary);
  EXPECT_EQ(firefox("Brabhsadh prìobhaideach X – Mozilla Firefox"), TitleKind::NotOrdinary);
  EXPECT_EQ(firefox("X — Приватный просмотр Mozilla Firefox"), TitleKind::NotOrdinary);
}

TEST(EndsInBrackets, CountsBracketsOfEveryScript) {
  for (const char* const name : {"News (x)", "News [x]", "News（x）", "News「x」", "News 【x】",
                                 "News (x)\u200F", "News (x)\u202C \u00A0", "News (x)\u3000"}) {
    EXPECT_TRUE(endsInBrackets(name)) << name;
  }
  for (const char* const name : {"News (x) - Chromium", "News", "", " ", "News (x"}) {
    EXPECT_FALSE(endsInBrackets(name)) << name;
  }
}

}  // namespace
}  // namespace quorrix
