// How browsers form the accessible names of their windows, in every language. The tests
// compare these tables with the texts in the browsers' packages. The tables contain no
// directional marks, and ASCII instead of Chinese parentheses, because names are
// converted in the same way when they are read.
#pragma once

#include <string_view>

namespace quorrix {

// --- how ordinary windows are named ---------------------------------------------------------

// The text between the page's title and the browser's name, and the text after that name.
struct NamePlace {
  std::string_view before;
  std::string_view after;
};

inline constexpr std::string_view kFirefoxName = "Mozilla Firefox";

// Version 153 uses the em dash in every language; in version 140 it depends on the
// translation.
inline constexpr NamePlace kFirefoxPlaces[] = {
    {" — ", ""},  // most languages
    {" – ", ""},  // de gd hr hu rm sl
    {" - ", ""},  // he
    {" ‑ ", ""},  // gd, after a profile's name: U+2011
    {"․ ", ""},   // hy-AM: U+2024
};

// The name is translated in Hindi. It is not known whether that of Google Chrome is
// translated anywhere; a window with a translated name does not count as ordinary.
inline constexpr std::string_view kChromiumNames[] = {"Chromium", "क्रोमियम"};
inline constexpr std::string_view kChromeNames[] = {"Google Chrome"};

// Google Chrome has the same translators but its own texts, so it may use another of
// these in the same language.
inline constexpr NamePlace kChromiumPlaces[] = {
    {" - ", ""},     // most languages
    {" – ", ""},     // af bg cs da et fr hr nb pl ru sk sl sr sv uk
    {": ", ""},      // ca
    {" -- ", ""},    // hu
    {" — ", ""},     // lv
    {"“ – „", "“"},  // lt: „Page“ – „Chromium“
};

// With several profiles, the profile's name follows, in most languages after one of
// these.
inline constexpr std::string_view kProfileSeparators[] = {
    " - ",       // most languages
    " – ",       // the languages with the en dash above, and de en-GB fi hu lt pt-PT ro
    ": ",        // ca pt-BR
    "\u00a0— ",  // lv: a no-break space
};

// In Russian the profile's name is in parentheses instead.
inline constexpr NamePlace kPlaceBeforeProfileInParentheses = {" – ", ""};

// --- how private windows are named ----------------------------------------------------------

// Chromium appends one of these in parentheses, after everything else, if the window is
// incognito, a guest's or (since version 156) isolated. The same word often serves
// several languages.
// clang-format off
inline constexpr std::string_view kPrivateWords[] = {
    "Anonimno", "Anonymní režim", "Bisita", "Gas", "Gast", "Geïsoleer", "Gizli mod", "Gost",
    "Guest", "Hali fiche", "Huru", "In incognito", "Incognito", "Incògnit", "Incógnito",
    "Inkognito", "Inkognito režīms", "Inkognitó mód", "Isolated", "Khách", "Külaline", "Mgeni",
    "Misafir", "Modo anônimo", "Navegação anónima", "Navigation privée", "Ospite", "Samaran",
    "Tamu", "Terasing", "Terisolasi", "Tetamu", "Tách biệt", "Yalıtılmış", "aislada", "aislado",
    "anonimni način", "anonym", "aïllada", "convidado", "convidat", "eristetty", "gast",
    "geïsoleerd", "gjest", "gost", "gość", "gäst", "gæst", "host", "hosť", "incógnito",
    "invitado", "invitat", "invité", "isolado", "isolata", "isoleeritud", "isolerat",
    "isoleret", "isolert", "isoliert", "isolé", "izolată", "izolirani način", "izoliuota",
    "izolované", "izolováno", "izolált", "izolēts", "modo isolado", "svečias",
    "tryb przeglądania prywatnego", "vendég", "vieras", "viesa režīms", "visitante",
    "Ανώνυμη περιήγηση", "Απομονωμένο", "Επισκέπτης", "Анонімний перегляд", "Инкогнито",
    "без архивирања", "гост", "гость", "гість", "изолиран режим", "изолировано", "изоловано",
    "инкогнито", "ізольовано", "אורח", "גלישה בסתר", "מבודד", "التصفح المتخفي", "الگ تھلگ",
    "مجزا", "مهمان", "مہمان", "ناشناس", "نافذة تصفّح معزول", "وضع الضيف", "پوشیدگی", "अतिथी",
    "अलिप्त", "आइसोलेटेड", "गुप्त", "मेहमान", "অতিথি", "আইসোলেটেড", "ছদ্মবেশী", "અતિથિ",
    "આઇસોલેટેડ", "છૂપી", "ஐசோலேட்டட்", "கெஸ்ட்", "மறைநிலை", "అజ్ఞాతంగా", "ఐసోలేటెడ్", "గెస్ట్", "ಅತಿಥಿ",
    "ಅದೃಶ್ಯ", "ಐಸೋಲೆಟೆಡ್", "അതിഥി", "ആള്\u200dമാറാട്ടം", "ഐസൊലേറ്റഡ്", "ผู้มาเยือน", "แยก",
    "โหมดไม่ระบุตัวตน", "ማንነትን የማያሳውቅ", "ተገልሏል", "እንግዳ", "Ẩn danh", "アイソレート", "ゲスト",
    "シークレット モード", "无痕", "無痕模式", "訪客", "访客", "隔离", "隔離", "게스트",
    "분리됨", "시크릿 모드",
};
// clang-format on

// In these languages, the names of private windows of Firefox 140 end with the browser's
// name, like those of ordinary ones, and differ in other words: before the page's title
// in Persian and Scottish Gaelic, after it in Czech. In all other languages the words are
// directly next to the browser's name.
inline constexpr std::string_view kFirefoxPrivateBeginnings[] = {"مرور خصوصی ",
                                                                 "Brabhsadh prìobhaideach "};
inline constexpr std::string_view kFirefoxPrivatePart = "Anonymní prohlížení";

}  // namespace quorrix
