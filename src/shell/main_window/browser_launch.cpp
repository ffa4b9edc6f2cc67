#include "shell/main_window/browser_launch.h"

#include <string>

#include "sitetree/site_address.h"

namespace quorrix {
namespace {

void launch(CommandShell& shell, std::string_view scheme, std::string_view address) {
  shell.run(std::string(kStartCommand).append(scheme).append(address));
}

}  // namespace

void launchSiteInBrowser(CommandShell& shell, char tag, std::string_view key) {
  if (tag == protocol_flag::kHttps) return launch(shell, "https://", key);
  if (tag == protocol_flag::kFtp) return launch(shell, "ftp://", key);
  launchURLInBrowser(shell, key);
}

void launchURLInBrowser(CommandShell& shell, std::string_view url) {
  launch(shell, "http://", url);
}

}  // namespace quorrix
