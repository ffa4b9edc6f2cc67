#include "reliability/kept_records.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

namespace quorrix::test {
namespace {

constexpr std::size_t kKeyLength = 300;

std::string bytesOf(const Path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }

std::string trimmed(const std::string& field) {
  return field.substr(0, field.find_last_not_of(' ') + 1);
}

// How the line of a record is made from the text behind its key.
std::string siteLine(const std::string& key, const std::string& rest) {
  const std::string time = rest.substr(10, 5);
  const bool isTime = std::ranges::count(time, ':') == 1 && time[2] == ':' &&
                      std::ranges::count_if(time, isDigit) == 4;
  const bool isWhole = isTime && rest == "N7/9/26 3:" + time + " PM~   ";
  return isWhole ? "site " + key + ": " + time : "broken site " + key;
}

std::string notesLine(const std::string& key, const std::string& rest) {
  return "notes " + key + ": " + trimmed(rest);
}

std::string passwordLine(const std::string& key, const std::string& rest) {
  const std::string text = trimmed(rest.substr(30));
  const bool isWhole = rest.substr(0, 30) == (text + "!").append(29 - text.size(), ' ');
  return (isWhole ? "password " : "broken password ") + key + ": " + text;
}

std::string purchaseLine(const std::string& key, const std::string& rest) {
  const std::string item = rest.substr(87, 50);
  const bool isWhole =
      rest.substr(0, 25).find('~') != std::string::npos && rest[237] == '1' && rest[238] == '~';
  return (isWhole ? "purchase " : "broken purchase ") + key + ": " + item.substr(0, item.find('~'));
}

struct FileKind {
  const char* name;
  std::size_t recordLength;
  std::string (*line)(const std::string& key, const std::string& rest);
};

constexpr FileKind kFiles[] = {{"nodes.dat", 322, siteLine},
                               {"notes.dat", 1324, notesLine},
                               {"info.dat", 360, passwordLine},
                               {"purchases.dat", 542, purchaseLine}};

Records recordsIn(const Path& folder) {
  Records records;
  for (const auto& [name, length, line] : kFiles) {
    const std::string bytes = bytesOf(folder / name);
    if (bytes.size() % length != 0) records.insert(std::string("broken length of ") + name);
    for (std::size_t at = 0; at + length <= bytes.size(); at += length) {
      const std::string record = bytes.substr(at, length);
      if (record == std::string(length, ' ')) continue;
      records.insert(line(trimmed(record.substr(0, kKeyLength)), record.substr(kKeyLength)));
    }
  }
  return records;
}

std::string joined(const Records& records) {
  std::string lines;
  for (const std::string& line : records) lines += line + '\n';
  return lines;
}

// "notes www.a.example" of "notes www.a.example: text".
std::string subjectOf(const std::string& line) { return line.substr(0, line.find(": ")); }

std::string addressOf(const std::string& line) {
  const std::string subject = subjectOf(line);
  return subject.substr(subject.find(' ') + 1);
}

bool isAtOrBelow(const std::string& key, const std::string& top) {
  return key == top || key.starts_with(top + "/");
}

// Deleting the root empties the files. Deleting another site deletes what the tree has at
// and below it. An interrupted deletion may have left notes of a site without the site;
// they are not in the tree.
bool isDeleted(const std::string& line, const std::string& deleted,
               const std::vector<std::string>& sites) {
  const std::string address = addressOf(line);
  const bool isInTree =
      std::ranges::any_of(sites, [&](const auto& site) { return isAtOrBelow(site, address); });
  return deleted.empty() || (isInTree && isAtOrBelow(address, deleted));
}

std::string lineOf(const UserStep& step) {
  switch (step.kind) {
    case UserStep::Kind::Visit:
      return "site " + step.site + ": " + step.text;
    case UserStep::Kind::Notes:
      return "notes " + step.site + ": " + step.text;
    case UserStep::Kind::Password:
      return "password " + step.site + ": " + step.text;
    case UserStep::Kind::Purchase:
      return "purchase " + step.site + ": " + step.text;
    case UserStep::Kind::Delete:
    case UserStep::Kind::Archive:
      break;
  }
  return {};
}

// Whether the found records have `line`, or, if the step replaces it, what replaces it.
bool isKept(const std::string& line, const UserStep& step, const Records& found) {
  if (found.contains(line)) return true;
  const bool isReplaced =
      step.kind != UserStep::Kind::Purchase && subjectOf(line) == subjectOf(lineOf(step));
  return isReplaced && found.contains(lineOf(step));
}

// How many records each subject has.
std::map<std::string, std::size_t> subjectsOf(const Records& records) {
  std::map<std::string, std::size_t> counts;
  for (const std::string& line : records) ++counts[subjectOf(line)];
  return counts;
}

std::size_t countOf(const std::map<std::string, std::size_t>& counts, const std::string& subject) {
  const auto found = counts.find(subject);
  return found == counts.end() ? 0 : found->second;
}

}  // namespace

LocalDateTime timeOfVisit(const std::string& minuteAndSecond) {
  return {.year = 2026,
          .month = 7,
          .day = 9,
          .hour = 15,
          .minute = std::stoi(minuteAndSecond.substr(0, 2)),
          .second = std::stoi(minuteAndSecond.substr(3))};
}

KeptRecords KeptRecords::onDisk(const Path& programFolder) {
  KeptRecords kept;
  kept.current_ = recordsIn(programFolder / "Data");
  for (const auto& entry : std::filesystem::directory_iterator(programFolder / "Archives")) {
    kept.archives_[entry.path().filename().string()] = recordsIn(entry.path());
  }
  return kept;
}

KeptRecords KeptRecords::after(const UserStep& step) const {
  KeptRecords next = *this;
  const std::string line = lineOf(step);
  switch (step.kind) {
    case UserStep::Kind::Visit:
    case UserStep::Kind::Notes:
    case UserStep::Kind::Password:
      std::erase_if(next.current_,
                    [&](const auto& old) { return subjectOf(old) == subjectOf(line); });
      [[fallthrough]];
    case UserStep::Kind::Purchase:
      next.current_.insert(line);
      break;
    case UserStep::Kind::Delete:
      std::erase_if(next.current_,
                    [&](const auto& old) { return isDeleted(old, step.site, sites()); });
      break;
    case UserStep::Kind::Archive:
      next.archives_[step.text] = current_;
      next.current_.clear();
      break;
  }
  return next;
}

std::vector<std::string> KeptRecords::faultsOf(const KeptRecords& found,
                                               const std::optional<UserStep>& interrupted) const {
  const KeptRecords next = interrupted ? after(*interrupted) : *this;
  const bool isArchiving = interrupted && interrupted->kind == UserStep::Kind::Archive;
  const bool isDeleting = interrupted && interrupted->kind == UserStep::Kind::Delete;
  std::vector<std::string> faults;
  for (const std::string& line : current_) {
    const bool mayBeGone = isDeleting && !next.current_.contains(line);
    const bool isHere =
        interrupted ? isKept(line, *interrupted, found.current_) : found.current_.contains(line);
    const bool isArchived = isArchiving && found.archives_.contains(interrupted->text) &&
                            found.archives_.at(interrupted->text).contains(line);
    if (!isHere && !isArchived && !mayBeGone) faults.push_back("lost: " + line);
  }
  for (const std::string& line : found.current_) {
    const std::size_t most = std::max(current_.count(line), next.current_.count(line));
    if (found.current_.count(line) > most) faults.push_back("unexpected: " + line);
  }
  // A record is replaced in its place, so the old and the new one are never there together.
  const auto before = subjectsOf(current_);
  const auto afterwards = subjectsOf(next.current_);
  for (const auto& [subject, count] : subjectsOf(found.current_)) {
    const std::size_t most = std::max(countOf(before, subject), countOf(afterwards, subject));
    if (most > 0 && count > most) faults.push_back("more than one: " + subject);
  }
  for (const auto& [name, records] : found.archives_) {
    if (isArchiving && name == interrupted->text) continue;
    if (!archives_.contains(name)) {
      faults.push_back("archive " + name + " is new");
    } else if (archives_.at(name) != records) {
      faults.push_back("archive " + name + " changed from\n" + joined(archives_.at(name)) + "to\n" +
                       joined(records));
    }
  }
  for (const auto& [name, records] : archives_) {
    if (!found.archives_.contains(name)) faults.push_back("archive " + name + " is gone");
  }
  const auto begun = isArchiving ? found.archives_.find(interrupted->text) : found.archives_.end();
  if (begun == found.archives_.end()) return faults;
  const auto earlier = archives_.find(begun->first);
  for (const std::string& line : begun->second) {
    const bool isOfEarlier = earlier != archives_.end() && earlier->second.contains(line);
    if (!isOfEarlier && !current_.contains(line)) faults.push_back("archived unexpected: " + line);
  }
  return faults;
}

std::vector<std::string> KeptRecords::sites() const {
  std::vector<std::string> addresses;
  for (const std::string& line : current_) {
    if (line.starts_with("site ")) addresses.push_back(addressOf(line));
  }
  return addresses;
}

bool KeptRecords::hasPurchase(const std::string& site) const {
  return std::ranges::any_of(
      current_, [&](const std::string& line) { return subjectOf(line) == "purchase " + site; });
}

}  // namespace quorrix::test
