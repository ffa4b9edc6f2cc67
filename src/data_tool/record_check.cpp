#include "data_tool/record_check.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "datafiles/access_stamp.h"
#include "datafiles/record_layouts.h"
#include "datafiles/site_address.h"
#include "datafiles/site_record.h"
#include "platform/failure.h"

namespace quorrix {
namespace {

constexpr std::size_t kNowhere = std::string_view::npos;
constexpr char kFieldEnd = '~';

bool isControl(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte < 0x20 || byte == 0x7F;
}

std::string codeOf(char character) {
  std::array<char, 8> code{};
  std::snprintf(code.data(), code.size(), "0x%02X",
                static_cast<unsigned>(static_cast<unsigned char>(character)));
  return code.data();
}

// One record, and where its findings go.
class Record {
 public:
  Record(std::span<const char> bytes, const ReportInRecord& report)
      : bytes_(bytes), report_(report) {}

  [[nodiscard]] bool isDeleted() const {
    return std::all_of(bytes_.begin(), bytes_.end(), [](char byte) { return byte == ' '; });
  }

  void error(std::size_t offset, const std::string& what) const {
    report_(FindingKind::Error, offset, what);
  }

  void remark(std::size_t offset, const std::string& what) const {
    report_(FindingKind::Remark, offset, what);
  }

  // Returns false if the record belongs to no site. The rest of such a record is never read.
  [[nodiscard]] bool checkAddress() const {
    const std::string_view field = fieldOf(bytes_, kSiteKey);
    if (field.front() == ' ') {
      if (!isDeleted()) error(firstText(), "This record has text but no address.");
      return false;
    }
    if (field.front() == '\0') {
      error(0, "The address begins with a NUL.");
      return false;
    }
    checkCharacters(field);
    checkLevels(fieldText(field));
    return true;
  }

  // `name` begins a sentence.
  void checkNuls(FieldLayout layout, const std::string& name) const {
    const auto place = fieldOf(bytes_, layout).find('\0');
    if (place != kNowhere) error(layout.offset + place, name + " contains a NUL.");
  }

  // The boxes of Quorrix accept these characters, so they are not errors. `fine` lists those that
  // belong in a text of several lines.
  void remarkControls(FieldLayout layout, const std::string& name, std::string_view fine) const {
    const std::string_view field = fieldOf(bytes_, layout);
    const auto place = std::find_if(field.begin(), field.end(), [fine](char character) {
      return character != '\0' && isControl(character) && fine.find(character) == kNowhere;
    });
    if (place == field.end()) return;
    remark(layout.offset + static_cast<std::size_t>(place - field.begin()),
           name + " contains the control character " + codeOf(*place) + ".");
  }

  // A text, one "~", and blanks.
  void checkTerminated(FieldLayout layout, const std::string& name) const {
    const std::string_view field = fieldOf(bytes_, layout);
    const auto end = field.rfind(kFieldEnd);
    if (end == kNowhere) return error(layout.offset, name + " has no \"~\" at its end.");
    checkBlanksAfter(layout, end + 1, name);
  }

  void checkBlanksAfter(FieldLayout layout, std::size_t from, const std::string& name) const {
    const auto place = fieldOf(bytes_, layout).find_first_not_of(' ', from);
    if (place != kNowhere) error(layout.offset + place, name + " is followed by more than blanks.");
  }

 private:
  [[nodiscard]] std::size_t firstText() const {
    const auto place =
        std::find_if(bytes_.begin(), bytes_.end(), [](char byte) { return byte != ' '; });
    return static_cast<std::size_t>(place - bytes_.begin());
  }

  void checkCharacters(std::string_view field) const {
    const std::size_t length = std::min(field.find(' '), field.size());
    const auto control = std::find_if(field.begin(), field.end(), isControl);
    const auto place = static_cast<std::size_t>(control - field.begin());
    if (place < field.size() && field[place] == '\0') {
      error(place, "The address contains a NUL.");
    } else if (place < field.size()) {
      error(place, "The address contains the control character " + codeOf(*control) + ".");
    }
    const auto after = field.find_first_not_of(' ', length);
    if (after != kNowhere && after != place) error(length, "The address contains a blank.");
  }

  void checkLevels(std::string_view address) const {
    std::size_t levels = 1;
    for (std::size_t i = 0; i < address.size(); ++i) {
      if (address[i] != '/' || ++levels <= kMaxLevels) continue;
      return error(i, "The address has more than 50 levels.");
    }
  }

