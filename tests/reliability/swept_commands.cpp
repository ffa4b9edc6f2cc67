#include "reliability/swept_commands.h"

#include "archives/drive_list.h"
#include "archives/folder_list.h"
#include "records/record_file_stage.h"
#include "support/site_record_bytes.h"

namespace quorrix::test {
namespace {

constexpr const char* kSite = "one.two.three/a";

using Run = std::function<void(User&, SweptStep&)>;

// The stamp of the eighth record lies in two blocks of the disk.
std::string eightSites() {
  std::string records = siteRecord("four.five.six", 'S');
  for (int i = 1; i <= 6; ++i) records += siteRecord("host" + std::to_string(i) + ".two.three");
  return records + siteRecord(kSite);
}

std::string longNotes(char letter) {
  std::string notes(1000, letter);
  return notes;
}

// The working data, with a record of the site and at least one of another in each file,
// and an empty folder for an archive.
Files workingFiles() {
  return {{"Data/nodes.dat", eightSites()},
          {"Data/notes.dat",
           notesRecord("four.five.six", "tulips") + notesRecord(kSite, longNotes('r'))},
          {"Data/info.dat", userIDPasswordRecord("four.five.six", "p", "u") +
                                userIDPasswordRecord(kSite, "secret", "anna")},
          {"Data/purchases.dat", purchaseRecord("four.five.six") + purchaseRecord(kSite)},
          {"Data/load.txt", "/Quorrix/Archives/April\r\n"},
          {"Archives/May/", ""}};
}

Files withAnArchive() {
  Files files = workingFiles();
  files["Archives/May/nodes.dat"] = siteRecord("seven.eight.nine");
  files["Archives/May/notes.dat"] = notesRecord("seven.eight.nine", "lilies");
  files["Archives/May/purchases.dat"] = purchaseRecord("seven.eight.nine");
  files["Archives/May/info.dat"] = userIDPasswordRecord("seven.eight.nine", "q", "v");
  return files;
}

Files withoutRecords() {
  Files files = workingFiles();
  for (const char* const name : {"Data/notes.dat", "Data/info.dat", "Data/purchases.dat"}) {
    files[name] = "";
  }
  return files;
}

void pressInStep(QDialog& dialog, const char* button, SweptStep& step) {
  step.begin(dialog);
  User::press(dialog, button);
  step.end();
  if (dialog.isVisible() && step.isToBeRepeated()) User::press(dialog, button);
}

void openMay(const User& user, QDialog& dialog) {
  control<FolderList>(dialog, "Dir1").setPath(user.programFolder() / "Archives" / "May");
}

Run visiting(const char* address) {
  return [address](User& user, SweptStep& step) {
    step.begin(user.form());
    user.visit(address);
  };
}

Run openingByPopup(const char* entry) {
  return [entry](User& user, SweptStep& step) {
    user.select(kSite);
    step.begin(user.form());
    user.popUp(entry, [&step](QDialog&) { step.end(); });
  };
}

Run pressingInPopup(const char* entry, const char* button, const std::string& text = {}) {
  return [=](User& user, SweptStep& step) {
    user.select(kSite);
    user.popUp(entry, [&](QDialog& dialog) {
      if (!text.empty()) User::type(dialog, "Text1", text);
      pressInStep(dialog, button, step);
    });
  };
}

void viewPurchase(User& user, SweptStep& step) {
  user.select(kSite);
  user.popUp("PopUpPurchases", [&step](QDialog& purchases) {
    control<QListWidget>(purchases, "List1").setCurrentRow(0);
    step.begin(purchases);
    User::press(purchases, "Command1", [&step](QDialog&) { step.end(); });
    step.end();
  });
}

void deletePurchase(User& user, SweptStep& step) {
  user.select(kSite);
  user.popUp("PopUpPurchases", [&step](QDialog& purchases) {
    control<QListWidget>(purchases, "List1").setCurrentRow(0);
    User::press(purchases, "Command1",
                [&step](QDialog& purchase) { pressInStep(purchase, "DeleteButton", step); });
  });
}

Run deleting(const char* site) {
  return [site](User& user, SweptStep& step) {
    user.select(site);
    step.begin(user.form());
    user.choose("FileDelete");
  };
}

Run openingByMenu(const char* entry) {
  return [entry](User& user, SweptStep& step) {
    step.begin(user.form());
    user.choose(entry, [&step](QDialog&) { step.end(); });
  };
}

Run pressingOKInMay(const char* entry) {
  return [entry](User& user, SweptStep& step) {
    user.choose(entry, [&](QDialog& dialog) {
      openMay(user, dialog);
      pressInStep(dialog, "OKButton", step);
    });
  };
}

Run openingFolder(const char* entry) {
  return [entry](User& user, SweptStep& step) {
    user.choose(entry, [&step](QDialog& dialog) {
      auto& folders = control<FolderList>(dialog, "Dir1");
      const auto openLast = [&] {
        emit folders.itemDoubleClicked(folders.item(folders.count() - 1));
      };
      step.begin(dialog);
      openLast();
      step.end();
      if (step.isToBeRepeated()) openLast();
    });
  };
}

// Chooses the first drive. After a failure, the user has to choose another one before
// choosing the same again.
void changeDrive(User& user, SweptStep& step) {
  user.choose("FileLoadArchive", [&step](QDialog& dialog) {
    auto& drives = control<DriveList>(dialog, "Drive1");
    const auto choose = [&drives](int row) {
      drives.setCurrentIndex(row);
      emit drives.activated(row);
    };
    step.begin(dialog);
    choose(0);
    step.end();
    if (!step.isToBeRepeated()) return;
    choose(drives.count() - 1);
    choose(0);
  });
}

void openNewArchive(User& user, SweptStep& step) {
  user.choose("FileArchive", [&step](QDialog& archive) {
    step.begin(archive);
    User::press(archive, "NewButton", [&step](QDialog&) { step.end(); });
    step.end();
  });
}

// A folder whose making is reported as failed may exist, so the user then enters another
// name.
void makeFolder(User& user, SweptStep& step) {
  user.choose("FileArchive", [&step](QDialog& archive) {
    User::press(archive, "NewButton", [&step](QDialog& newArchive) {
      User::type(newArchive, "Text1", "June");
      step.begin(newArchive);
      User::press(newArchive, "OKButton");
      step.end();
      if (!newArchive.isVisible() || !step.isToBeRepeated()) return;
      User::type(newArchive, "Text1", "July");
      User::press(newArchive, "OKButton");
    });
  });
}

void search(User& user, SweptStep& step) {
  user.choose("FileSearch");
  auto& dialog = control<QDialog>(user.form(), "SearchDialog");
  User::type(dialog, "Text3", "one");
  pressInStep(dialog, "OKButton", step);
}

void startUp(User& user, SweptStep& step) {
  step.begin(user.form());
  static_cast<void>(user.start());
}

const Sentences kOpenNotes = ofRecords("Unable to open Notes window.");
const Sentences kSaveNotes = ofRecords("Unable to save notes.");
const Sentences kDeleteNotes = ofRecords("Unable to delete notes.");
const Sentences kOpenInfo = ofRecords("Unable to open User ID, Password window.");
const Sentences kSaveInfo = ofRecords("Unable to save user ID and password.");
const Sentences kDeleteInfo = ofRecords("Unable to delete user ID and password.");
const Sentences kSavePurchase = ofRecords("Unable to save purchase information.");
const Sentences kDeletePurchase = ofRecords("Unable to delete purchase information.");
const Sentences kOpenPurchases = ofRecords("Unable to open Purchases window.");

constexpr const Sentences* kPassedOver = nullptr;

}  // namespace

void runArchiveCommand(User& user, const char* entry) {
  user.choose(entry, [&user](QDialog& dialog) {
    openMay(user, dialog);
    User::press(dialog, "OKButton");
  });
}

std::vector<SweptCommand> sweptCommands() {
  return {
      {"a visit to a new site",
       workingFiles(),
       visiting("http://seven.eight.nine/b"),
       {{4, &kTrackingSentences}}},
      {"a visit to a known site",
       workingFiles(),
       visiting("http://one.two.three/a"),
       {{5, &kTrackingSentences}}},
      {"opening notes",
       workingFiles(),
       openingByPopup("PopUpNotes"),
       {{4, &kOpenNotes, "NotesDialog"}},
       "NotesDialog"},
      {"saving new notes",
       withoutRecords(),
       pressingInPopup("PopUpNotes", "OKButton", longNotes('l')),
       {{5, &kSaveNotes, "NotesDialog"}}},
      {"replacing notes",
       workingFiles(),
       pressingInPopup("PopUpNotes", "OKButton", longNotes('l')),
       {{6, &kSaveNotes, "NotesDialog"}}},
      {"deleting notes",
       workingFiles(),
       pressingInPopup("PopUpNotes", "DeleteButton"),
       {{5, &kDeleteNotes, "NotesDialog"}},
       "NotesDialog"},
      {"opening user ID and password",
       workingFiles(),
       openingByPopup("PopUpPasswords"),
       {{4, &kOpenInfo, "UIDDialog"}},
       "UIDDialog"},
      {"saving a new user ID",
       withoutRecords(),
       pressingInPopup("PopUpPasswords", "OKButton", "otto"),
       {{5, &kSaveInfo, "UIDDialog"}}},
      {"replacing a user ID",
       workingFiles(),
       pressingInPopup("PopUpPasswords", "OKButton", "otto"),
       {{6, &kSaveInfo, "UIDDialog"}}},
      {"deleting a user ID",
       workingFiles(),
       pressingInPopup("PopUpPasswords", "DeleteButton"),
       {{5, &kDeleteInfo, "UIDDialog"}},
       "UIDDialog"},
      {"opening a new purchase",
       workingFiles(),
       openingByPopup("PopUpNewPurchase"),
       {},
       "NewPurchaseDialog"},
      {"saving a purchase",
       workingFiles(),
       pressingInPopup("PopUpNewPurchase", "OKButton", "a chair"),
       {{6, &kSavePurchase, "NewPurchaseDialog"}}},
      {"listing purchases",
       workingFiles(),
       openingByPopup("PopUpPurchases"),
       {{3, &kOpenPurchases}},
       "PurchasesDialog"},
      {"viewing a purchase",
       workingFiles(),
       viewPurchase,
       {{4, &kNothing, "PurchasesDialog"}},
       "NewPurchaseDialog PurchasesDialog"},
      {"deleting a purchase",
       workingFiles(),
       deletePurchase,
       {{5, &kDeletePurchase, "NewPurchaseDialog PurchasesDialog"}},
       "PurchasesDialog"},
      {"deleting a site", workingFiles(), deleting(kSite), {{20, &kDeleteSentences}}},
      {"deleting the root",
       workingFiles(),
       deleting("ROOT"),
       {{1, &kDeleteSentences}, {11, &kDeleteSentences, "", Remedy::StartAgain}}},
      {"clearing the display", workingFiles(), openingByMenu("FileClear"), {}},
      {"searching",
       workingFiles(),
       search,
       {{3, &kSearchSentences, "SearchDialog"}},
       "SearchResultsDialog"},
      {"opening Archive Sites",
       workingFiles(),
       openingByMenu("FileArchive"),
       {{3, &kArchiveCommandSentences},
        {3, kPassedOver},
        {2, &kOpenArchiveSentences, "ArchiveDialog"}},
       "ArchiveDialog"},
      {"archiving to a new folder",
       workingFiles(),
       pressingOKInMay("FileArchive"),
       {{6, &kArchiveSentences},
        {4, &kArchiveSentences, "", Remedy::DeleteTheArchive},
        {12, &kArchiveSentences, "", Remedy::LoadTheArchive}}},
      {"archiving to a used folder",
       withAnArchive(),
       pressingOKInMay("FileArchive"),
       {{3, &kArchiveSentences},
        {6, &kArchiveSentences, "", Remedy::DeleteTheArchive},
        {1, &kArchiveSentences},
        {4, &kArchiveSentences, "", Remedy::DeleteTheArchive},
        {12, &kArchiveSentences, "", Remedy::LoadTheArchive}}},
      {"opening New Archive",
       workingFiles(),
       openNewArchive,
       {{2, kPassedOver}, {2, &kOpenNewArchiveSentences, "ArchiveDialog"}},
       "ArchiveDialog NewArchiveDialog"},
      {"making a folder",
       workingFiles(),
       makeFolder,
       {{4, &kCreateArchiveSentences, "ArchiveDialog NewArchiveDialog"}},
       "ArchiveDialog"},
      {"opening Load Sites Archive",
       withAnArchive(),
       openingByMenu("FileLoadArchive"),
       {{3, kPassedOver}, {2, &kOpenLoadArchiveSentences, "LoadArchiveDialog"}},
       "LoadArchiveDialog"},
      {"opening a folder to archive to",
       withAnArchive(),
       openingFolder("FileArchive"),
       {{2, &kOpenFolderSentences, "ArchiveDialog"}},
       "ArchiveDialog"},
      {"opening a folder to load",
       withAnArchive(),
       openingFolder("FileLoadArchive"),
       {{2, &kOpenFolderSentences, "LoadArchiveDialog"}},
       "LoadArchiveDialog"},
      {"opening a folder to delete",
       withAnArchive(),
       openingFolder("FileDeleteArchive"),
       {{2, &kOpenFolderSentences, "DeleteArchiveDialog"}},
       "DeleteArchiveDialog"},
      {"changing the drive",
       withAnArchive(),
       changeDrive,
       {{2, &kChooseDriveSentences, "LoadArchiveDialog"}},
       "LoadArchiveDialog"},
      {"loading an archive",
       withAnArchive(),
       pressingOKInMay("FileLoadArchive"),
       {{3, &kLoadArchiveSentences}, {1, kPassedOver}, {5, &kLoadArchiveSentences}}},
      {"opening Delete Sites Archive",
       withAnArchive(),
       openingByMenu("FileDeleteArchive"),
       {{3, kPassedOver}, {2, &kOpenDeleteArchiveSentences, "DeleteArchiveDialog"}},
       "DeleteArchiveDialog"},
      {"deleting an archive",
       withAnArchive(),
       pressingOKInMay("FileDeleteArchive"),
       {{4, &kDeleteArchiveSentences}}},
      {"the first start",
       {{"Data/load.txt", "none\r\n"}},
       startUp,
       {{4, &kStartUpSentences}, {9, kPassedOver}, {1, &kStartUpSentences}},
       "",
       true},
      {"a start",
       workingFiles(),
       startUp,
       {{3, &kStartUpSentences}, {4, kPassedOver}, {1, &kStartUpSentences}},
       "",
       true},
  };
}

}  // namespace quorrix::test
