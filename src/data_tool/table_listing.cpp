#include "data_tool/table_listing.h"

#include <utility>

#include "data_tool/shown_text.h"

namespace quorrix {
namespace {

constexpr std::size_t kVisitedColumns = 20;  // also of the longest stamp that Quorrix writes
constexpr std::size_t kSchemeColumns = 6;
constexpr std::size_t kLeastForAddress = 20;  // otherwise it has a line of its own
constexpr const char* kGap = "  ";
constexpr const char* kIndentation = "    ";

std::string summaryOf(const PurchaseEntry& purchase) {
  std::string summary;
  for (const std::string* text :
       {&purchase.date, &purchase.quantity, &purchase.item, &purchase.price,
        &purchase.paymentMethod, &purchase.description}) {
    if (text->empty()) continue;
    if (!summary.empty()) summary += "; ";
    summary += *text;
  }
  return summary;
}

// Lines of notes end with CR LF, and other programs may have written LF alone.
std::string onOneLine(const std::string& text) {
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isBreak = text[i] == '\n' || text.compare(i, 2, "\r\n") == 0;
    line += isBreak ? std::string(" / ") : std::string(1, text[i]);
    if (isBreak && text[i] == '\r') ++i;
  }
  return line;
}

}  // namespace

void TableListing::begin() { addLine("VISITED", "SCHEME", "ARCHIVE", "ADDRESS"); }

void TableListing::add(const SiteEntry& site, const std::string& archive,
                       const SiteDetails& details) {
  addLine(site.visited ? isoTime(*site.visited, ' ') : escapedText(site.unreadableStamp),
          std::string(shownScheme(site)), escapedText(archive), escapedText(site.address));
  if (const std::string* const notes = details.firstNotes()) addDetail("notes: ", *notes);
  if (const LoginEntry* const login = details.firstLogin()) {
    addDetail("user ID: ", login->userID);
    if (choice_.passwords) addDetail("password: ", login->password);
  }
  for (const PurchaseEntry& purchase : details.purchases) {
    addDetail("purchase: ", summaryOf(purchase));
  }
}

void TableListing::addLine(std::string visited, std::string scheme, const std::string& archive,
                           const std::string& address) {
  std::string line = paddedTo(std::move(visited), kVisitedColumns) + kGap;
  line += paddedTo(std::move(scheme), kSchemeColumns) + kGap;
  if (frame_.archiveColumns > 0) {
    line += paddedTo(cutToColumns(archive, frame_.archiveColumns), frame_.archiveColumns) + kGap;
  }
  const bool isNarrow = frame_.width && columnsOf(line) + kLeastForAddress > *frame_.width;
  if (!isNarrow) return write(line + address);
  write(line.substr(0, line.find_last_not_of(' ') + 1));
  write(kIndentation + address);
}

void TableListing::addDetail(const char* name, const std::string& text) {
  write(kIndentation + std::string(name) + escapedText(onOneLine(text)));
}

void TableListing::write(const std::string& line) {
  output_.write(frame_.width ? cutToColumns(line, *frame_.width) : line);
  output_.write("\n");
}

}  // namespace quorrix
