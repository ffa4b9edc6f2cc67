"""Steps between tabs and windows, including private ones."""

from soaking.model import Entry, Tab
from soaking.site import title_at
from soaking.steps import on_a_page, step
from support.waiting import TimedOut, wait_until

MOST_TABS = 5
MOST_WINDOWS = 3
ANOTHER_TAB_SECONDS = 1
CHOOSE_TAB_KEYS = ("ctrl+Tab", "ctrl+shift+Tab", "ctrl+Next", "ctrl+Prior")


def _has_tabs(browsing):
    return len(browsing.window.tabs) > 1


def _all_tabs_differ(browsing):
    """If two tabs had the same address, the steps could not tell which one is shown, and switching
    between them would not be a visit."""
    addresses = [address for address in browsing.model.open_addresses() if address]
    return len(set(addresses)) == len(addresses)


def _tabs_can_be_told(browsing):
    """Whether the title tells which tab is in front."""
    return (_has_tabs(browsing) and _all_tabs_differ(browsing)
            and all(tab.entry.url for tab in browsing.window.tabs))


# --- tabs ----------------------------------------------------------------------------------------


@step("new tab", 6, lambda browsing: len(browsing.window.tabs) < MOST_TABS
      and on_a_page(browsing))
def new_tab(browsing):
    shown = browsing.entry.url
    browsing.press("ctrl+t")
    browsing.wait(lambda: not browsing.shows(shown), "the new tab")
    browsing.window.tab = Tab([Entry(None)])
    browsing.window.tabs.append(browsing.window.tab)
    url = browsing.new_url()
    browsing.type_url(url)
    browsing.load_into_tab(url, "new tab")


@step("link in a background tab", 4, lambda browsing: len(browsing.window.tabs) < MOST_TABS
      and on_a_page(browsing) and browsing.unused_links())
def background_tab(browsing):
    cell = browsing.random.choice(browsing.unused_links())
    url = browsing.link(cell)
    browsing.click(cell, held="ctrl")
    beacon = browsing.wait(lambda: browsing.site.heard(browsing.since, ("show",), (url,)),
                           "the page in the background")
    browsing.window.tabs.append(Tab([Entry(url, beacon.base)]))
    browsing.expect_nothing()


@step("another tab", 10, _tabs_can_be_told)
def choose_tab(browsing):
    browsing.press(browsing.random.choice(CHOOSE_TAB_KEYS))
    browsing.see_which_tab()


@step("close a tab", 4, _tabs_can_be_told)
def close_tab(browsing):
    window, closed = browsing.window, browsing.tab
    browsing.press("ctrl+w")
    window.tabs.remove(closed)
    browsing.see_which_tab()
    window.closed.append(closed)
    browsing.model.last_closed_in = window


@step("restore a tab", 4, lambda browsing: browsing.model.last_closed_in is browsing.window
      and not browsing.window.private and browsing.window.closed
      and len(browsing.window.tabs) < MOST_TABS
      and browsing.window.closed[-1].entry.address not in browsing.model.open_addresses())
def restore_tab(browsing):
    window = browsing.window
    tab = window.closed.pop()
    browsing.press("ctrl+shift+t")
    beacon = browsing.wait_for_page(tab.entry.url)
    tab.entry.base = beacon.base
    window.tabs.append(tab)
    window.tab = tab
    browsing.expect_presented("restored tab", beacon.time)


def _only_window(browsing):
    return len(browsing.model.windows) == 1


@step("tab into a new window", 2, lambda browsing: _only_window(browsing)
      and _tabs_can_be_told(browsing))
def move_tab(browsing):
    """Moves the first tab, after choosing it if it is not in front."""
    shown = browsing.entry.url
    browsing.press("alt+1")
    try:
        wait_until(lambda: not browsing.shows(shown), "another tab", ANOTHER_TAB_SECONDS)
    except TimedOut:
        pass  # It was in front.
    else:
        browsing.see_which_tab()
        browsing.wait(browsing.tally.absorb, "the record")
    before, tab = browsing.browser.window_titles(), browsing.tab
    browsing.begin()
    browsing.browser.move_first_tab_to_a_new_window()
    handle = browsing.browser.new_window_since(before, "the tab's new window")
    source = browsing.window
    source.tabs.remove(tab)
    browsing.add_window(handle, tab)
    browsing.wait(lambda: browsing.shows(tab.entry.url), "the tab in its new window")
    source.tab = browsing.wait(lambda: _tab_in_front(source), "another tab in the old window")
    # It is the same page and is not loaded again, so there is no visit.
    browsing.expect_nothing()


def _tab_in_front(window):
    for tab in window.tabs:
        if tab.entry.url and window.handle.title.startswith(title_at(tab.entry.url) + " "):
            return tab
    return None


# --- windows -------------------------------------------------------------------------------------


@step("new window", 3, lambda browsing: len(browsing.model.windows) < MOST_WINDOWS)
def new_window(browsing):
    _open_window(browsing, "ctrl+n", private=False)


@step("private window", 2, lambda browsing: len(browsing.model.windows) < MOST_WINDOWS
      and len(browsing.model.windows) == len(browsing.model.normal_windows()))
def private_window(browsing):
    _open_window(browsing, browsing.browser.new_private_window, private=True)


def _open_window(browsing, key, private):
    before = browsing.browser.window_titles()
    browsing.press(key)
    handle = browsing.browser.new_window_since(before, "a new window")
    browsing.add_window(handle, Tab([Entry(None)]), private)
    browsing.wait(browsing.title, "its title")
    url = browsing.new_url()
    browsing.type_url(url)
    browsing.load_into_tab(url, "new window")


@step("another window", 8, lambda browsing: len(browsing.model.windows) > 1
      and _all_tabs_differ(browsing))
def choose_window(browsing):
    browsing.use_window(browsing.random.choice(browsing.model.windows[1:]))


@step("leave the private window", 20, lambda browsing: browsing.window.private
      and browsing.model.normal_windows() and _all_tabs_differ(browsing))
def leave_private_window(browsing):
    browsing.use_window(browsing.random.choice(browsing.model.normal_windows()))


def _may_close_window(browsing):
    """The window that comes to the front must be a normal one: the one used before."""
    windows = browsing.model.windows
    return len(windows) > 1 and not windows[1].private and _all_tabs_differ(browsing)


@step("close a window", 3, _may_close_window)
def close_window(browsing):
    closed, following = browsing.model.windows[:2]
    browsing.begin()
    closed.handle.close()
    browsing.wait(lambda: closed.handle.number not in browsing.browser.window_titles(),
                  "the window to close")
    browsing.model.windows.remove(closed)
    browsing.model.last_closed_in = None
    browsing.browser.window = following.handle
    program = browsing.quorrix.main_window()
    browsing.wait(lambda: following.handle.is_active() or program.is_active(),
                  "the window used before to be in front")
    # If that is Quorrix's own window, the browser window used last is still the one that is read.
    browsing.browser.use()
    browsing.expect_chosen("window closed")


@step("another program", 3)
def another_program(browsing):
    browsing.quorrix.main_window().use()
    browsing.stay(0.3)
    browsing.browser.use()
    # The browser still shows the same page.
    browsing.expect_nothing(0.4)
