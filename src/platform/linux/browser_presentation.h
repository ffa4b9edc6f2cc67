// Decides what a browser's window shows to the scan: the text of its address bar,
// and whether this is the one pass in which its status bar reports a visit. Pure
// logic; AccessibleWindowSystem feeds it what it read about one window per pass.
//
// A visit is seen when the web address presented is another one than before (a
// page was committed, or a tab or window with another address was chosen), or when
// the same address comes with another document: browsers make a new document for
// every load, so this is a reload, or another tab on the same page.
//
//   what happens in the browser        what is read                       visit
//   link, waiting for the server       old document, busy                 no
//   the page is committed              new document, new address          yes
//   it goes on loading, then ends      same document, no longer busy      no
//   redirect                           only the last address              yes, once
//   reload                             nothing for a while, then a new
//                                      document on the same address       yes
//   load stopped, or a download        same document, no longer busy      no
//   pushState, another fragment        same document, new address         yes
//   tab chosen, loading or not         another document                   yes
//   its load ends on the same page     new document, same address         yes
//   tab chosen that waits for a page   its old address, then the new one  twice
//   a browser's own page               an address that is not the web's   no
//   back from there to the page        address differs from none          yes
//   window chosen                      as for a tab                       as there
//   document not known (not loaded
//   yet, browser late)                 nothing                            no
//   the window is closed and another
//   one opens on the same page         new document                       yes
//   the bus went away and came back    same page, all names are new       no
//   Chromium wakes up                  a document without the rest of the
//                                      window, then both, the document
//                                      replaced                           once
//
// That a document is busy thus decides nothing about visits: while Firefox waits
// for a server the old document with the old address is busy, and Chromium never
// says so.
//
// The document of Chromium keeps the address it was loaded with, whatever
// history.pushState makes of it; only the address bar follows. The bar's text is
// taken when the bar is not focused, the document is not busy, the text means an
// address of the document's host, and it stood there in two passes in a row (after
// a change of tab the bar and the document need not change in the same moment).
// What stands in the bar after it was focused may be half typed, or an address
// whose server has not answered yet: it is not taken until it means the address
// presented again, changes without having been focused, or a document comes with
// it. While the bar cannot be trusted the address last found stays. A load begun
// from a bookmark may still show in the bar before its document is there: such a
// document, once it comes, is the visit already seen. The price is that the first
// reload after a pushState is not seen.
#pragma once

#include <map>
#include <optional>
#include <string>

namespace quorrix {

struct AddressBarReading {
  std::string text;           // UTF-8
  bool isFocused = false;     // the user may be typing
  bool documentBusy = false;  // the document of the page is loading
};

struct PageReading {
  std::string document;                  // its identity: another one for every load
  std::string address;                   // as the document has it, UTF-8, not empty
  std::optional<AddressBarReading> bar;  // only where the document's address may be stale
};

struct Presented {
  std::string address;  // empty when there is no web address to show
  bool isVisit = false;
};

class BrowserPresentation {
 public:
  // `page` is what this pass read about the window `frame`, nullopt when its
  // document is not known: it then goes on showing what it showed before.
  [[nodiscard]] Presented present(const std::string& frame, const std::optional<PageReading>& page);

  void forgetFrame(const std::string& frame) { pages_.erase(frame); }

  // All frames and documents have new identities from now on.
  void forgetIdentities();

 private:
  struct Page {
    std::string document;
    std::string documentAddress;
    std::string address;      // what is presented
    bool hasBar = false;      // as read last
    bool isFromBar = false;   // and not the document's own address
    std::string barBefore;    // the bar's text in the pass before
    bool wasFocused = false;  // the bar, in the pass before
    bool isBarTyped = false;  // what stands in the bar may have been typed
  };

  [[nodiscard]] static bool isCompleted(const Page& page, const PageReading& reading);
  static void settleBar(Page& page, const AddressBarReading& bar);
  [[nodiscard]] bool isVisit(const Page& page) const;

  std::map<std::string, Page> pages_;  // by frame
  Page last_;                          // presented last, in whatever frame
};

}  // namespace quorrix
