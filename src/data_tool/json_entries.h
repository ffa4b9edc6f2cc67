// Entries as JSON objects in one line.
#pragma once

#include <string>
#include <string_view>

#include "data_tool/entries.h"
#include "data_tool/site_details.h"

namespace quorrix {

// {"address": ..., "scheme": ..., "visited": ...}. A stamp that cannot be read is in "stamp", and
// "visited" is then null. A letter that stands for no scheme is in "flag", and "scheme" is then
// null. A level without a record of its own has neither "stamp" nor "flag".
[[nodiscard]] std::string jsonOf(const SiteEntry& site);

// The same with "archive", the name or null, and with the details that `choice` asks for.
[[nodiscard]] std::string jsonOf(const SiteEntry& site, const std::string& archive,
                                 const SiteDetails& details, const DetailChoice& choice);

[[nodiscard]] std::string jsonOf(const NotesEntry& notes);
[[nodiscard]] std::string jsonOf(const PurchaseEntry& purchase);

enum class Passwords { Show, LeaveOut };
[[nodiscard]] std::string jsonOf(const LoginEntry& login, Passwords passwords);

[[nodiscard]] std::string jsonOf(std::string_view text);

}  // namespace quorrix
