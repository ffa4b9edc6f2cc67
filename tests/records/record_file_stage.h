// A fixture with an empty data folder in memory, and functions that return the bytes of
// each kind of record.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

#include "datafiles/working_folder.h"
#include "support/failure_number.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"

namespace quorrix::test {

inline std::string padded(const std::string& text, std::size_t width) {
  std::string field(width, ' ');
  std::copy(text.begin(), text.end(), field.begin());
  return field;
}

inline std::string notesRecord(const std::string& key, const std::string& notes) {
  return padded(key, 300) + padded(notes, 1024);
}

inline std::string userIDPasswordRecord(const std::string& key, const std::string& password,
                                        const std::string& userID) {
  return padded(key, 300) + padded(password, 30) + padded(userID, 30);
}

struct PurchaseFields {
  std::string dateStamp = "1/2/26 3:04:05 PM~";
  std::string price = "9.95~";
  std::string paymentMethod = "card~";
  std::string item = "lamp~";
  std::string description = "brass~";
  std::string quantity = "1~";
};

inline std::string purchaseRecord(const std::string& key, const PurchaseFields& fields = {}) {
  return padded(key, 300) + padded(fields.dateStamp, 25) + padded(fields.price, 12) +
         padded(fields.paymentMethod, 50) + padded(fields.item, 50) +
         padded(fields.description, 100) + padded(fields.quantity, 5);
}

class RecordFileStage : public testing::Test {
 protected:
  RecordFileStage() {
    paths_.setFolder("Data");
    memory_.givenAFolder("Data");
  }

  MemoryFileSystem memory_;
  FaultyFileSystem files_{memory_};
  WorkingPaths paths_;
};

}  // namespace quorrix::test
