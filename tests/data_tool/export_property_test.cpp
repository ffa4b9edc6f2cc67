// Random folders, exported as JSON and CSV and read again: every field of every record is there.
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "data_tool/tool_stage.h"

namespace quorrix {
namespace {

using Json = nlohmann::json;

class Randoms {
 public:
  // `excluded` are characters that no text contains.
  explicit Randoms(unsigned seed, std::string excluded = "")
      : engine_(seed), excluded_(std::move(excluded)) {}

  int upTo(int last) { return std::uniform_int_distribution<int>(0, last)(engine_); }

  // Any bytes but NUL, and no blank at the end or, if it is a word, anywhere. Not "~" at the end,
  // because that would be taken for the end mark.
  std::string text(int longest) {
    std::string text = bytes(upTo(longest), 0x01, 0xFF);
    while (!text.empty() && (text.back() == ' ' || text.back() == '~')) text.pop_back();
    return text;
  }

  std::string word(int longest) {
    std::string word = bytes(1 + upTo(longest - 1), 0x21, 0xFF);
    return word;
  }

  char oneOf(const std::string& characters) {
    return characters[static_cast<std::size_t>(upTo(static_cast<int>(characters.size()) - 1))];
  }

 private:
  std::string bytes(int count, int first, int last) {
    std::string text;
    for (int i = 0; i < count; ++i) {
      const auto byte = static_cast<char>(first + upTo(last - first));
      text += excluded_.find(byte) == std::string::npos ? byte : 'x';
    }
    return text;
  }

  std::mt19937 engine_;
  std::string excluded_;
};

// The folder's bytes, and what its export must say.
struct Folder {
  std::string nodes, notes, info, purchases;
  Json expected{{"sites", Json::array()},
                {"notes", Json::array()},
                {"logins", Json::array()},
                {"purchases", Json::array()}};
};

class FolderMaker {
 public:
  explicit FolderMaker(unsigned seed, std::string excluded = "")
      : random_(seed, std::move(excluded)) {}

  Folder make() {
    Folder folder;
    for (int i = random_.upTo(20); i > 0; --i) addSite(folder);
    for (int i = random_.upTo(5); i > 0; --i) addNotes(folder);
    for (int i = random_.upTo(5); i > 0; --i) addLogin(folder);
    for (int i = random_.upTo(5); i > 0; --i) addPurchase(folder);
    return folder;
  }

 private:
  static std::string utf8(const std::string& text) { return test::westernCodePage().toUtf8(text); }

  bool isBlank() { return random_.upTo(4) == 0; }

  void addSite(Folder& folder) {
    if (isBlank()) folder.nodes += std::string(322, ' ');
    const std::string address = random_.word(300);
    const int month = 1 + random_.upTo(11);
    const int hour = random_.upTo(23);
    const std::string stamp = std::to_string(month) + "/9/26 " +
                              std::to_string(hour % 12 == 0 ? 12 : hour % 12) + ":05:07 " +
                              (hour < 12 ? "AM" : "PM");
    const std::string time = std::string("2026-") + (month < 10 ? "0" : "") +
                             std::to_string(month) + "-09T" + (hour < 10 ? "0" : "") +
                             std::to_string(hour) + ":05:07";
    const char flag = random_.oneOf("NSFU");
    const char* const scheme = flag == 'N'   ? "http"
                               : flag == 'S' ? "https"
                               : flag == 'F' ? "ftp"
                                             : "none";
    folder.nodes += test::siteRecord(address, flag, stamp + "~");
    folder.expected["sites"].push_back(
        {{"address", utf8(address)}, {"scheme", scheme}, {"visited", time}});
  }

  void addNotes(Folder& folder) {
    if (isBlank()) folder.notes += std::string(1324, ' ');
    const std::string address = random_.word(300);
    const std::string text = random_.text(1023);
    folder.notes += test::notesRecord(address, text);
    folder.expected["notes"].push_back({{"address", utf8(address)}, {"text", utf8(text)}});
  }

  void addLogin(Folder& folder) {
    if (isBlank()) folder.info += std::string(360, ' ');
    const std::string address = random_.word(300);
    const std::string userID = random_.text(29);
    const std::string password = random_.text(29);
    folder.info += test::loginRecord(address, userID, password);
    folder.expected["logins"].push_back(
        {{"address", utf8(address)}, {"userId", utf8(userID)}, {"password", utf8(password)}});
  }

  void addPurchase(Folder& folder) {
    if (isBlank()) folder.purchases += std::string(542, ' ');
    const std::string address = random_.word(300);
    const std::string date = random_.text(24);
    const std::string price = random_.text(11);
    const std::string method = random_.text(49);
    const std::string item = random_.text(49);
    const std::string description = random_.text(99);
    const std::string quantity = random_.text(4);
    folder.purchases += test::purchaseRecord(address, {.date = date + "~",
                                                       .price = price + "~",
                                                       .paymentMethod = method + "~",
                                                       .item = item + "~",
                                                       .description = description + "~",
                                                       .quantity = quantity + "~"});
    folder.expected["purchases"].push_back({{"address", utf8(address)},
                                            {"date", utf8(date)},
                                            {"price", utf8(price)},
                                            {"paymentMethod", utf8(method)},
                                            {"item", utf8(item)},
                                            {"description", utf8(description)},
                                            {"quantity", utf8(quantity)}});
  }