  std::span<const char> bytes_;
  const ReportInRecord& report_;
};

// Whether storedAddress() may have cut this text out of an address that has a scheme inside, such
// as "www.a.example/?http://www.b.example". It then removes as many characters from the beginning,
// whatever they are, and perhaps a part of that scheme.
bool mayBeCut(std::string_view address) {
  const std::string text = std::string(address) + "/";  // may have been removed, too
  for (const std::string_view scheme : {"http://", "https://"}) {
    if (text.find(scheme) != kNowhere) return true;
    for (std::size_t cut = 1; cut < scheme.size(); ++cut) {
      if (text.starts_with(scheme.substr(cut))) return true;
    }
  }
  return false;
}

// Only a recorded address: notes, user IDs and purchases may belong to a level above, whose key
// does not show that the address was cut.
void checkHost(const Record& record, std::string_view address) {
  if (validateAddress(address.substr(0, address.find('/'))).isValid) return;
  if (mayBeCut(address)) {
    record.remark(0, "The address does not begin with a complete host.");
  } else {
    record.error(0, "Quorrix cannot have recorded this address.");
  }
}

void checkScheme(const Record& record, char flag) {
  using namespace protocol_flag;
  if (flag == kHttp || flag == kHttps || flag == kFtp || flag == kNone) return;
  record.error(site_record::kProtocolFlag.offset,
               "The scheme is " + codeOf(flag) + ", not N, S, F or U.");
}

std::string stampTextOf(const StampTime& time) {
  return accessStampText({.year = time.date.year,
                          .month = time.date.month,
                          .day = time.date.day,
                          .hour = time.hour,
                          .minute = time.minute,
                          .second = time.second});
}

void checkStamp(const Record& record, std::string_view field) {
  const std::size_t offset = site_record::kAccessStamp.offset;
  const auto end = field.find(kStampEnd);
  if (end == kNowhere) return record.error(offset, "The date has no \"~\" at its end.");
  const std::string_view stamp = field.substr(0, end);
  try {
    // Quorrix reads other forms, too, but writes only one.
    if (stampTextOf(readAccessStamp(stamp)) != stamp) {
      record.error(offset, "The date is not in the form in which Quorrix writes it.");
    }
  } catch (const Failure&) {
    record.error(offset, "The date cannot be read.");
  }
  record.checkBlanksAfter(site_record::kAccessStamp, end + 1, "The date");
}

// Quorrix reads the text up to its first blank. A user can type a blank, but then sees only a part
// of the text again.
void checkUnbroken(const Record& record, std::span<const char> bytes, FieldLayout layout,
                   const std::string& name) {
  const std::string_view field = fieldOf(bytes, layout);
  const auto blank = field.find(' ');
  if (blank == kNowhere) {
    record.error(layout.offset, name + " has no blank at its end.");
  } else if (field.find_first_not_of(' ', blank) != kNowhere) {
    record.remark(layout.offset + blank,
                  name + " contains a blank. Quorrix shows only what is before it.");
  }
  record.checkNuls(layout, name);
  record.remarkControls(layout, name, "");
}

}  // namespace

void checkSiteRecord(std::span<const char> record, const ReportInRecord& report) {
  const Record site(record, report);
  if (!site.checkAddress()) return;
  checkHost(site, fieldText(fieldOf(record, kSiteKey)));
  checkScheme(site, fieldOf(record, site_record::kProtocolFlag).front());
  checkStamp(site, fieldOf(record, site_record::kAccessStamp));
}

void checkNotesRecord(std::span<const char> record, const ReportInRecord& report) {
  const Record notes(record, report);
  if (!notes.checkAddress()) return;
  notes.checkNuls(notes_record::kNotesText, "The text");
  notes.remarkControls(notes_record::kNotesText, "The text", "\t\r\n");
}

void checkUserIDPasswordRecord(std::span<const char> record, const ReportInRecord& report) {
  using namespace user_id_password_record;
  const Record login(record, report);
  if (!login.checkAddress()) return;
  checkUnbroken(login, record, kPassword, "The password");
  checkUnbroken(login, record, kUserID, "The user ID");
  const bool isEmpty = fieldOf(record, kPassword).find_first_not_of(' ') == kNowhere &&
                       fieldOf(record, kUserID).find_first_not_of(' ') == kNowhere;
  if (isEmpty) login.remark(kPassword.offset, "The user ID and the password are empty.");
}

void checkPurchaseRecord(std::span<const char> record, const ReportInRecord& report) {
  using namespace purchase_record;
  struct NamedField {
    FieldLayout layout;
    const char* name;
    std::string_view fine;
  };
  static constexpr NamedField kFields[] = {{kDateStamp, "The date", ""},
                                           {kPrice, "The price", ""},
                                           {kPaymentMethod, "The payment method", ""},
                                           {kItem, "The item", ""},
                                           {kDescription, "The description", "\t\r\n"},
                                           {kQuantity, "The quantity", ""}};
  const Record purchase(record, report);
  if (!purchase.checkAddress()) return;
  for (const NamedField& field : kFields) {
    purchase.checkTerminated(field.layout, field.name);
    purchase.checkNuls(field.layout, field.name);
    purchase.remarkControls(field.layout, field.name, field.fine);
  }
}

}  // namespace quorrix
