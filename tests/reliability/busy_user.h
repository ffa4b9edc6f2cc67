// A user on the real disk who takes one step after the other as fast as the program can:
// visits, notes, passwords, purchases, deletions, archives.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "archives/folder_list.h"
#include "reliability/kept_records.h"
#include "reliability/user.h"

namespace quorrix::test {

class BusyUser {
 public:
  BusyUser(FileSystem& files, const Path& programFolder) : user_(files, programFolder) {}

  [[nodiscard]] bool start() { return user_.start(); }

  [[nodiscard]] bool shows(std::string_view address) {
    return user_.form().tree().find(address) != kNoNode;
  }

  // Returns the messages that report failures.
  std::vector<std::string> take(const UserStep& step) {
    user_.messageBox().sentences.clear();
    switch (step.kind) {
      case UserStep::Kind::Visit:
        user_.clock().set(timeOfVisit(step.text));
        user_.visit("http://" + step.site);
        break;
      case UserStep::Kind::Notes:
        fillIn("PopUpNotes", step.site, {{"Text1", step.text}});
        break;
      case UserStep::Kind::Password:
        fillIn("PopUpPasswords", step.site, {{"Text1", step.text}, {"Text2", step.text + "!"}});
        break;
      case UserStep::Kind::Purchase:
        fillIn("PopUpNewPurchase", step.site, {{"Text1", step.text}, {"Text4", "1"}});
        break;
      case UserStep::Kind::Delete:
        user_.select(step.site.empty() ? "ROOT" : step.site);
        user_.choose("FileDelete");
        break;
      case UserStep::Kind::Archive:
        archiveTo(user_.programFolder() / "Archives" / step.text);
        break;
    }
    return user_.messageBox().sentences;
  }

 private:
  struct Entry {
    const char* box;
    std::string text;
  };

  void fillIn(const char* window, const std::string& site, const std::vector<Entry>& entries) {
    user_.select(site);
    user_.popUp(window, [&entries](QDialog& dialog) {
      for (const Entry& entry : entries) User::type(dialog, entry.box, entry.text);
      User::press(dialog, "OKButton");
    });
  }

  void archiveTo(const Path& folder) {
    std::filesystem::create_directory(folder);
    user_.choose("FileArchive", [&folder](QDialog& dialog) {
      control<FolderList>(dialog, "Dir1").setPath(folder);
      User::press(dialog, "OKButton");
    });
  }

  User user_;
};

}  // namespace quorrix::test
