"""Firefox and Chromium as other users have set them up."""

import functools
import json
import os

from support.browsers import Chromium, Firefox

# The positions of the buttons after the user has removed Firefox View from the tool bar.
WITHOUT_FIREFOX_VIEW = {
    "placements": {
        "widget-overflow-fixed-list": [],
        "unified-extensions-area": [],
        "nav-bar": ["back-button", "forward-button", "stop-reload-button", "urlbar-container",
                    "unified-extensions-button"],
        "toolbar-menubar": ["menubar-items"],
        "TabsToolbar": ["tabbrowser-tabs", "new-tab-button", "alltabs-button"],
        "vertical-tabs": [],
        "PersonalToolbar": ["personal-bookmarks"],
    },
    "seen": ["firefox-view-button", "reset-pbm-toolbar-button", "developer-button"],
    "dirtyAreaCache": ["nav-bar", "TabsToolbar", "toolbar-menubar", "PersonalToolbar",
                       "vertical-tabs"],
    "currentVersion": 40,
    "newElementCount": 5,
}

NEVER_REMEMBERS = {"browser.privatebrowsing.autostart": "true"}
VIEW_TAKEN_AWAY = {
    "browser.uiCustomization.state": "'" + json.dumps(WITHOUT_FIREFOX_VIEW) + "'"}


class FirefoxWith(Firefox):
    def __init__(self, session, site, preferences):
        self._more_preferences = preferences
        super().__init__(session, site)

    def _preferences(self):
        return super()._preferences() | self._more_preferences


def firefox_with(*preferences):
    """For tests that take a browser class: Firefox with these preferences."""
    together = functools.reduce(lambda all_of, some: all_of | some, preferences)
    return functools.partial(FirefoxWith, preferences=together)


def firefox_in(language):
    return firefox_with({"intl.locale.requested": f'"{language}"',
                         # The system's language packs are extensions, off in a new profile.
                         "extensions.autoDisableScopes": "0"})


class LocalisedChromium(Chromium):
    """Its user interface is in `language`; `profiles` maps folders to names of profiles."""

    def __init__(self, session, site, language, profiles=None):
        self._language = language
        self._profiles = profiles or {}
        super().__init__(session, site)

    def environment(self):
        return super().environment() | {"LC_ALL": "C.UTF-8", "LANGUAGE": self._language}

    def prepare_profile(self):
        super().prepare_profile()
        if not self._profiles:
            return
        state = {"profile": {"info_cache": {folder: {"name": name, "is_using_default_name": False}
                                            for folder, name in self._profiles.items()}}}
        with open(os.path.join(self.profile, "Local State"), "w", encoding="ascii") as file:
            json.dump(state, file)

    def open_window_of(self, folder, url):
        """Opens a window of the profile in that folder."""
        return self.open_window(url, option=f"--profile-directory={folder}")


def chromium_in(language, profiles=None):
    return functools.partial(LocalisedChromium, language=language, profiles=profiles)


class VetoedChromium(Chromium):
    """The user, or a script, has turned accessibility off in this Chromium."""

    def environment(self):
        return super().environment() | {"ACCESSIBILITY_ENABLED": "0"}
