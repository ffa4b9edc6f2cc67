// Reads and writes a record file in the simplest way, as a string of bytes, for the fuzz
// targets to compare the program with. Records are numbered from 1.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace quorrix::test {

struct Field {
  std::size_t offset;
  std::size_t width;
};

inline constexpr std::size_t kKeyWidth = 300;

inline std::string textOf(const std::string& record, Field field) {
  return record.substr(field.offset, field.width);
}

// The text before `end`; nullopt if the text does not contain `end`.
inline std::optional<std::string> cutAt(const std::string& text, char end) {
  const auto place = text.find(end);
  if (place == std::string::npos) return std::nullopt;
  return text.substr(0, place);
}

inline std::string padded(std::string text, std::size_t width) {
  text.resize(width, ' ');
  return text;
}

class RecordBytes {
 public:
  RecordBytes(std::string bytes, std::size_t length) : bytes_(std::move(bytes)), length_(length) {}

  [[nodiscard]] const std::string& bytes() const { return bytes_; }

  // Rounded to the nearest whole number; a half rounds to the even one.
  [[nodiscard]] std::size_t counted() const {
    const std::size_t whole = bytes_.size() / length_;
    const std::size_t twiceTheRest = bytes_.size() % length_ * 2;
    if (twiceTheRest == length_) return whole + whole % 2;
    return twiceTheRest > length_ ? whole + 1 : whole;
  }

  [[nodiscard]] std::size_t begun() const { return (bytes_.size() + length_ - 1) / length_; }

  // Bytes beyond the end of the file are NUL.
  [[nodiscard]] std::string record(std::size_t number) const {
    const std::size_t start = (number - 1) * length_;
    std::string record = start < bytes_.size() ? bytes_.substr(start, length_) : "";
    record.resize(length_, '\0');
    return record;
  }

  [[nodiscard]] std::string key(std::size_t number) const {
    const std::string field = record(number).substr(0, kKeyWidth);
    if (field[0] == ' ') return "";
    if (field.find('\0') != std::string::npos) return field.substr(0, field.find('\0'));
    return field.substr(0, field.find(' '));
  }

  [[nodiscard]] bool belongs(std::size_t number, const std::string& siteKey) const {
    return !siteKey.empty() && key(number) == siteKey;
  }

  // The first counted record of the site, or 0.
  [[nodiscard]] std::size_t find(const std::string& siteKey) const {
    for (std::size_t number = 1; number <= counted(); ++number) {
      if (belongs(number, siteKey)) return number;
    }
    return 0;
  }

  void put(std::size_t number, const std::string& record) {
    const std::size_t start = (number - 1) * length_;
    if (bytes_.size() < start + length_) bytes_.resize(start + length_, '\0');
    bytes_.replace(start, length_, record);
  }

  void putBehindKey(std::size_t number, const std::string& fields) {
    put(number, record(number).substr(0, kKeyWidth) + fields);
  }

  void append(const std::string& siteKey, const std::string& fields) {
    put(counted() + 1, padded(siteKey, kKeyWidth) + fields);
  }

  void blank(std::size_t number) {
    if (number != 0) put(number, std::string(length_, ' '));
  }

 private:
  std::string bytes_;
  std::size_t length_;
};

}  // namespace quorrix::test
