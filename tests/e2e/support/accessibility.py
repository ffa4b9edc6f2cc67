"""Direct access to the accessibility bus, without a library.

A library would cache what it has seen, and would lose its connection permanently when the bus
restarts. These tests need the current state and their own time limits, and continue after a
restart.
"""

from gi.repository import Gio, GLib

from support.session import connect

ROOT = "/org/a11y/atspi/accessible/root"
ACCESSIBLE = "org.a11y.atspi.Accessible"
STATE_ACTIVE = 1
STATE_CHECKED = 4
STATE_FOCUSED = 12
STATE_SELECTED = 23
STATE_SENSITIVE = 24
STATE_SHOWING = 25
RELATION_EMBEDS = 13


class AccessibilityBus:
    def __init__(self, session):
        self.address = session.accessibility_address()
        self.connection = connect(self.address)

    def close(self):
        if not self.connection.is_closed():
            self.connection.close_sync()

    def application_of(self, process_id):
        """The application that a process has registered on the bus, or None."""
        for application in Accessible(self, "org.a11y.atspi.Registry", ROOT).children():
            try:
                if self._process_of(application.owner) == process_id:
                    return application
            except GLib.Error:
                continue  # It disappeared during the call.
        return None

    def _process_of(self, owner):
        return self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                         "GetConnectionUnixProcessID", GLib.Variant("(s)", (owner,)))[0]

    def names_of(self, process_id):
        """Unique names of all connections that a process has to this bus."""
        bus = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")
        names = []
        for name in self.call(*bus, "ListNames")[0]:
            try:
                if name.startswith(":") and self._process_of(name) == process_id:
                    names.append(name)
            except GLib.Error:
                continue  # It disappeared during the call.
        return names

    def call(self, owner, path, interface, method, arguments=None, milliseconds=3000):
        return self.connection.call_sync(owner, path, interface, method, arguments, None,
                                         Gio.DBusCallFlags.NONE, milliseconds, None).unpack()

    def call_without_answer(self, owner, path, interface, method, arguments):
        message = Gio.DBusMessage.new_method_call(owner, path, interface, method)
        message.set_body(arguments)
        message.set_flags(Gio.DBusMessageFlags.NO_REPLY_EXPECTED)
        self.connection.send_message(message, Gio.DBusSendMessageFlags.NONE)
        self.connection.flush_sync()


class StateWatch:
    """Listens for objects that enter a state ("focused", "showing"), as a screen reader does."""

    REGISTRY = ("org.a11y.atspi.Registry", "/org/a11y/atspi/registry", "org.a11y.atspi.Registry")

    def __init__(self, bus, state):
        self.bus = bus
        self._event = "object:state-changed:" + state
        self._heard = []
        self._number = bus.connection.signal_subscribe(
            None, "org.a11y.atspi.Event.Object", "StateChanged", None, state,
            Gio.DBusSignalFlags.NONE, self._hear)
        bus.call(*self.REGISTRY, "RegisterEvent", GLib.Variant("(sass)", (self._event, [], "")))

    def _hear(self, _connection, owner, path, _interface, _member, arguments):
        if arguments.unpack()[1]:
            self._heard.append(Accessible(self.bus, owner, path))

    def heard(self):
        """The objects that have entered the state since the watch began, latest first."""
        while GLib.MainContext.default().iteration(False):
            pass
        return self._heard[::-1]

    def close(self):
        self.bus.connection.signal_unsubscribe(self._number)
        self.bus.call(*self.REGISTRY, "DeregisterEvent", GLib.Variant("(s)", (self._event,)))


class FocusWatch(StateWatch):
    """The only way to find a popup menu, which is not a child of any window."""

    def __init__(self, bus):
        super().__init__(bus, "focused")


class Accessible:
    """One object on the bus. Nothing is cached: every query goes to its program."""

    FIRST_ACTION = ("org.a11y.atspi.Action", "DoAction", GLib.Variant("(i)", (0,)))

    def __init__(self, bus, owner, path):
        self.bus = bus
        self.owner = owner
        self.path = path

    def _ask(self, method, arguments=None, interface=ACCESSIBLE):
        return self.bus.call(self.owner, self.path, interface, method, arguments)

    def _property(self, name, interface=ACCESSIBLE):
        return self._ask("Get", GLib.Variant("(ss)", (interface, name)),
                         "org.freedesktop.DBus.Properties")[0]

    @property
    def name(self):
        return self._property("Name")

    @property
    def role(self):
        return self._ask("GetRoleName")[0]

    @property
    def parent(self):
        return Accessible(self.bus, *self._property("Parent"))

    @property
    def text(self):
        """The whole text of a text box."""
        return self._ask("GetText", GLib.Variant("(ii)", (0, -1)), "org.a11y.atspi.Text")[0]

    def insert_text(self, text):
        """Inserts text at the beginning of a text box, as dictation does. For characters that no
        key produces."""
        self._ask("InsertText", GLib.Variant("(isi)", (0, text, len(text))),
                  "org.a11y.atspi.EditableText")

    def children(self):
        return [Accessible(self.bus, owner, path) for owner, path in self._ask("GetChildren")[0]]

    def embedded(self):
        """The objects of other programs or processes that it claims to embed."""
        return [Accessible(self.bus, owner, path)
                for kind, targets in self._ask("GetRelationSet")[0] if kind == RELATION_EMBEDS
                for owner, path in targets]

    def attributes(self):
        return self._ask("GetAttributes")[0]

    def has_state(self, state):
        low, high = self._ask("GetState")[0]
        return bool((high << 32 | low) >> state & 1)

    def extents(self):
        """Left, top, width and height on the screen."""
        return self._ask("GetExtents", GLib.Variant("(u)", (0,)), "org.a11y.atspi.Component")[0]

    def centre(self):
        left, top, width, height = self.extents()
        return left + width // 2, top + height // 2

    def press(self):
        """Invokes the first action without waiting for the answer. A menu entry that opens a modal
        window or runs for a long time answers only at the end."""
        self.bus.call_without_answer(self.owner, self.path, *self.FIRST_ACTION)

    def press_and_wait(self):
        """Invokes the first action as a screen reader does: waits for the answer, and fails if none
        arrives."""
        self.bus.call(self.owner, self.path, *self.FIRST_ACTION)

    def everything_below(self):
        """All descendants, each before its own children."""
        for child in self.children():
            yield child
            yield from child.everything_below()

    def find(self, role, name=None):
        """The first descendant of that role (and name), or None."""
        for thing in self.everything_below():
            if thing.role == role and name in (None, thing.name):
                return thing
        return None
