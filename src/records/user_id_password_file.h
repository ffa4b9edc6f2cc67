// info.dat: one user ID and one password per site, in clear text. Every method
// opens, works and closes.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "sitetree/working_folder.h"

namespace quorrix {

struct UserIDPassword {
  std::string userID;
  std::string password;
};

class UserIDPasswordFile {
 public:
  UserIDPasswordFile(FileSystem& files, const WorkingPaths& paths) : files_(files), paths_(paths) {}

  // Each cut at its first blank; nullopt without a record. Throws Failure 5 for
  // a field without a blank.
  [[nodiscard]] std::optional<UserIDPassword> read(std::string_view siteKey);

  // Replaces the site's record, or adds one.
  void save(std::string_view siteKey, const UserIDPassword& entered);

  // Blanks the site's record; without one nothing is written.
  void remove(std::string_view siteKey);

 private:
  FileSystem& files_;
  const WorkingPaths& paths_;
};

}  // namespace quorrix
