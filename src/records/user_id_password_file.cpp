#include "records/user_id_password_file.h"

#include <array>

#include "records/record_file.h"

namespace quorrix {
namespace {

using namespace user_id_password_record;
using UserIDPasswordRecord = std::array<char, kLength>;

}  // namespace

std::string StoredUserIDPassword::userID() const { return std::string(cutAtBlank(userIDField)); }

std::string StoredUserIDPassword::password() const {
  return std::string(cutAtBlank(passwordField));
}

std::optional<StoredUserIDPassword> UserIDPasswordFile::read(std::string_view siteKey) {
  RecordFile file(files_, paths_.currentUserIDPasswordFile, kLength, FileAccess::Read, likely_);
  const RecordNumber number = file.find(siteKey);
  if (number == kNoRecord) return std::nullopt;
  UserIDPasswordRecord record;
  file.get(number, record);
  return StoredUserIDPassword{.userIDField = std::string(fieldOf(record, kUserID)),
                              .passwordField = std::string(fieldOf(record, kPassword))};
}

void UserIDPasswordFile::save(std::string_view siteKey, const UserIDPassword& entered) {
  RecordFile file(files_, paths_.currentUserIDPasswordFile, kLength, FileAccess::ReadWrite,
                  likely_);
  const RecordNumber number = file.find(siteKey);
  UserIDPasswordRecord record;
  if (number == kNoRecord) {
    fillField(record, kSiteKey, siteKey);
  } else {
    file.get(number, record);
  }
  fillField(record, kPassword, entered.password);
  fillField(record, kUserID, entered.userID);
  file.putOrAppend(number, record);
}

void UserIDPasswordFile::remove(std::string_view siteKey) {
  RecordFile file(files_, paths_.currentUserIDPasswordFile, kLength, FileAccess::ReadWrite,
                  likely_);
  file.blank(file.find(siteKey));
}

}  // namespace quorrix
