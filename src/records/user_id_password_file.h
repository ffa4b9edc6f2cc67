// info.dat: one user ID and one password per site, in clear text. Every method
// opens, works and closes.
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

// The fields of a record as they stand. Each text is its field cut at the first
// blank; throws kInvalidCall for a field without one.
struct StoredUserIDPassword {
  std::string userIDField;
  std::string passwordField;

  [[nodiscard]] std::string userID() const;
  [[nodiscard]] std::string password() const;
};

class UserIDPasswordFile {
 public:
  UserIDPasswordFile(FileSystem& files, const WorkingPaths& paths) : files_(files), paths_(paths) {}

  // nullopt without a record.
  [[nodiscard]] std::optional<StoredUserIDPassword> read(std::string_view siteKey);

  // Replaces the site's record, or adds one.
  void save(std::string_view siteKey, const UserIDPassword& entered);

  // Blanks the site's record; without one nothing is written.
  void remove(std::string_view siteKey);

 private:
  FileSystem& files_;
  const WorkingPaths& paths_;
  LikelyRecord likely_;
};

}  // namespace quorrix
