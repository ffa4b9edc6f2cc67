// What the user is told about a failure, for each failure number of the sweep.
#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace quorrix::test {

inline constexpr std::array kSweptNumbers = {7, 53, 57, 61, 67, 68, 71, 75, 76};

// In the order of kSweptNumbers.
using Sentences = std::array<std::string, kSweptNumbers.size()>;

// The families of the record dialogs do not tell a full disk apart.
inline Sentences ofRecords(const std::string& operation) {
  return {operation + " Out of memory.",       operation + " Unable to find file.",
          operation + " Device I/O error.",    operation + " Unknown error.",
          operation + " Too many files open.", operation + " Device not ready.",
          operation + " Disk not ready.",      operation + " Path/file access error.",
          operation + " Path not found."};
}

inline const Sentences kNothing{};  // the command does nothing, and no message is shown

inline const Sentences kStartUpSentences = {"Not enough memory available to load program.",
                                            "Unable to find file. Ending program.",
                                            "Device I/O error. Ending program.",
                                            "Error. Ending program.61",
                                            "Too many files open. Ending program.",
                                            "Device not ready. Ending program.",
                                            "Disk not ready. Ending program.",
                                            "Path/file access error. Ending program.",
                                            "Error. Ending program.76"};

inline const Sentences kTrackingSentences = {"Out of memory. Stopping tracking.",
                                             "Can't find specified file. Stopping tracking.",
                                             "Device I/O error. Stopping tracking.",
                                             "Disk full. Stopping tracking.",
                                             "Error. Stopping tracking.",
                                             "Device not ready. Stopping tracking.",
                                             "Disk not ready. Stopping tracking.",
                                             "Path/file access error. Stopping tracking.",
                                             "Path not found. Stopping tracking."};

inline const Sentences kDeleteSentences = {"Not enough memory available to delete site(s).",
                                           "Unable to find file. Stopping delete.",
                                           "Device I/O error. Stopping delete.",
                                           "Error. Stopping delete.",
                                           "Too many file open. Stopping delete.",
                                           "Device not ready. Ending program.",
                                           "Disk not ready. Stopping delete.",
                                           "Path/file access error. Stopping delete.",
                                           "Error. Stopping delete."};

// Of the menu command, before there is a dialog.
inline const Sentences kArchiveCommandSentences = {
    "Not enough memory available to open Archive Sites window.",
    "Unable to find file. Unable to open Archive Sites window.",
    "Device I/O error. Unable to open Archive Sites window.",
    "Unknown error. Unable to open Archive Sites window.",
    "Too many files open. Unable to open Archive Sites window.",
    "Unknown error. Unable to open Archive Sites window.",
    "Disk not ready. Unable to open Archive Sites window.",
    "Path/file access error. Unable to open Archive Sites window.",
    "Unknown error. Unable to open Archive Sites window."};

// Of a dialog that opens, for families with one sentence for memory and one for the rest.
inline Sentences memoryOrOther(const std::string& memory, const std::string& other) {
  return {memory, other, other, other, other, other, other, other, other};
}

inline const Sentences kOpenArchiveSentences =
    memoryOrOther("Not enough memory available to open Archive Sites window.",
                  "Error. Unable to open Archive Sites window.");

inline const Sentences kOpenLoadArchiveSentences =
    memoryOrOther("Not enough memory available to open Load Sites Archive window.",
                  "Error. Unable to open Load Sites Archive window.");

inline const Sentences kOpenDeleteArchiveSentences =
    memoryOrOther("Not enough memory available to open Delete Sites Archive window.",
                  "Error. Unable to open Delete Sites Archive window.");

inline const Sentences kSearchSentences = memoryOrOther(
    "Not enough memory available to process search.", "Unknown error. Unable to process search.");

inline const Sentences kOpenNewArchiveSentences = {
    "Unable to open New Archive window. Not enough memory available to start window.",
    "Unable to open New Archive window. Unknown error.",
    "Unable to open New Archive window. Unknown error.",
    "Unable to open New Archive window. Unknown error.",
    "Unable to open New Archive window. Unknown error.",
    "Device not ready.",
    "Disk not ready.",
    "Path/file access error.",
    "Path not found."};

inline const Sentences kCreateArchiveSentences = {
    "Unable to create new archive. Not enough memory available.",
    "Unable to create new archive. Unknown error.",
    "Unable to create new archive. Device I/O error.",
    "Unable to create new archive. Disk full.",
    "Unable to create new archive. Unknown error.",
    "Unable to create new archive. Device not ready.",
    "Unable to create new archive. Disk not ready.",
    "Unable to create new archive. Path/file access error.",
    "Unable to create new archive. Path not found."};

inline const Sentences kArchiveSentences = {"Unable to archive sites. Out of memory.",
                                            "Unable to archive sites. Unable to find file.",
                                            "Unable to archive sites. Device I/O error.",
                                            "Unable to archive sites. Disk full.",
                                            "Unable to archive sites. Too many files open.",
                                            "Unable to archive sites. Device not ready.",
                                            "Unable to archive sites. Disk not ready.",
                                            "Unable to archive sites. Path/file access error.",
                                            "Unable to archive sites. Path not found."};

inline const Sentences kLoadArchiveSentences = {"Unable to load archive. Out of memory.",
                                                "Unable to load archive. Unable to find file.",
                                                "Unable to load archive. Device I/O error.",
                                                "Unable to load archive. Disk full.",
                                                "Unable to load archive. Too many files open.",
                                                "Unable to load archive. Device not ready.",
                                                "Unable to load archive. Disk not ready.",
                                                "Unable to load archive. Path/file access error.",
                                                "Unable to load archive. Path not found."};

inline const Sentences kDeleteArchiveSentences = {
    "Unable to delete archive. Out of memory.",
    "Unable to delete archive. Unable to find file.",
    "Unable to delete archive. Device I/O error.",
    "Unable to delete archive. Unknown error.",
    "Unable to delete archive. Too many files open.",
    "Unable to delete archive. Device not ready.",
    "Unable to delete archive. Disk not ready.",
    "Unable to delete archive. Path/file access error.",
    "Unable to delete archive. Unknown error."};

// Of a folder that the user opens in a folder list.
inline const Sentences kOpenFolderSentences = {
    "Out of memory.",  "Unable to find file.",    "Device I/O error.",
    "Disk full.",      "Too many files open.",    "Device not ready.",
    "Disk not ready.", "Path/file access error.", "Path not found."};

// Of another drive that the user chooses.
inline const Sentences kChooseDriveSentences =
    memoryOrOther("Device not ready.", "Device not ready.");

}  // namespace quorrix::test
