# SPDX-License-Identifier: MIT
"""The list in the popover, with real servers."""

import time

from driver import Scenario, eventually


class List(Scenario):
    needs_accessibility = True

    def setUp(self):
        super().setUp()
        d = self.desktop
        self.server, self.port = d.serve("storefront")
        d.serve("blog-api")
        d.start("--background")
        d.open_popover()
        d.find("blog-api", role="list item")
        d.find("storefront", role="list item")
        d.settle()
        self.row = d.find("storefront", role="list item")

    def test_shows_the_servers_that_run(self):
        d = self.desktop
        self.assertIn(str(self.port), self.row.name)
        d.find("blog-api", role="list item")

    def test_separates_its_rows(self):
        d = self.desktop
        for name in ("design-system", "field-notes", "invoices"):
            d.serve(name)
        d.click_on("Refresh")
        for name in ("design-system", "field-notes", "invoices"):
            d.find(name, role="list item")
        time.sleep(1)  # until the rows have moved to their positions
        frames = sorted((node.frame for node in d.all_shown(role="list item")), key=lambda frame: frame[1])
        self.assertEqual(len(frames), 5)
        for (_, y, _, height), (_, next_y, _, _) in zip(frames, frames[1:]):
            self.assertEqual(next_y - y - height, 8)

    def test_shows_a_server_that_starts_later(self):
        d = self.desktop
        d.serve("late-server")
        d.find("late-server", role="list item")

    def test_shows_buttons_on_hover(self):
        d = self.desktop
        self.assertIsNone(d.shown("Copy URL"))
        d.move_to(*self.row.centre)
        for button in ("Open", "Copy URL", "Stop", "More"):
            d.find(button)

    def test_copies_the_address(self):
        d = self.desktop
        d.move_to(*self.row.centre)
        d.click_on("Copy URL")
        eventually(lambda: d.clipboard() == f"http://localhost:{self.port}", "the address on the clipboard")

    def test_stops_a_server(self):
        d = self.desktop
        d.move_to(*self.row.centre)
        d.click_on("Stop")
        eventually(lambda: not d.shown("storefront", role="list item"), "the row to go")
        self.assertEqual(self.server.wait(5), -15)
        d.find("blog-api", role="list item")
        time.sleep(2)  # until after the scan that follows a stop
        self.assertIsNone(d.shown("storefront", role="list item"))

    def test_searches_after_control_k(self):
        d = self.desktop
        d.press("ctrl+k")
        d.type("blog")
        eventually(lambda: not d.shown("storefront", role="list item"), "the other row to go")
        d.find("blog-api", role="list item")
        d.press("ctrl+a", "BackSpace")
        d.find("storefront", role="list item")

    def test_remembers_a_pin(self):
        d = self.desktop
        d.click(*self.row.centre, button=3)
        d.click_on("Pin to Top")
        eventually(lambda: "inned" in self.named("storefront"), "the row to be pinned")
        self.assertLess(self.top("storefront"), self.top("blog-api"))
        d.program.terminate()
        self.assert_ends()

        d.start("--background")
        d.open_popover()
        eventually(lambda: "inned" in self.named("storefront"), "the row to be pinned after a restart")
        self.assertLess(self.top("storefront"), self.top("blog-api"))

    def named(self, server):
        row = self.desktop.shown(server, role="list item")
        return row.name if row else ""

    def top(self, server):
        return self.desktop.find(server, role="list item").frame[1]
