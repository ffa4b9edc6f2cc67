// info.dat: one user ID and one password per site, in clear text. Every method opens the
// file, works and closes it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "datafiles/working_folder.h"
#include "platform/file_system.h"
#include "records/record_file.h"

namespace quorrix {

struct UserIDPassword {
  std::string userID;
  std::string password;
};

// The fields of a record as they are stored. userID() and password() return the field up
// to its first blank, and throw kInvalidCall if it has none.
struct StoredUserIDPassword {
  std::string userIDField;
  std::string passwordField;

  [[nodiscard]] std::string userID() const;
  [[nodiscard]] std::string password() const;
};

class UserIDPasswordFile {
 public:
  UserIDPasswordFile(FileSystem& files, const WorkingPaths& paths) : files_(files), paths_(paths) {}

  // nullopt if the site has no record.
  [[nodiscard]] std::optional<StoredUserIDPassword> read(std::string_view siteKey);

  // Replaces the site's record, or appends one.
  void save(std::string_view siteKey, const UserIDPassword& entered);

  // Blanks the site's record. Writes nothing if it is missing.
  void remove(std::string_view siteKey);

 private:
  FileSystem& files_;
  const WorkingPaths& paths_;
  LikelyRecord likely_;
};

}  // namespace quorrix
