#include "shell/failure_messages.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "platform/failure.h"

namespace quorrix {
namespace {

using namespace failure;  // the numbers; every line below uses one

struct Sentence {
  int number;
  std::string_view text;
};

using Sentences = std::span<const Sentence>;

constexpr Sentence kReasons[] = {
    {kOutOfMemory, "Out of memory."},        {kOutOfStackSpace, "Out of memory."},
    {kOutOfControlMemory, "Out of memory."}, {kFileNotFound, "Unable to find file."},
    {kDeviceIo, "Device I/O error."},        {kDiskFull, "Disk full."},
    {kTooManyFiles, "Too many files open."}, {kDeviceUnavailable, "Device not ready."},
    {kDiskNotReady, "Disk not ready."},      {kPathFileAccess, "Path/file access error."},
    {kPathNotFound, "Path not found."},      {kInvalidFileFormat, "Invalid file format."},
};

// Numbers of that table for which some families use the fallback.
constexpr int kUntoldDiskFull[] = {kDiskFull};
constexpr int kUntoldDiskFullAndPath[] = {kDiskFull, kPathNotFound};

constexpr Sentence kReasonsOfCreatingAnArchive[] = {
    {kOutOfMemory, "Not enough memory available."},
    {kOutOfControlMemory, "Not enough memory available."},
    {kDeviceIo, "Device I/O error."},
    {kDiskFull, "Disk full."},
    {kDeviceUnavailable, "Device not ready."},
    {kDiskNotReady, "Disk not ready."},
    {kPathFileAccess, "Path/file access error."},
    {kPathNotFound, "Path not found."},
};

constexpr Sentence kTrackingSentences[] = {
    {kOutOfMemory, "Out of memory. Stopping tracking."},
    {kOutOfStackSpace, "Out of memory. Stopping tracking."},
    {kOutOfControlMemory, "Out of memory. Stopping tracking."},
    {kFileNotFound, "Can't find specified file. Stopping tracking."},
    {kDeviceIo, "Device I/O error. Stopping tracking."},
    {kDiskFull, "Disk full. Stopping tracking."},
    {kDeviceUnavailable, "Device not ready. Stopping tracking."},
    {kDiskNotReady, "Disk not ready. Stopping tracking."},
    {kPathFileAccess, "Path/file access error. Stopping tracking."},
    {kPathNotFound, "Path not found. Stopping tracking."},
    {kInvalidFileFormat, "Invalid file format. Stopping tracking."},
};

// "Too many file open." is intended, and so is "Ending program.", although the program
// goes on.
constexpr Sentence kDeleteSentences[] = {
    {kOutOfMemory, "Not enough memory available to delete site(s)."},
    {kOutOfStackSpace, "Not enough memory available to delete site(s)."},
    {kOutOfControlMemory, "Not enough memory available to delete site(s)."},
    {kFileNotFound, "Unable to find file. Stopping delete."},
    {kDeviceIo, "Device I/O error. Stopping delete."},
    {kTooManyFiles, "Too many file open. Stopping delete."},
    {kDeviceUnavailable, "Device not ready. Ending program."},
    {kDiskNotReady, "Disk not ready. Stopping delete."},
    {kPathFileAccess, "Path/file access error. Stopping delete."},
    {kInvalidFileFormat, "Invalid file format. Stopping delete."},
};

constexpr Sentence kStartUpSentences[] = {
    {kOutOfMemory, "Not enough memory available to load program."},
    {kOutOfStackSpace, "Not enough memory available to load program."},
    {kOutOfControlMemory, "Not enough memory available to load program."},
    {kFileNotFound, "Unable to find file. Ending program."},
    {kDeviceIo, "Device I/O error. Ending program."},
    {kTooManyFiles, "Too many files open. Ending program."},
    {kDeviceUnavailable, "Device not ready. Ending program."},
    {kDiskNotReady, "Disk not ready. Ending program."},
    {kPathFileAccess, "Path/file access error. Ending program."},
    {kInvalidFileFormat, "Invalid file format. Ending program."},
};

constexpr Sentence kOpenArchiveSitesSentences[] = {
    {kOutOfMemory, "Not enough memory available to open Archive Sites window."},
    {kOutOfStackSpace, "Not enough memory available to open Archive Sites window."},
    {kOutOfControlMemory, "Not enough memory available to open Archive Sites window."},
    {kFileNotFound, "Unable to find file. Unable to open Archive Sites window."},
    {kDeviceIo, "Device I/O error. Unable to open Archive Sites window."},
    {kTooManyFiles, "Too many files open. Unable to open Archive Sites window."},
    {kDiskNotReady, "Disk not ready. Unable to open Archive Sites window."},
    {kPathFileAccess, "Path/file access error. Unable to open Archive Sites window."},
    {kInvalidFileFormat, "Invalid file format. Unable to open Archive Sites window."},
};

constexpr Sentence kOpenArchiveDialogSentences[] = {
    {kOutOfMemory, "Not enough memory available to open Archive Sites window."},
    {kOutOfStackSpace, "Not enough memory available to open Archive Sites window."},
};

constexpr Sentence kOpenLoadArchiveDialogSentences[] = {
    {kOutOfMemory, "Not enough memory available to open Load Sites Archive window."},
    {kOutOfStackSpace, "Not enough memory available to open Load Sites Archive window."},
};

constexpr Sentence kOpenDeleteArchiveDialogSentences[] = {
    {kOutOfMemory, "Not enough memory available to open Delete Sites Archive window."},
    {kOutOfStackSpace, "Not enough memory available to open Delete Sites Archive window."},
};

constexpr Sentence kOpenNewArchiveDialogSentences[] = {
    {kOutOfMemory,
     "Unable to open New Archive window. Not enough memory available to start window."},
    {kOutOfControlMemory,
     "Unable to open New Archive window. Not enough memory available to start window."},
    {kDeviceUnavailable, "Device not ready."},
    {kDiskNotReady, "Disk not ready."},
    {kPathFileAccess, "Path/file access error."},
    {kPathNotFound, "Path not found."},
};

constexpr Sentence kLinkSentences[] = {
    {kOutOfMemory, "Not enough memory available to link site in browser."},
    {kOutOfStackSpace, "Not enough memory available to link site in browser."},
    {kOutOfControlMemory, "Not enough memory available to link site in browser."},
};

constexpr Sentence kOpenSearchSentences[] = {
    {kOutOfMemory, "Not enough memory available to open Search Display window."},
    {kOutOfStackSpace, "Not enough memory available to open Search Display window."},
    {kOutOfControlMemory, "Not enough memory available to open Search Display window."},
};

constexpr Sentence kProcessSearchSentences[] = {
    {kOutOfMemory, "Not enough memory available to process search."},
    {kOutOfStackSpace, "Not enough memory available to process search."},
    {kOutOfControlMemory, "Not enough memory available to process search."},
    {kIndexOutOfRange, "Subscript out of range. Unable to process search."},
};

struct Family {
  std::string_view operation;  // put before the sentence
  Sentences sentences;
  std::string_view fallback;
  std::span<const int> untold = {};  // numbers that get the fallback nevertheless
};

constexpr std::string_view kUnknownError = "Unknown error.";

// A switch without a default, so that the compiler reports a missing enumerator.
constexpr Family sentencesOf(FailureFamily family) {
  switch (family) {
    case FailureFamily::StartUp:
      return {"", kStartUpSentences, "Error. Ending program."};
    case FailureFamily::Tracking:
      return {"", kTrackingSentences, "Error. Stopping tracking."};
    case FailureFamily::DeleteSites:
      return {"", kDeleteSentences, "Error. Stopping delete."};
    case FailureFamily::SaveNotes:
      return {"Unable to save notes. ", kReasons, kUnknownError, kUntoldDiskFull};
    case FailureFamily::DeleteNotes:
      return {"Unable to delete notes. ", kReasons, kUnknownError, kUntoldDiskFull};
    case FailureFamily::OpenNotes:
      return {"Unable to open Notes window. ", kReasons, kUnknownError, kUntoldDiskFull};
    case FailureFamily::SaveUserIDPassword:
      return {"Unable to save user ID and password. ", kReasons, kUnknownError, kUntoldDiskFull};
    case FailureFamily::DeleteUserIDPassword:
      return {"Unable to delete user ID and password. ", kReasons, kUnknownError, kUntoldDiskFull};
    case FailureFamily::OpenUserIDPassword:
      return {"Unable to open User ID, Password window. ", kReasons, kUnknownError,
              kUntoldDiskFull};
    case FailureFamily::SavePurchase:
      return {"Unable to save purchase information. ", kReasons, kUnknownError, kUntoldDiskFull};
    case FailureFamily::DeletePurchase:
      return {"Unable to delete purchase information. ", kReasons, kUnknownError, kUntoldDiskFull};
    case FailureFamily::OpenNewPurchase:
      return {"Unable to open New Purchase window. ", kReasons, kUnknownError, kUntoldDiskFull};
    case FailureFamily::OpenPurchases:
      return {"Unable to open Purchases window. ", kReasons, kUnknownError, kUntoldDiskFull};
    case FailureFamily::ArchiveSites:
      return {"Unable to archive sites. ", kReasons, kUnknownError};
    case FailureFamily::LoadArchive:
      return {"Unable to load archive. ", kReasons, kUnknownError};
    case FailureFamily::DeleteArchive:
      return {"Unable to delete archive. ", kReasons, kUnknownError, kUntoldDiskFullAndPath};
    case FailureFamily::CreateArchive:
      return {"Unable to create new archive. ", kReasonsOfCreatingAnArchive, kUnknownError};
    case FailureFamily::OpenArchiveSites:
      return {"", kOpenArchiveSitesSentences,
              "Unknown error. Unable to open Archive Sites window."};
    case FailureFamily::OpenArchiveDialog:
      return {"", kOpenArchiveDialogSentences, "Error. Unable to open Archive Sites window."};
    case FailureFamily::OpenLoadArchiveDialog:
      return {"", kOpenLoadArchiveDialogSentences,
              "Error. Unable to open Load Sites Archive window."};
    case FailureFamily::OpenDeleteArchiveDialog:
      return {"", kOpenDeleteArchiveDialogSentences,
              "Error. Unable to open Delete Sites Archive window."};
    case FailureFamily::OpenNewArchiveDialog:
      return {"", kOpenNewArchiveDialogSentences,
              "Unable to open New Archive window. Unknown error."};
    case FailureFamily::ChooseDrive:
      return {"", {}, "Device not ready."};
    case FailureFamily::OpenFolder:
      return {"", kReasons, kUnknownError};
    case FailureFamily::LinkInBrowser:
      return {"", kLinkSentences, "Error. Unable to link site in browser."};
    case FailureFamily::OpenSearch:
      return {"", kOpenSearchSentences, "Unknown error. Unable to open Search Display window."};
    case FailureFamily::ProcessSearch:
      return {"", kProcessSearchSentences, "Unknown error. Unable to process search."};
    case FailureFamily::LocateInDisplay:
      return {"", {}, "Unable to find site in display."};
    case FailureFamily::About:
      return {"", {}, "Error. Unable to start About Quorrix dialog box."};
    case FailureFamily::Help:
      return {"", {}, "Error. Unable to start help."};
    case FailureFamily::OtherCommand:
      return {"", kReasons, kUnknownError};
  }
  return {"", {}, kUnknownError};  // not an enumerator
}

}  // namespace

std::string failureMessage(FailureFamily family, int number) {
  const Family row = sentencesOf(family);
  const auto sentence = std::ranges::find(row.sentences, number, &Sentence::number);
  const bool isUntold = std::ranges::find(row.untold, number) != row.untold.end();
  std::string message(row.operation);
  if (sentence != row.sentences.end() && !isUntold) return message.append(sentence->text);
  message.append(row.fallback);
  // Only the fallback of a failed start-up shows the failure number.
  if (family == FailureFamily::StartUp) message.append(std::to_string(number));
  return message;
}

}  // namespace quorrix
