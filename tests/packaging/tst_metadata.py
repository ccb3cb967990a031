# SPDX-License-Identifier: MIT
"""The descriptions of the program that desktops, software centres and man read."""

import os
import re
import subprocess
import unittest
import xml.etree.ElementTree as xml
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
PACKAGING = PROJECT / "packaging"
BUILT = Path(os.environ["PORTOLAN_PACKAGING"])
BIN = Path(os.environ["PORTOLAN_BIN"])
ID = "org.portolan.portolan"


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, timeout=60)


class Metadata(unittest.TestCase):
    def assert_silent(self, *command):
        result = run(*command)
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))

    def test_desktop_entry_is_valid(self):
        self.assert_silent("desktop-file-validate", PACKAGING / f"{ID}.desktop")

    def test_metainfo_is_valid(self):
        result = run("appstreamcli", "validate", "--pedantic", "--no-net", BUILT / f"{ID}.metainfo.xml")
        self.assertEqual(result.returncode, 0, result.stdout)
        # Versions before 1.0 do not know who a developer is.
        self.assertNotRegex(result.stdout, r"(?m)^[EWIP]: (?!.* unknown-tag developer$)")

    def test_one_id_everywhere(self):
        metainfo = xml.parse(BUILT / f"{ID}.metainfo.xml").getroot()
        self.assertEqual(metainfo.findtext("id"), ID)
        self.assertEqual(metainfo.findtext("launchable"), f"{ID}.desktop")
        for source in ("app/main.cpp", "platform/session/SingleInstance.cpp"):
            self.assertIn(f'"{ID}"', (PROJECT / "src" / source).read_text())

    def test_one_version_everywhere(self):
        version = re.search(r"VERSION ([0-9.]+)\n", (PROJECT / "CMakeLists.txt").read_text())[1]
        self.assertRegex((PROJECT / "CHANGELOG.md").read_text(), rf"(?m)^## {re.escape(version)} \(")
        metainfo = xml.parse(BUILT / f"{ID}.metainfo.xml").getroot()
        self.assertEqual(metainfo.find("releases/release").get("version"), version)
        for program in ("portolan", "portolanctl"):
            self.assertEqual(run(BIN / program, "--version").stdout, f"{program} {version}\n")
            self.assertIn(f'"portolan {version}"', (BUILT / f"man/{program}.1").read_text())

    def test_manual_pages_have_no_warnings(self):
        for program in ("portolan", "portolanctl"):
            result = run("man", "--warnings", "--encoding=UTF-8", "--local-file", "-Tutf8", BUILT / f"man/{program}.1")
            self.assertEqual((result.returncode, result.stderr), (0, ""))
            self.assertIn("User Commands", result.stdout)

    def test_manual_pages_name_every_option(self):
        for program in ("portolan", "portolanctl"):
            page = (BUILT / f"man/{program}.1").read_text().replace("\\-", "-")
            for option in re.findall(r"--[a-z-]+", run(BIN / program, "--help").stdout):
                self.assertIn(option, page)

    def test_every_source_file_names_its_licence(self):
        files = run("git", "-C", PROJECT, "ls-files").stdout.split("\n")
        sources = [PROJECT / file for file in files if re.search(r"(\.(h|cpp|qml|py|cmake)|CMakeLists\.txt)$", file)]
        if not sources:
            self.skipTest("this is no checkout")
        for source in sources:
            with self.subTest(source):
                self.assertIn("SPDX-License-Identifier: MIT", source.read_text()[:200])
