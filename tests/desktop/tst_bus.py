# SPDX-License-Identifier: MIT
"""What a panel, or any other program on the session bus, may send."""

import sys
import time

import dbus

from driver import Scenario, eventually

ITEM = ("/StatusNotifierItem", "org.kde.StatusNotifierItem")
MENU = ("/MenuBar", "com.canonical.dbusmenu")
INT_MAX, INT_MIN = 2**31 - 1, -(2**31)

# Owns the watcher's name and never answers.
SILENT_WATCHER = """
import dbus, time
bus = dbus.SessionBus()
bus.request_name("org.kde.StatusNotifierWatcher")
print("ready", flush=True)
time.sleep(1000)
"""

# Sends 250,000 calls of all kinds, as fast as the bus takes them, and waits until the last one is answered or refused.
FLOOD = """
import dbus, dbus.lowlevel, sys
name, = sys.argv[1:]
bus = dbus.SessionBus()
def call(path, interface, method, *arguments, signature=None):
    message = dbus.lowlevel.MethodCallMessage(name, path, interface, method)
    message.append(*arguments, signature=signature)
    return message
item = "/StatusNotifierItem", "org.kde.StatusNotifierItem"
menu = "/MenuBar", "com.canonical.dbusmenu"
properties = "org.freedesktop.DBus.Properties"
kinds = [
    call(*item, "Scroll", 1, "vertical", signature="is"),
    call(item[0], properties, "GetAll", item[1], signature="s"),
    call(*menu, "GetLayout", 0, -1, [], signature="iias"),
    call(*menu, "Event", 7, "clicked", "", 0, signature="isvu"),
    call(*item, "NoSuchMethod"),
    call(*item, "Activate", 1000, 10, signature="ii"),
]
for number in range(250000):
    message = kinds[number % len(kinds)].copy()
    message.set_no_reply(number % 2 == 0)
    bus.send_message(message)
    if number % 1000 == 0:
        bus.flush()
try:
    bus.send_message_with_reply_and_block(call(*menu, "AboutToShow", 0, signature="i"), 100)
except dbus.DBusException as error:
    assert error.get_dbus_name() == "org.freedesktop.DBus.Error.LimitsExceeded", error
"""


class Watcher(Scenario):
    """The panel's watcher never answers."""

    parts = {"panel": False}

    def setUp(self):
        super().setUp()
        d = self.desktop
        watcher = d.spawn(sys.executable, "-c", SILENT_WATCHER, stdout=-1)
        self.assertEqual(watcher.stdout.readline(), b"ready\n")

    def test_does_not_delay_the_first_window(self):
        d = self.desktop
        before = time.monotonic()
        d.start()
        d.opened_window()
        self.assertLess(time.monotonic() - before, 12, "a call to the watcher ends after a second, not after 25")

    def test_does_not_delay_a_later_start(self):
        d = self.desktop
        d.start("--background")
        bus = dbus.bus.BusConnection(d.env["DBUS_SESSION_BUS_ADDRESS"])
        eventually(lambda: bus.name_has_owner("org.portolan.portolan"), "the first start to be there")
        before = time.monotonic()
        self.assertEqual(d.start_again().returncode, 0)
        d.opened_window()
        self.assertLess(time.monotonic() - before, 12)


class Item(Scenario):
    """The status icon's object on the bus."""

    def setUp(self):
        super().setUp()
        d = self.desktop
        d.start("--background")
        d.shown_icon()
        self.bus = dbus.bus.BusConnection(d.env["DBUS_SESSION_BUS_ADDRESS"])
        self.name = self.bus.get_name_owner("org.portolan.portolan")

    def call(self, path, interface, method, *arguments):
        proxy = self.bus.get_object(self.name, path, introspect=False)
        return proxy.get_dbus_method(method, interface)(*arguments)

    def test_opens_the_popover_on_the_screen_wherever_the_click_is_said_to_be(self):
        d = self.desktop
        for x in (INT_MAX, INT_MIN):
            for y in (INT_MAX, INT_MIN):
                self.call(*ITEM, "Activate", x, y)
                popover = d.opened_popover()
                self.assertTrue(0 <= popover.x <= 1280 - popover.width, popover)
                self.assertTrue(0 <= popover.y <= 800 - popover.height, popover)
                # The loss of a focus that it gets only now would close the popover that is opened next.
                eventually(lambda: d.active_window() == popover.id, "the popover to be active")
                self.call(*ITEM, "Activate", x, y)
                eventually(lambda: not d.popover(), "the popover to close")

    def test_exports_only_what_its_interfaces_name(self):
        for path, interface in (ITEM, MENU):
            with self.subTest(interface):
                self.assertNotIn("objectName", self.call(path, dbus.INTROSPECTABLE_IFACE, "Introspect"))
                self.assertNotIn("objectName", self.call(path, dbus.PROPERTIES_IFACE, "GetAll", interface))
                for of in (interface, "org.qtproject.Qt.QObject", ""):
                    with self.assertRaises(dbus.DBusException):
                        self.call(path, dbus.PROPERTIES_IFACE, "Get", of, "objectName")
                    with self.assertRaises(dbus.DBusException):
                        self.call(path, dbus.PROPERTIES_IFACE, "Set", of, "objectName", dbus.String("x", variant_level=1))
        self.assertEqual(self.call(ITEM[0], dbus.PROPERTIES_IFACE, "Get", ITEM[1], "Id"), "portolan")
        self.assertEqual(self.call(MENU[0], dbus.PROPERTIES_IFACE, "Get", MENU[1], "Version"), 3)

    def test_keeps_no_memory_of_a_flood(self):
        d = self.desktop
        d.open_popover()  # as the flood does too, which takes memory once
        d.click_icon()
        eventually(lambda: not d.popover(), "the popover to close")
        before = self.resident()
        flood = d.spawn(sys.executable, "-c", FLOOD, str(self.name))
        self.assertEqual(flood.wait(100), 0)
        eventually(lambda: self.resident() < before + 20, f"{before} MB and at most 20 more, not {self.resident()}", timeout=15,
                   pause=0.5)

    def resident(self):
        """The program's resident memory in MB."""
        with open(f"/proc/{self.desktop.program.pid}/status") as status:
            return next(int(line.split()[1]) for line in status if line.startswith("VmRSS")) // 1024
