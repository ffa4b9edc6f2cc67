"""Steps that do not lead to a page of the site: nothing must be recorded."""

from soaking.browsing import NotCarriedOut
from soaking.hands import SLOW_BOOKMARK
from soaking.model import Entry
from soaking.steps import on_a_page, step
from support.web_pages import Broken, NoContent, SlowPage, download


@step("Escape during a slow load", 4)
def escape_a_load(browsing):
    url = browsing.new_place()
    slow = browsing.site.given(url, SlowPage(browsing.site.page_for(url)))
    browsing.go_to(url)
    _escape(browsing, slow)


@step("Escape after a bookmark", 3)
def escape_a_bookmark(browsing):
    slow = browsing.site.given(SLOW_BOOKMARK, SlowPage(browsing.site.page_for(
        SLOW_BOOKMARK, caching="no-store")))
    browsing.begin()
    browsing.browser.click_bookmark(SLOW_BOOKMARK)
    _escape(browsing, slow)


def _escape(browsing, slow):
    browsing.wait(slow.asked.is_set, "the slow page to be asked for")
    browsing.expect_nothing(0.3)
    browsing.browser.press_key("Escape")
    browsing.expect_nothing(0.4)
    slow.release()
    browsing.expect_nothing(0.3)


@step("no content", 2)
def no_content(browsing):
    url = browsing.new_place()
    browsing.site.given(url, NoContent())
    browsing.go_to(url)
    browsing.wait_for_asked(url)
    browsing.expect_nothing()


# In a private window, Chromium asks where to save a download.
@step("download", 2, lambda browsing: not browsing.window.private)
def download_a_file(browsing):
    url = browsing.new_place()
    browsing.site.given(url, download(f"table-{len(browsing.tally.visits)}.csv"))
    browsing.go_to(url)
    browsing.wait_for_asked(url)
    browsing.expect_nothing()


@step("broken connection", 2, on_a_page)
def broken_connection(browsing):
    url, shown = browsing.new_place(), browsing.entry.url
    browsing.site.given(url, Broken())
    browsing.go_to(url)
    browsing.wait(lambda: not browsing.shows(shown), "the browser's error page")
    browsing.tab.go_to(Entry(None))
    browsing.model.present()
    browsing.expect_nothing()


@step("half-typed address", 2, on_a_page)
def half_typed(browsing):
    browsing.browser.type_address(browsing.new_url())
    browsing.expect_nothing()
    browsing.browser.give_up_typing()
    if not browsing.shows(browsing.entry.url):
        raise NotCarriedOut(f"the page is gone; the title is {browsing.title()!r}")
