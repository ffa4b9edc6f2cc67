#include "data_tool/entries.h"

#include "datafiles/record_layouts.h"
#include "datafiles/site_record.h"

namespace quorrix {
namespace {

constexpr char kFieldEnd = '~';
constexpr std::string_view kUnknownScheme = "?";
constexpr std::string_view kPadding(" \0", 2);  // a partial record is read with NULs

std::string_view withoutPadding(std::string_view field) {
  return field.substr(0, field.find_last_not_of(kPadding) + 1);
}

std::string_view withoutEndMark(std::string_view field) {
  std::string_view text = withoutPadding(field);
  if (text.ends_with(kFieldEnd)) text.remove_suffix(1);
  return text;
}

bool readAddress(const CodePage& codePage, std::span<const char> record, std::string& address) {
  const auto field = fieldOf(record, kSiteKey);
  if (!fieldHoldsText(field)) return false;
  address = codePage.toUtf8(fieldText(field));
  return true;
}

}  // namespace

SiteEntry levelAt(const std::string& address) {
  SiteEntry level;
  level.address = address;
  return level;
}

bool isRecorded(const SiteEntry& site) {
  return !schemeName(site.protocolFlag).empty() || !site.unknownFlag.empty();
}

bool readSite(const CodePage& codePage, std::span<const char> record, SiteEntry& entry) {
  if (!readAddress(codePage, record, entry.address)) return false;
  const auto flag = fieldOf(record, site_record::kProtocolFlag);
  entry.protocolFlag = flag.front();
  entry.unknownFlag = schemeName(flag.front()).empty() ? codePage.toUtf8(flag) : "";
  const auto field = fieldOf(record, site_record::kAccessStamp);
  const auto end = field.find(kStampEnd);
  const auto stamp = end == std::string_view::npos ? withoutPadding(field) : field.substr(0, end);
  entry.visited = end == std::string_view::npos ? std::nullopt : stampTime(stamp);
  entry.unreadableStamp = entry.visited ? "" : codePage.toUtf8(stamp);
  return true;
}

bool readNotes(const CodePage& codePage, std::span<const char> record, NotesEntry& entry) {
  if (!readAddress(codePage, record, entry.address)) return false;
  entry.text = codePage.toUtf8(withoutPadding(fieldOf(record, notes_record::kNotesText)));
  return true;
}

bool readLogin(const CodePage& codePage, std::span<const char> record, LoginEntry& entry) {
  using namespace user_id_password_record;
  if (!readAddress(codePage, record, entry.address)) return false;
  entry.userID = codePage.toUtf8(withoutPadding(fieldOf(record, kUserID)));
  entry.password = codePage.toUtf8(withoutPadding(fieldOf(record, kPassword)));
  return true;
}

bool readPurchase(const CodePage& codePage, std::span<const char> record, PurchaseEntry& entry) {
  using namespace purchase_record;
  if (!readAddress(codePage, record, entry.address)) return false;
  const auto text = [&](FieldLayout layout) {
    return codePage.toUtf8(withoutEndMark(fieldOf(record, layout)));
  };
  entry.date = text(kDateStamp);
  entry.item = text(kItem);
  entry.price = text(kPrice);
  entry.quantity = text(kQuantity);
  entry.paymentMethod = text(kPaymentMethod);
  entry.description = text(kDescription);
  return true;
}

std::string_view schemeName(char protocolFlag) {
  switch (protocolFlag) {
    case protocol_flag::kHttp:
      return "http";
    case protocol_flag::kHttps:
      return "https";
    case protocol_flag::kFtp:
      return "ftp";
    case protocol_flag::kNone:
      return "none";
    default:
      return {};
  }
}

std::string_view shownScheme(const SiteEntry& site) {
  return site.unknownFlag.empty() ? schemeName(site.protocolFlag) : kUnknownScheme;
}

std::string webAddress(const SiteEntry& site) {
  return std::string(schemePrefix(site.protocolFlag)) + site.address;
}

std::string isoTime(const StampTime& time, char separator) {
  std::string text = "0000-00-00T00:00:00";
  const auto put = [&text](std::size_t end, int number) {
    for (; number > 0; number /= 10) text[--end] = static_cast<char>('0' + number % 10);
  };
  put(4, time.date.year);
  put(7, time.date.month);
  put(10, time.date.day);
  text[10] = separator;
  put(13, time.hour);
  put(16, time.minute);
  put(19, time.second);
  return text;
}

}  // namespace quorrix
