# SPDX-License-Identifier: MIT
"""The functions between the scan and the screen, timed one by one."""

import subprocess

import report


def main(paths):
    report.heading("functions")
    subprocess.run([paths.programs / "functions", "--benchmark_min_time=0.2"], check=True)
