#include "data_tool/json_entries.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

namespace quorrix {
namespace {

using Json = nlohmann::ordered_json;

// Escapes the control characters that JSON allows in a string, U+007F to U+009F, because a
// terminal could take them for commands.
std::string withoutControls(const std::string& json) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (std::size_t i = 0; i < json.size(); ++i) {
    const auto byte = static_cast<unsigned char>(json[i]);
    const bool isUpper = byte == 0xC2 && static_cast<unsigned char>(json[i + 1]) < 0xA0;
    if (byte != 0x7F && !isUpper) {
      text += json[i];
      continue;
    }
    const unsigned code = isUpper ? static_cast<unsigned char>(json[++i]) : byte;
    text.append("\\u00").append({kDigits[code / 16], kDigits[code % 16]});
  }
  return text;
}

// The name of a folder may not be UTF-8; such bytes become U+FFFD.
std::string textOf(const Json& value) {
  return withoutControls(value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

// Most texts need no escaping, and dump() is slow.
bool needsNoEscape(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char byte) {
    return byte >= 0x20 && byte < 0x7F && byte != '"' && byte != '\\';
  });
}

// An object as text.
class ObjectText {
 public:
  void add(const char* name, const std::string& value) {
    begin(name);
    if (needsNoEscape(value)) {
      text_ += '"';
      text_ += value;
      text_ += '"';
    } else {
      text_ += textOf(Json(value));
    }
  }

  void add(const char* name, const Json& value) {
    begin(name);
    text_ += textOf(value);
  }

  // Null if it is a null pointer.
  void add(const char* name, const std::string* value) {
    if (value != nullptr) {
      add(name, *value);
    } else {
      begin(name);
      text_ += "null";
    }
  }

  void add(const char* name, const std::optional<std::string>& value) {
    add(name, value ? &*value : nullptr);
  }

  [[nodiscard]] std::string finished() { return std::move(text_) + "}"; }

 private:
  void begin(const char* name) {
    text_ += text_.empty() ? "{\"" : ",\"";
    text_ += name;
    text_ += "\":";
  }

  std::string text_;
};

void addSite(ObjectText& object, const SiteEntry& site) {
  object.add("address", site.address);
  const std::string_view scheme = schemeName(site.protocolFlag);
  object.add("scheme", scheme.empty() ? std::nullopt : std::optional<std::string>(scheme));
  if (!site.unknownFlag.empty()) object.add("flag", site.unknownFlag);
  object.add("visited", site.visited ? std::optional(isoTime(*site.visited)) : std::nullopt);
  if (!site.unreadableStamp.empty()) object.add("stamp", site.unreadableStamp);
}

Json objectOf(const PurchaseEntry& purchase) {
  return {{"date", purchase.date},
          {"item", purchase.item},
          {"price", purchase.price},
          {"quantity", purchase.quantity},
          {"paymentMethod", purchase.paymentMethod},
          {"description", purchase.description}};
}

void addDetails(ObjectText& object, const SiteDetails& details, const DetailChoice& choice) {
  const std::string* const notes = details.firstNotes();
  const LoginEntry* const login = details.firstLogin();
  if (choice.notes) object.add("notes", notes);
  if (choice.logins) object.add("userId", login != nullptr ? &login->userID : nullptr);
  if (choice.passwords) object.add("password", login != nullptr ? &login->password : nullptr);
  if (!choice.purchases) return;
  Json purchases = Json::array();
  for (const PurchaseEntry& purchase : details.purchases) purchases.push_back(objectOf(purchase));
  object.add("purchases", purchases);
}

}  // namespace

std::string jsonOf(const SiteEntry& site) {
  ObjectText object;
  addSite(object, site);
  return object.finished();
}

std::string jsonOf(const SiteEntry& site, const std::string& archive, const SiteDetails& details,
                   const DetailChoice& choice) {
  ObjectText object;
  addSite(object, site);
  object.add("archive", archive.empty() ? std::nullopt : std::optional(archive));
  addDetails(object, details, choice);
  return object.finished();
}

std::string jsonOf(const NotesEntry& notes) {
  return textOf({{"address", notes.address}, {"text", notes.text}});
}

std::string jsonOf(const PurchaseEntry& purchase) {
  Json object{{"address", purchase.address}};
  object.update(objectOf(purchase));
  return textOf(object);
}

std::string jsonOf(const LoginEntry& login, Passwords passwords) {
  Json object{{"address", login.address}, {"userId", login.userID}};
  if (passwords == Passwords::Show) object["password"] = login.password;
  return textOf(object);
}

std::string jsonOf(std::string_view text) { return textOf(Json(text)); }

}  // namespace quorrix
