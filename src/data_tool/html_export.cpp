#include "data_tool/html_export.h"

#include <set>
#include <string>

#include "data_tool/host_tree.h"
#include "data_tool/html_page_parts.h"
#include "data_tool/html_text.h"
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
      "<label for=\"text\">Search addresses and notes</label>\n"
      "<input id=\"text\" type=\"search\" autocomplete=\"off\">\n"
      "<p id=\"status\" class=\"faint\" role=\"status\"></p>\n"
      "</form>\n";
  return head;
}

std::string endOfPage() {
  return "</main>\n<script>" + std::string(html_page::kScript) + "</script>\n</body>\n</html>\n";
}

class HtmlPage {
 public:
  HtmlPage(Passwords passwords, Output& output)
      : choice_{.notes = true,
                .purchases = true,
                .logins = true,
                .passwords = passwords == Passwords::Show},
        output_(output) {}

  void begin() { output_.write(headOfPage()); }
  void end() { output_.write(endOfPage()); }

  void addFolder(FolderReader& folder) {
    const std::string& archive = folder.folder().archive;
    if (!archive.empty()) output_.write("<h2>Archive " + htmlText(archive) + "</h2>\n");
    const SiteDetailIndex details(folder, choice_);
    std::vector<HostGroup> hosts = sitesByHost(folder);
    if (hosts.empty() && details.all().empty()) {
      output_.write("<p class=\"faint\">No sites are recorded here.</p>\n");
    }
    std::set<std::string> written;
    for (const HostGroup& group : hosts) {
      beginHost(group.host, group.sites.size());
      for (const SiteEntry& site : group.sites) {
        addSite(site, written.insert(site.address).second ? details.of(site.address) : kNoDetails);
      }
      endHost();
    }
    addOthers(details, written);
  }

 private:
  // What is kept about a level of the tree that has no record of its own.
  void addOthers(const SiteDetailIndex& details, const std::set<std::string>& written) {
    std::size_t count = 0;
    for (const auto& [address, kept] : details.all()) count += written.contains(address) ? 0U : 1U;
    if (count == 0) return;
    beginHost("Kept for addresses without a visit", count);
    for (const auto& [address, kept] : details.all()) {
      if (written.contains(address)) continue;
      SiteEntry site;
      site.address = address;
      addSite(site, kept);
    }
    endHost();
  }

  void beginHost(const std::string& name, std::size_t sites) {
    output_.write("<details>\n<summary><bdi>" + htmlText(name) + "</bdi> <span class=\"faint\">(" +
                  std::to_string(sites) + ")</span></summary>\n<ul>\n");
  }

  void endHost() { output_.write("</ul>\n</details>\n"); }

  void addSite(const SiteEntry& site, const SiteDetails& details) {
    output_.write("<li class=\"site\"><a href=\"" + htmlAddress(webAddress(site)) +
                  "\" rel=\"noreferrer noopener\"><bdi>" + htmlText(site.address) + "</bdi></a>");
    if (site.visited) {
      output_.write(" <time datetime=\"" + isoTime(*site.visited) + "\">" +
                    isoTime(*site.visited, ' ') + "</time>");
    } else if (!site.unreadableStamp.empty()) {
      output_.write(" <span class=\"faint\">" + htmlText(site.unreadableStamp) + "</span>");
    }
    addDetails(details);
    output_.write("</li>\n");
  }

  void addDetails(const SiteDetails& details) {
    if (details.notes.empty() && details.logins.empty() && details.purchases.empty()) return;
    output_.write("\n<dl>\n");
    for (const std::string& notes : details.notes) addDetail("Notes", notes);
    for (const LoginEntry& login : details.logins) {
      addDetail("User ID", login.userID);
      if (choice_.passwords) addDetail("Password", login.password);
    }
    for (const PurchaseEntry& purchase : details.purchases) addPurchase(purchase);
    output_.write("</dl>");
  }

  void addPurchase(const PurchaseEntry& purchase) {
    addDetail("Purchase", purchase.item);
    addDetail("Date", purchase.date);
    addDetail("Price", purchase.price);
    addDetail("Quantity", purchase.quantity);
    addDetail("Payment Method", purchase.paymentMethod);
    addDetail("Description", purchase.description);
  }

  void addDetail(const char* name, const std::string& text) {
    output_.write("<dt>" + std::string(name) + "</dt><dd dir=\"auto\">" + htmlLines(text) +
                  "</dd>\n");
  }

  static inline const SiteDetails kNoDetails{};

  DetailChoice choice_;
  Output& output_;
};

}  // namespace

void exportHtml(std::vector<FolderReader>& folders, Passwords passwords, Output& output) {
  HtmlPage page(passwords, output);
  page.begin();
  for (FolderReader& folder : folders) page.addFolder(folder);
  page.end();
}

}  // namespace quorrix