  Randoms random_;
};

void give(test::ToolStage& stage, const std::string& folder, const Folder& made) {
  stage.given(folder + "/nodes.dat", made.nodes);
  stage.given(folder + "/notes.dat", made.notes);
  stage.given(folder + "/info.dat", made.info);
  stage.given(folder + "/purchases.dat", made.purchases);
}

TEST(ExportProperty, JsonHasEveryFieldOfEveryRecord) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(seed);
    test::ToolStage stage;
    FolderMaker maker(seed);
    const Folder data = maker.make();
    const Folder archive = maker.make();
    give(stage, "Data", data);
    give(stage, "Archives/May", archive);
    ASSERT_EQ(stage.run({"export", "--format", "json", "--show-passwords"}), 0);
    Json expected = data.expected;
    expected["archives"] = Json::array({archive.expected});
    expected["archives"][0]["name"] = "May";
    EXPECT_EQ(Json::parse(stage.output), expected);
  }
}

TEST(ExportProperty, ListsTheSameSitesAsJson) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE(seed);
    test::ToolStage stage;
    const Folder data = FolderMaker(seed).make();
    give(stage, "Data", data);
    ASSERT_EQ(stage.run({"list", "--format", "json"}), 0);
    Json expected = data.expected["sites"];
    for (Json& site : expected) site["archive"] = nullptr;
    EXPECT_EQ(Json::parse(stage.output), expected);
  }
}

using Row = std::map<std::string, std::string>;  // fields by the names of their columns

// The lines of a CSV file, read by RFC 4180.
std::vector<std::vector<std::string>> linesOf(const std::string& csv) {
  std::vector<std::vector<std::string>> lines;
  bool isQuoted = false;
  bool isLineBegun = false;
  for (std::size_t i = 0; i < csv.size(); ++i) {
    if (!isLineBegun) lines.push_back({""});
    isLineBegun = true;
    if (csv[i] == '"' && isQuoted && csv.compare(i, 2, "\"\"") == 0) {
      lines.back().back() += csv[i++];
    } else if (csv[i] == '"') {
      isQuoted = !isQuoted;
    } else if (isQuoted || (csv[i] != ',' && csv[i] != '\r')) {
      lines.back().back() += csv[i];
    } else if (csv[i] == ',') {
      lines.back().emplace_back();
    } else {
      ++i;  // LF
      isLineBegun = false;
    }
  }
  return lines;
}

// The text without the apostrophe before a formula, and with control characters for "\xNN".
std::string textOf(std::string field) {
  if (field.size() > 1 && field[0] == '\'' &&
      std::string("=+-@\t\r\n").find(field[1]) != std::string::npos) {
    field.erase(0, 1);
  }
  std::string text;
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field.compare(i, 2, "\\x") != 0) {
      text += field[i];
      continue;
    }
    const int code = std::stoi(field.substr(i + 2, 2), nullptr, 16);
    if (code >= 0x80) text += '\xC2';
    text += static_cast<char>(code);
    i += 3;
  }
  return text;
}

std::vector<Row> rowsOf(const std::string& csv) {
  const auto lines = linesOf(csv);
  std::vector<Row> rows;
  for (std::size_t line = 1; line < lines.size(); ++line) {
    Row row;
    EXPECT_EQ(lines[line].size(), lines[0].size());
    for (std::size_t column = 0; column < lines[0].size(); ++column) {
      const std::string text = textOf(lines[line].at(column));
      if (!text.empty()) row[lines[0][column]] = text;
    }
    rows.push_back(row);
  }
  return rows;
}

struct Column {
  const char* name;
  const char* nameInJson;
};

// Adds the records as rows; empty fields are left out.
void addRows(std::vector<Row>& rows, const char* kind, const std::string& archive,
             const Json& records, const std::vector<Column>& columns) {
  for (const Json& record : records) {
    Row row{{"kind", kind}};
    if (!archive.empty()) row["archive"] = archive;
    for (const Column& column : columns) {
      const auto text = record[column.nameInJson].get<std::string>();
      if (!text.empty()) row[column.name] = text;
    }
    rows.push_back(row);
  }
}

void addRows(std::vector<Row>& rows, const std::string& archive, const Json& expected) {
  addRows(rows, "site", archive, expected["sites"],
          {{"address", "address"}, {"scheme", "scheme"}, {"visited", "visited"}});
  addRows(rows, "notes", archive, expected["notes"], {{"address", "address"}, {"notes", "text"}});
  addRows(rows, "login", archive, expected["logins"],
          {{"address", "address"}, {"user_id", "userId"}, {"password", "password"}});
  addRows(rows, "purchase", archive, expected["purchases"],
          {{"address", "address"},
           {"purchase_date", "date"},
           {"item", "item"},
           {"price", "price"},
           {"quantity", "quantity"},
           {"payment_method", "paymentMethod"},
           {"description", "description"}});
}

// An apostrophe and a backslash in a text could not be told from those that CSV adds.
TEST(ExportProperty, CsvHasEveryFieldOfEveryRecord) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(seed);
    test::ToolStage stage;
    FolderMaker maker(seed, "'\\");
    const Folder data = maker.make();
    const Folder archive = maker.make();
    give(stage, "Data", data);
    give(stage, "Archives/May", archive);
    ASSERT_EQ(stage.run({"export", "--format", "csv", "--show-passwords"}), 0);
    std::vector<Row> expected;
    addRows(expected, "", data.expected);
    addRows(expected, "May", archive.expected);
    EXPECT_EQ(rowsOf(stage.output), expected);
  }
}

}  // namespace
}  // namespace quorrix
