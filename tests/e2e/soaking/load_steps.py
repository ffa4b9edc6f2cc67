"""Steps that load another document in the tab, or the same one again."""

from soaking.hands import BOOKMARKS
from soaking.steps import on_a_page, step
from support.web_pages import Redirect, SlowBody, SlowPage


@step("typed address", 10)
def type_an_address(browsing):
    url = browsing.new_url()
    browsing.type_url(url)
    browsing.load_into_tab(url, "typed")


@step("link", 14, lambda browsing: on_a_page(browsing) and browsing.plain_links())
def click_a_link(browsing):
    cell = browsing.random.choice(browsing.plain_links())
    url = browsing.link(cell)
    browsing.click(cell)
    browsing.load_into_tab(url, "link")


def _bookmarks_in_no_tab(browsing):
    open_addresses = browsing.model.open_addresses()
    return [url for url in BOOKMARKS if url.removeprefix("http://") not in open_addresses]


@step("bookmark", 5, _bookmarks_in_no_tab)
def click_a_bookmark(browsing):
    url = browsing.random.choice(_bookmarks_in_no_tab(browsing))
    browsing.begin()
    browsing.browser.click_bookmark(url)
    browsing.load_into_tab(url, "bookmark")


@step("reload", 7, on_a_page)
def reload(browsing):
    browsing.press(browsing.random.choice(("F5", "ctrl+r", "ctrl+F5")))
    beacon = browsing.wait_for_page(browsing.entry.url)
    browsing.entry.base = beacon.base
    browsing.expect_again("reload", beacon.time)


@step("redirect", 4)
def redirect(browsing):
    start, end = browsing.new_place(), browsing.new_url()
    hop = browsing.new_url()
    browsing.mark_as_special(hop)
    statuses = browsing.random.sample((301, 302, 303, 307), 2)
    browsing.site.given(start, Redirect(hop, statuses[0]))
    browsing.site.given(hop, Redirect(end, statuses[1]))
    browsing.go_to(start)
    browsing.load_into_tab(end, "redirect")


@step("error page of the site", 2)
def error_page(browsing):
    url = browsing.new_place()
    status = browsing.random.choice((404, 500))
    browsing.site.given(url, browsing.site.page_for(url, status, caching="no-cache"))
    browsing.go_to(url)
    browsing.load_into_tab(url, "error page of the site")


@step("slow page", 3)
def slow_page(browsing):
    url = browsing.new_place()
    slow = browsing.site.given(url, SlowPage(browsing.site.page_for(url)))
    browsing.go_to(url)
    browsing.wait(slow.asked.is_set, "the slow page to be asked for")
    browsing.expect_nothing(0.4)
    slow.release()
    browsing.load_into_tab(url, "slow page")


@step("slow body", 3)
def slow_body(browsing):
    url = browsing.new_place()
    slow = browsing.site.given(url, SlowBody(browsing.site.page_for(url)))
    browsing.go_to(url)
    browsing.load_into_tab(url, "slow body")
    browsing.wait(browsing.tally.absorb, "the record")
    if browsing.random.random() < 0.5:
        browsing.browser.press_key("Escape")
        browsing.entry.is_stopped = True
        browsing.expect_nothing(0.3)
    slow.release()
    browsing.expect_nothing(0.3)


@step("slow reload", 3, lambda browsing: on_a_page(browsing) and "#" not in browsing.entry.url)
def slow_reload(browsing):
    url = browsing.entry.url
    slow = browsing.site.given(url, SlowPage(browsing.site.page_for(url)))
    browsing.press("F5")
    browsing.wait(slow.asked.is_set, "the reload to be asked for")
    browsing.expect_nothing(0.4)
    slow.release()
    beacon = browsing.wait_for_page(url)
    browsing.site.given(url, browsing.site.page_for(url))
    browsing.entry.base = beacon.base
    browsing.expect_again("slow reload", beacon.time)
