// "Link to in Browser": the command lines that open a site in the default browser.
#pragma once

#include <string_view>

#include "platform/command_shell.h"

namespace quorrix {

// `tag` is the scheme letter of the site's node, `key` its address without a scheme; any
// unknown letter counts as http.
void launchSiteInBrowser(CommandShell& shell, char tag, std::string_view key);

// For an address without a scheme, about which nothing else is known.
void launchURLInBrowser(CommandShell& shell, std::string_view url);

}  // namespace quorrix
