#include "data_tool/html_export.h"

#include <string>

#include "data_tool/folder_tree.h"
#include "data_tool/html_page_parts.h"
#include "data_tool/html_text.h"
#include "data_tool/html_tree.h"
#include "data_tool/site_details.h"

namespace quorrix {
namespace {

std::string headOfPage() {
  using namespace html_page;
  std::string head =
      "<!DOCTYPE html>\n"
      "<html lang=\"en\">\n"
      "<head>\n"
      "<meta charset=\"utf-8\">\n"
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src '";
  head += std::string(kStyleDigest) + "'; script-src '" + kScriptDigest;
  head +=
      "'; base-uri 'none'; form-action 'none'\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      "<meta name=\"referrer\" content=\"no-referrer\">\n"
      "<title>Sites recorded by Quorrix</title>\n";
  head += "<style>" + std::string(kStyle) + "</style>\n";
  head +=
      "</head>\n"
      "<body>\n"
      "<main>\n"
      "<h1>Sites recorded by Quorrix</h1>\n"
      "<form id=\"search\" role=\"search\" hidden>\n"
      "<label for=\"text\">Search addresses and details</label>\n"
      "<input id=\"text\" type=\"search\" autocomplete=\"off\">\n"
      "<p id=\"status\" class=\"faint\" role=\"status\"></p>\n"
      "</form>\n";
  return head;
}

std::string endOfPage() {
  return "</main>\n<script>" + std::string(html_page::kScript) + "</script>\n</body>\n</html>\n";
}

void addFolder(FolderReader& folder, Passwords passwords, Output& output) {
  const std::string& archive = folder.folder().archive;
  if (!archive.empty()) output.write("<h2>Archive " + htmlText(archive) + "</h2>\n");
  const SiteDetailIndex details(folder, {.notes = true,
                                         .purchases = true,
                                         .logins = true,
                                         .passwords = passwords == Passwords::Show});
  const FolderTree tree(folder, details);
  if (!HtmlTree(tree, details, passwords, output).write()) {
    output.write("<p class=\"faint\">No sites are recorded here.</p>\n");
  }
}

}  // namespace

void exportHtml(std::vector<FolderReader>& folders, Passwords passwords, Output& output) {
  output.write(headOfPage());
  for (FolderReader& folder : folders) addFolder(folder, passwords, output);
  output.write(endOfPage());
}

}  // namespace quorrix
