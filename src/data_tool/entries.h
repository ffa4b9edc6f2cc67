// What the records of the data files say, as UTF-8. A text is everything that its field stores,
// without padding and without the mark that ends it. The windows of Quorrix show less of a text
// that has a blank or a "~" inside, but nothing that was entered is left out here.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "datafiles/access_stamp.h"
#include "platform/code_page.h"

namespace quorrix {

// A level of the tree without a record of its own has only an address.
struct SiteEntry {
  std::string address;
  char protocolFlag = ' ';
  std::string unknownFlag;  // the flag as text if it stands for no scheme, or empty
  std::optional<StampTime> visited;
  std::string unreadableStamp;  // without its end mark; empty if `visited` has the time
};

[[nodiscard]] SiteEntry levelAt(const std::string& address);

// False for a level without a record.
[[nodiscard]] bool isRecorded(const SiteEntry& site);

struct NotesEntry {
  std::string address;
  std::string text;  // line breaks as CR LF
};

struct LoginEntry {
  std::string address;
  std::string userID;
  std::string password;
};

struct PurchaseEntry {
  std::string address;
  std::string date;  // free text
  std::string item;
  std::string price;
  std::string quantity;
  std::string paymentMethod;
  std::string description;  // line breaks as CR LF
};

// Each fills `entry` from a record. Returns false if the record has no address, because then it
// was deleted.
bool readSite(const CodePage& codePage, std::span<const char> record, SiteEntry& entry);
bool readNotes(const CodePage& codePage, std::span<const char> record, NotesEntry& entry);
bool readLogin(const CodePage& codePage, std::span<const char> record, LoginEntry& entry);
bool readPurchase(const CodePage& codePage, std::span<const char> record, PurchaseEntry& entry);

// "http", "https", "ftp" or "none"; empty for a letter that stands for no scheme.
[[nodiscard]] std::string_view schemeName(char protocolFlag);

// The same for people, who see "?" for such a letter.
[[nodiscard]] std::string_view shownScheme(const SiteEntry& site);

// The whole address, such as "https://www.example.org/a".
[[nodiscard]] std::string webAddress(const SiteEntry& site);

// Such as "2026-11-21T16:05:00", with `separator` between date and time.
[[nodiscard]] std::string isoTime(const StampTime& time, char separator = 'T');

}  // namespace quorrix
