// Records of the data files, written out for tests.
#pragma once

#include <string>

#include "support/site_record_bytes.h"

namespace quorrix::test {

inline std::string padded(std::string text, std::size_t width) {
  text.resize(width, ' ');
  return text;
}

// 1,324 bytes.
inline std::string notesRecord(const std::string& key, const std::string& text) {
  return padded(key, 300) + padded(text, 1024);
}

// 360 bytes.
inline std::string loginRecord(const std::string& key, const std::string& userID,
                               const std::string& password) {
  return padded(key, 300) + padded(password, 30) + padded(userID, 30);
}

struct PurchaseFields {
  std::string date = "3/14/26 10:00:00 AM~";
  std::string price = "24.50~";
  std::string paymentMethod = "Card~";
  std::string item = "Rose shears~";
  std::string description = "For the climbers~";
  std::string quantity = "2~";
};

// 542 bytes.
inline std::string purchaseRecord(const std::string& key, const PurchaseFields& fields = {}) {
  return padded(key, 300) + padded(fields.date, 25) + padded(fields.price, 12) +
         padded(fields.paymentMethod, 50) + padded(fields.item, 50) +
         padded(fields.description, 100) + padded(fields.quantity, 5);
}

}  // namespace quorrix::test
