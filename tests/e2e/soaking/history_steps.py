"""Steps to earlier and later entries of a tab's history, and to other addresses of a document."""

from soaking.model import Entry
from soaking.site import CHANGES_IN_A_BURST, FRAGMENTS
from soaking.steps import on_a_page, step

# --- back and forward ----------------------------------------------------------------------------


def _go_in_history(browsing, key, indices):
    tab = browsing.tab
    urls = {tab.entries[index].url for index in indices} - {None}
    browsing.press(key)
    beacon = browsing.wait_for_page(*urls, what=("show", "move"))
    # Browsers skip entries that pages have added without user action.
    tab.index = next(index for index in indices if tab.entries[index].url == beacon.at)
    tab.entry.base = beacon.base
    kind = "Back" if key == "alt+Left" else "Forward"
    if beacon.what == "move":
        browsing.expect_moved(f"{kind} within a document", beacon.time)
    else:
        browsing.expect_presented(kind, beacon.time)


@step("Back", 14, lambda browsing: browsing.tab.index > 0
      and browsing.tab.entries[browsing.tab.index - 1].tells_when_shown())
def back(browsing):
    _go_in_history(browsing, "alt+Left", range(browsing.tab.index - 1, -1, -1))


@step("Forward", 8, lambda browsing: browsing.tab.index + 1 < len(browsing.tab.entries)
      and browsing.tab.entries[browsing.tab.index + 1].tells_when_shown())
def forward(browsing):
    _go_in_history(browsing, "alt+Right",
                   range(browsing.tab.index + 1, len(browsing.tab.entries)))


# --- other addresses of the same document --------------------------------------------------------


@step("fragment", 4, on_a_page)
def fragment(browsing):
    _, _, present = browsing.entry.url.partition("#")
    cell = browsing.random.choice([cell for cell in FRAGMENTS if cell != present])
    browsing.click(cell)
    entry, committed = browsing.move_in_tab("move")
    browsing.tab.go_to(entry)
    browsing.expect_moved("fragment", committed)


@step("pushState", 4, on_a_page)
def push_state(browsing):
    browsing.click("push")
    entry, committed = browsing.move_in_tab("settled")
    browsing.tab.go_to(entry)
    browsing.expect_moved("pushState", committed)


@step("replaceState burst", 3, on_a_page)
def replace_many(browsing):
    browsing.click("replaces")
    entry, committed = browsing.move_in_tab("settled")
    browsing.tab.entries[browsing.tab.index] = entry
    browsing.expect_moved("replaceState burst", committed)


@step("pushState burst", 3, on_a_page)
def push_many(browsing):
    browsing.click("pushes")
    entry, committed = browsing.move_in_tab("settled")
    passing = browsing.wait(lambda: _passing(browsing), "what the burst says of its addresses")
    for beacon in passing:
        browsing.tab.go_to(Entry(beacon.at, beacon.base))
    browsing.tab.go_to(entry)
    browsing.expect_moved("pushState burst", committed)


def _passing(browsing):
    """The beacons of all addresses of a burst except the last, in order; None until all exist."""
    beacons = sorted(beacon for beacon in list(browsing.site.beacons)
                     if beacon.time >= browsing.since and beacon.what == "passing")
    return beacons if len(beacons) == CHANGES_IN_A_BURST - 1 else None
