"""Steps that change how a page is shown, not which page."""

from soaking.browsing import NotCarriedOut
from soaking.model import Entry, Tab
from soaking.site import LINKS
from soaking.steps import on_a_page, step


def _wait_for_resize(browsing):
    browsing.wait(lambda: browsing.site.heard(browsing.since, ("resize",)), "another size")


@step("find bar", 3, on_a_page)
def find_bar(browsing):
    browsing.press("ctrl+f")
    browsing.browser.screen.type("sentence")
    browsing.stay(0.3)
    browsing.browser.press_key("Escape")
    browsing.expect_nothing(0.4)


@step("zoom", 3, on_a_page)
def zoom(browsing):
    browsing.press(browsing.random.choice(("ctrl+plus", "ctrl+minus")))
    _wait_for_resize(browsing)
    browsing.stay(0.3)
    browsing.press("ctrl+0")
    _wait_for_resize(browsing)
    browsing.expect_nothing(0.4)


def _links_at_the_left(browsing):
    """Cells that are not covered by the notice about leaving full screen, in the middle."""
    return [cell for cell in browsing.plain_links() if cell in LINKS[:2]]


@step("full screen", 3, lambda browsing: on_a_page(browsing) and _links_at_the_left(browsing))
def full_screen(browsing):
    """Clicks a link in full screen, where the browser shows no bars."""
    browsing.press("F11")
    _wait_for_resize(browsing)
    browsing.stay(0.5)
    cell = browsing.random.choice(_links_at_the_left(browsing))
    url = browsing.link(cell)
    browsing.click(cell, top=0)
    browsing.load_into_tab(url, "link in full screen")
    browsing.wait(browsing.tally.absorb, "the record")
    browsing.press("F11")
    _wait_for_resize(browsing)
    browsing.expect_nothing()


@step("developer tools", 1, on_a_page)
def developer_tools(browsing):
    browsing.press("F12")
    _wait_for_resize(browsing)
    browsing.stay(0.6)
    browsing.press("F12")
    _wait_for_resize(browsing)
    browsing.expect_nothing(0.4)


@step("view-source", 2, lambda browsing: on_a_page(browsing)
      and "#" not in browsing.entry.url)
def view_source(browsing):
    """The source opens in a new tab. Closing that tab brings another one to the front."""
    url, tab, window = browsing.entry.url, browsing.tab, browsing.window
    browsing.press("ctrl+u")
    browsing.wait(lambda: not browsing.shows(url), "the source's tab")
    window.tab = Tab([Entry(None)])
    window.tabs.append(window.tab)
    browsing.model.present()
    browsing.stay(0.8)
    browsing.press("ctrl+w")
    window.tabs.remove(window.tab)
    # The browser would now restore the source first, not a tab that was closed before.
    browsing.model.last_closed_in = None
    window.closed.clear()
    browsing.see_which_tab()
    if window.tab is not tab:
        raise NotCarriedOut("closing the source did not lead back to its page")


@step("reading view", 2, lambda browsing: browsing.browser.reader and on_a_page(browsing)
      and "#" not in browsing.entry.url)
def reading_view(browsing):
    """The reading view is a page of the browser. Leaving it shows the site's page again."""
    url = browsing.entry.url
    browsing.press(browsing.browser.reader)
    browsing.wait(lambda: browsing.site.heard(browsing.since, ("hide",), (url,)),
                  "the reading view")
    if not browsing.window.private:
        browsing.model.presented_before, browsing.model.presented = browsing.model.presented, None
    browsing.stay(0.8)
    browsing.press(browsing.browser.reader)
    beacon = browsing.wait_for_page(url)
    browsing.entry.base = beacon.base
    browsing.expect_presented("reading view left", beacon.time)
