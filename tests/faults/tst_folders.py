# SPDX-License-Identifier: MIT
"""Faults in the files of a project folder, with real servers in it."""

import json
import os
import socket
import threading
import time

from faults import ANSWER, Fault


class Folders(Fault):
    def setUp(self):
        super().setUp()
        self.project = self.folder / "storefront"
        self.project.mkdir()
        self.package = self.project / "package.json"
        self.start_servers(1, ANSWER, folder=self.project)

    def check(self, name="storefront", framework="Python"):
        start = time.monotonic()
        service, = self.listed("--no-probe")
        self.assertEqual((service["displayName"], service["framework"]), (name, framework))
        self.assertLess(time.monotonic() - start, 10)

    def test_f1_package_json_is_no_file(self):
        os.mkfifo(self.package)
        self.check()
        self.package.unlink()
        listener = socket.socket(socket.AF_UNIX)
        self.addCleanup(listener.close)
        listener.bind(str(self.package))
        self.check()
        self.package.unlink()
        self.package.mkdir()
        self.check()
        self.package.rmdir()
        for target in ("/dev/zero", "/dev/full", "/dev/tty", "/proc/kmsg", "/proc/self/status", "/proc/self/mem", "/"):
            self.package.symlink_to(target)
            self.check()
            self.package.unlink()

    def test_f2_links_and_permissions(self):
        self.package.symlink_to("package.json")
        self.check()
        self.package.unlink()
        for number in range(45):
            (self.project / f"link{number}").symlink_to(f"link{number + 1}")
        self.package.symlink_to("link0")
        self.check()
        self.package.unlink()
        self.package.write_text('{"name":"x"}')
        self.package.chmod(0)
        self.project.chmod(0)
        service, = self.listed("--no-probe")
        self.assertIn(service["displayName"], ("storefront", "X"))  # root may read it
        self.project.chmod(0o755)

    def test_f3_sizes(self):
        with open(self.package, "wb") as file:
            file.truncate(5 << 30)
        self.check()
        self.package.write_text('{"name":"' + "x" * (3 << 20) + '"}')
        service, = self.listed("--no-probe")
        self.assertLessEqual(len(service["displayName"]), 1000)
        self.package.write_text("{" + ",".join(f'"k{number}":1' for number in range(200_000)) + ',"name":"many-keys"}')
        self.check("Many Keys")
        self.package.write_text('{"a":' * 500_000)
        self.check()

    def test_f3_the_size_changes_while_it_is_read(self):
        ends = threading.Event()

        def change():
            while not ends.is_set():
                self.package.write_text('{"name":"one"}')
                with open(self.package, "ab") as file:
                    file.write(b" " * (1 << 20))

        changer = threading.Thread(target=change)
        changer.start()
        try:
            for _ in range(10):
                service, = self.listed("--no-probe")
                self.assertIn(service["displayName"], ("storefront", "One"))
        finally:
            ends.set()
            changer.join()

    def test_f4_odd_json(self):
        for text, name in (("\ufeff{\"name\":\"with-mark\"}", "With Mark"), ("// x\n{}", "storefront"), ('{"name":"a",}', "storefront"),
                           ('{"name":"a","name":"b"}', "B"), ('{"name":5}', "storefront"), ('{"name":""}', "storefront"),
                           ('{"name":"---"}', ""), ('{"name":"\\ud800"}', None), ('{"name":"a\\u0000b"}', None)):
            self.package.write_text(text)
            if name is None:
                self.listed("--no-probe")
            else:
                self.check(name)
        self.package.write_bytes('{"name":"utf-16"}'.encode("utf-16"))
        self.check()

    def test_f5_odd_dependencies(self):
        for value in ([], 5, None, "next", {"__proto__": 1, "constructor": 1, "toString": 1}):
            self.package.write_text(json.dumps({"name": "shop", "dependencies": value, "devDependencies": value}))
            self.check("Shop")

    def test_f7_the_file_is_exchanged_while_it_is_read(self):
        ends = threading.Event()
        good, bad = self.project / "good", self.project / "bad"
        good.write_text('{"name":"good"}')
        bad.symlink_to("/dev/zero")

        def change():
            while not ends.is_set():
                for source in (good, bad):
                    link = self.project / "next"
                    link.symlink_to(source)
                    link.rename(self.package)

        changer = threading.Thread(target=change)
        changer.start()
        try:
            for _ in range(10):
                service, = self.listed("--no-probe")
                self.assertIn(service["displayName"], ("storefront", "Good"))
        finally:
            ends.set()
            changer.join()

    def test_f8_odd_folders(self):
        deep = self.folder / ("x" * 255) / ("y" * 255)
        deep.mkdir(parents=True)
        for folder in ("/", "/proc/self", deep):
            process, (port,) = self.start_servers(1, ANSWER, folder=folder)
            names = {service["port"]: service["displayName"] for service in self.listed("--no-probe")}
            self.assertEqual(names[port], {"/": "/", "/proc/self": str(process.pid)}.get(folder, "y" * 255))
            process.kill()
            process.wait()

    def test_f8_a_folder_that_was_deleted(self):
        gone = self.folder / "gone"
        gone.mkdir()
        _, (port,) = self.start_servers(1, ANSWER, folder=gone)
        gone.rmdir()
        service = {service["port"]: service for service in self.listed("--no-probe")}[port]
        self.assertIsNone(service["folderPath"])
        self.assertNotIn("deleted", service["displayName"])
        really = self.folder / "really (deleted)"
        really.mkdir()
        _, (port,) = self.start_servers(1, ANSWER, folder=really)
        service = {service["port"]: service for service in self.listed("--no-probe")}[port]
        self.assertEqual(service["displayName"], "really (deleted)")

    def test_f9_names_are_compared_byte_by_byte(self):
        (self.project / "PACKAGE.JSON").write_text('{"name":"x"}')
        (self.project / "Go.mod").write_text("")
        self.check()
        for name in ("cafe\u0301", "caf\u00e9"):
            folder = self.folder / name
            folder.mkdir()
            _, (port,) = self.start_servers(1, ANSWER, folder=folder)
            names = {service["port"]: service["displayName"] for service in self.listed("--no-probe")}
            self.assertEqual(names[port], name)
