# SPDX-License-Identifier: MIT
"""A client of AT-SPI: the names, roles and positions of what programs show."""

import dbus

REGISTRY = ("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")
ACCESSIBLE = "org.a11y.atspi.Accessible"
SCREEN_COORDINATES = dbus.UInt32(0)
STATE_CHECKED = 4
STATE_FOCUSED = 12
STATE_SHOWING = 25


class Node:
    """An accessible object of a program."""

    def __init__(self, bus, name, path):
        self._bus = bus
        self._name = name
        self._path = path

    def _call(self, interface, method, *arguments):
        proxy = self._bus.get_object(self._name, self._path, introspect=False)
        return proxy.get_dbus_method(method, interface)(*arguments)

    @property
    def name(self):
        return str(self._call(dbus.PROPERTIES_IFACE, "Get", ACCESSIBLE, "Name"))

    @property
    def role(self):
        return str(self._call(ACCESSIBLE, "GetRoleName"))

    def _has_state(self, state):
        return bool(self._call(ACCESSIBLE, "GetState")[0] >> state & 1)

    @property
    def is_showing(self):
        return self._has_state(STATE_SHOWING)

    @property
    def is_focused(self):
        return self._has_state(STATE_FOCUSED)

    @property
    def is_checked(self):
        return self._has_state(STATE_CHECKED)

    @property
    def frame(self):
        """x, y, width and height on the screen; zeros if it is gone."""
        try:
            return tuple(int(number) for number in self._call("org.a11y.atspi.Component", "GetExtents", SCREEN_COORDINATES))
        except dbus.DBusException:
            return 0, 0, 0, 0

    @property
    def centre(self):
        x, y, width, height = self.frame
        return x + width // 2, y + height // 2

    @property
    def children(self):
        return [Node(self._bus, name, path) for name, path in self._call(ACCESSIBLE, "GetChildren")]

    def is_named(self, part_of_name, role=None):
        """Whether its name contains `part_of_name` and its role, if one is given, is `role`; not if it is gone."""
        try:
            return part_of_name in self.name and role in (None, self.role)
        except dbus.DBusException:
            return False

    def walk(self):
        """All visible nodes below this one."""
        for child in self.children:
            try:
                if child.is_showing:
                    yield child
                    yield from child.walk()
            except dbus.DBusException:
                pass  # removed in the meantime


def connect(session_bus_address):
    """Connects to the accessibility bus of a session."""
    session = dbus.bus.BusConnection(session_bus_address)
    status = session.get_object("org.a11y.Bus", "/org/a11y/bus", introspect=False)
    return dbus.bus.BusConnection(str(status.get_dbus_method("GetAddress", "org.a11y.Bus")()))


def programs(bus):
    """The root nodes of all programs that are registered with AT-SPI."""
    return Node(bus, *REGISTRY).children
