#include "data_tool/bookmarks_export.h"

#include <ctime>
#include <string>

#include "data_tool/folder_tree.h"
#include "data_tool/html_text.h"

namespace quorrix {
namespace {

constexpr const char* kBeginning =
    "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n"
    "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">\n"
    "<TITLE>Bookmarks</TITLE>\n"
    "<H1>Bookmarks</H1>\n"
    "<DL><p>\n";
constexpr const char* kEnd = "</DL><p>\n";

// The seconds since 1970 of a local time, or -1.
std::time_t unixTimeOf(const StampTime& time) {
  std::tm parts{};
  parts.tm_year = time.date.year - 1900;
  parts.tm_mon = time.date.month - 1;
  parts.tm_mday = time.date.day;
  parts.tm_hour = time.hour;
  parts.tm_min = time.minute;
  parts.tm_sec = time.second;
  parts.tm_isdst = -1;
  return std::mktime(&parts);
}

std::string datesOf(const SiteEntry& site) {
  const std::time_t visited = site.visited ? unixTimeOf(*site.visited) : -1;
  if (visited < 0) return {};
  const std::string seconds = std::to_string(visited);
  return " ADD_DATE=\"" + seconds + "\" LAST_VISIT=\"" + seconds + "\"";
}

class BookmarksFile {
 public:
  explicit BookmarksFile(Output& output) : output_(output) { output_.write(kBeginning); }

  void beginFolder(const std::string& name) {
    ++depth_;
    writeLine("<DT><H3>" + htmlText(name) + "</H3>");
    writeLine("<DL><p>");
  }

  void endFolder() {
    writeLine("</DL><p>");
    --depth_;
  }

  void addSites(FolderReader& folder) {
    const FolderTree tree(folder, SiteDetailIndex());
    const SiteTree& levels = tree.levels();
    for (std::size_t row = 0; row < levels.childCount(levels.root()); ++row) {
      const NodeId host = levels.child(levels.root(), row);
      beginFolder(std::string(levels.text(host)));
      ++depth_;
      addBranch(tree, host);
      --depth_;
      endFolder();
    }
    for (const SiteEntry& site : tree.outsiders()) addSite(site);
  }

  void end() { output_.write(kEnd); }

 private:
  void addBranch(const FolderTree& tree, NodeId level) {
    tree.forEachSite(level, [this](const SiteEntry& site) { addSite(site); });
    for (std::size_t row = 0; row < tree.levels().childCount(level); ++row) {
      addBranch(tree, tree.levels().child(level, row));
    }
  }

  void addSite(const SiteEntry& site) {
    writeLine("<DT><A HREF=\"" + htmlAddress(webAddress(site)) + "\"" + datesOf(site) + ">" +
              htmlText(site.address) + "</A>");
  }

  void writeLine(const std::string& line) {
    output_.write(std::string(4 * depth_, ' ') + line + "\n");
  }

  Output& output_;
  std::size_t depth_ = 0;
};

}  // namespace

void exportBookmarks(std::vector<FolderReader>& folders, Output& output) {
  BookmarksFile file(output);
  file.beginFolder("Quorrix");
  for (FolderReader& folder : folders) {
    const std::string& archive = folder.folder().archive;
    if (!archive.empty()) file.beginFolder("Archive " + archive);
    file.addSites(folder);
    if (!archive.empty()) file.endFolder();
  }
  file.endFolder();
  file.end();
}

}  // namespace quorrix
