#include "main_window/browser_launch.h"

#include <string>

#include "datafiles/site_address.h"

namespace quorrix {

void launchSiteInBrowser(CommandShell& shell, char tag, std::string_view key) {
  shell.run(std::string(kStartCommand).append(schemePrefix(tag)).append(key));
}

void launchURLInBrowser(CommandShell& shell, std::string_view url) {
  launchSiteInBrowser(shell, protocol_flag::kNone, url);
}

}  // namespace quorrix
