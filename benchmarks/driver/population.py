# SPDX-License-Identifier: MIT
"""The population of the measured machine: background processes and development servers."""

import contextlib
import json
import pathlib
import subprocess

# What even an idle machine runs: processes with a handful of descriptors each, a few of which wake up every second.
IDLE = (75, 10, 15)
# What a browser and an editor add to it; half of it wakes up every second.
DESKTOP = (300, 40, 150)

BACKGROUNDS = {"idle": [IDLE], "loaded": [IDLE, DESKTOP]}


@contextlib.contextmanager
def running(command):
    """Runs a program that prints one line when it is ready and ends with its standard input; yields the line."""
    with subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as process:
        yield process.stdout.readline()
        process.stdin.close()


def project_folders(root, count):
    folders = [pathlib.Path(root, f"project-{number}") for number in range(count)]
    for folder in folders:
        folder.mkdir(parents=True, exist_ok=True)
        package = {"name": folder.name, "dependencies": {"vite": "5", "react": "18"}}
        (folder / "package.json").write_text(json.dumps(package))
    return folders


@contextlib.contextmanager
def population(programs, background, servers, root):
    """Runs `servers` servers with one of BACKGROUNDS; yields their ports."""
    with contextlib.ExitStack() as stack:
        for processes in BACKGROUNDS[background]:
            stack.enter_context(running([programs / "background_processes", *map(str, processes)]))
        if servers == 0:
            yield []
            return
        farm = [programs / "server_farm", *project_folders(root, servers)]
        yield stack.enter_context(running(farm)).split()
