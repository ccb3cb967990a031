#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Starts real dev servers and compares `portolanctl list --json` with what they are."""

import argparse
import http.client
import json
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass, field

ROOT = pathlib.Path(__file__).resolve().parents[2]

# The Debian package of each command that the servers need.
DEBIAN = {
    "node": "nodejs",
    "npm": "npm",
    "go": "golang-go",
    "javac": "default-jdk-headless",
    "ruby": "ruby-sinatra",
    "puma": "puma",
    "php": "php-cli",
    "/usr/bin/flask": "python3-flask",
    "/usr/bin/django-admin": "python3-django",
    "lsof": "lsof",
    "ps": "procps",
}

START_LIMIT = 120  # seconds until a server accepts connections; some compile a lot at the first start
MINIMUM_MEMORY = 1  # megabytes that every server uses


@dataclass
class Server:
    """One kind of server: the files in its folder, how it is started, and what must be reported about it."""

    key: str
    name: str  # as displayed
    framework: str
    command: list  # {port} is replaced
    files: dict
    needs: list = field(default_factory=list)
    npm: list = field(default_factory=list)
    build: list = None
    environment: dict = field(default_factory=dict)
    folder: str = None  # its name, if it is not the key


def package(name, **more):
    return json.dumps({"name": name, "private": True, **more})


SERVERS = [
    Server("node", "node-plain", "Node", ["node", "server.js", "{port}"], {
        "server.js": "require('http').createServer((q, a) => a.end('hello')).listen(process.argv[2]);\n",
    }, needs=["node"], folder="node-plain"),
    Server("python", "static site", "Python", ["python3", "-m", "http.server", "{port}"], {
        "index.html": "<h1>hello</h1>\n",
    }, folder="static site"),
    Server("vite", "Vite Garden", "Vite", ["npx", "vite", "--port", "{port}", "--strictPort"], {
        "package.json": package("vite-garden"),
        "index.html": "<h1>hello</h1>\n",
    }, needs=["node", "npm"], npm=["-D", "vite@5"]),
    Server("next", "Next Shop", "Next.js", ["npx", "next", "dev", "-p", "{port}"], {
        "package.json": package("next-shop"),
        "app/layout.js": "export default ({ children }) => <html><body>{children}</body></html>;\n",
        "app/page.js": "export default () => <h1>hello</h1>;\n",
    }, needs=["node", "npm"], npm=["next@15", "react@19", "react-dom@19"], environment={"NEXT_TELEMETRY_DISABLED": "1"}),
    Server("express", "Orders Api", "Node", ["node", "index.js", "{port}"], {
        "package.json": package("@acme/orders_api"),
        "index.js": "require('express')().get('/', (q, a) => a.send('hello')).listen(process.argv[2]);\n",
    }, needs=["node", "npm"], npm=["express@4"]),
    Server("flask", "flask", "Python", ["/usr/bin/python3", "-m", "flask", "run", "--port", "{port}"], {
        "requirements.txt": "flask\n",
        "app.py": "from flask import Flask\napp = Flask(__name__)\n\n\n@app.get('/')\ndef index():\n    return 'hello'\n",
    }, needs=["/usr/bin/flask"]),
    Server("django", "django", "Django", ["/usr/bin/python3", "manage.py", "runserver", "{port}"], {
        "manage.py": "import os\nimport sys\n\nfrom django.core.management import execute_from_command_line\n\n"
                     "os.environ['DJANGO_SETTINGS_MODULE'] = 'settings'\nexecute_from_command_line(sys.argv)\n",
        "settings.py": "DEBUG = True\nSECRET_KEY = 'test'\nROOT_URLCONF = 'urls'\nALLOWED_HOSTS = ['*']\n"
                       "DATABASES = {'default': {'ENGINE': 'django.db.backends.sqlite3', 'NAME': ':memory:'}}\n",
        "urls.py": "from django.http import HttpResponse\nfrom django.urls import path\n\n"
                   "urlpatterns = [path('', lambda request: HttpResponse('hello'))]\n",
    }, needs=["/usr/bin/django-admin"]),
    Server("sinatra", "sinatra", "Rails", ["ruby", "app.rb", "-p", "{port}"], {
        "Gemfile": "gem 'sinatra'\n",
        "app.rb": "require 'sinatra'\nset :server, 'webrick'\nget('/') { 'hello' }\n",
    }, needs=["ruby"]),
    Server("puma", "puma", "Rails", ["puma", "-p", "{port}"], {
        "Gemfile": "gem 'puma'\n",
        "config.ru": "run ->(env) { [200, {'content-type' => 'text/plain'}, ['hello']] }\n",
    }, needs=["puma"]),
    Server("php", "php", "PHP", ["php", "-S", "127.0.0.1:{port}"], {
        "composer.json": "{}\n",
        "index.php": "<?php echo 'hello';\n",
    }, needs=["php"]),
    Server("go", "go-api", "Go", ["./go-api", "{port}"], {
        "go.mod": "module example/api\n\ngo 1.19\n",
        "main.go": 'package main\n\nimport (\n\t"fmt"\n\t"net/http"\n\t"os"\n)\n\nfunc main() {\n'
                   '\thttp.HandleFunc("/", func(w http.ResponseWriter, r *http.Request) { fmt.Fprint(w, "hello") })\n'
                   '\thttp.ListenAndServe(":"+os.Args[1], nil)\n}\n',
    }, needs=["go"], build=["go", "build", "-o", "go-api", "."], folder="go-api"),
    Server("java", "java", "Java", ["java", "Api.java", "{port}"], {
        "pom.xml": "<project/>\n",
        "Api.java": "import com.sun.net.httpserver.HttpServer;\nimport java.net.InetSocketAddress;\n\n"
                    "public class Api {\n    public static void main(String[] args) throws Exception {\n"
                    "        var server = HttpServer.create(new InetSocketAddress(Integer.parseInt(args[0])), 0);\n"
                    "        server.createContext(\"/\", exchange -> {\n"
                    "            exchange.sendResponseHeaders(200, -1);\n            exchange.close();\n        });\n"
                    "        server.start();\n    }\n}\n",
    }, needs=["javac"]),
]


def install(servers):
    commands = {need for server in servers for need in server.needs} | {"lsof", "ps"}
    missing = sorted({DEBIAN[command] for command in commands if not shutil.which(command)})
    if not missing:
        return
    print("installing:", *missing)
    sudo = [] if os.getuid() == 0 else ["sudo"]
    subprocess.run([*sudo, "apt-get", "update", "-qq"], check=True)
    subprocess.run([*sudo, "apt-get", "install", "-qq", "-y", "--no-install-recommends", *missing], check=True,
                   stdout=subprocess.DEVNULL)


def free_port():
    with socket.socket() as probe:
        probe.bind(("", 0))
        return probe.getsockname()[1]


def accepts(port):
    for family, host in ((socket.AF_INET, "127.0.0.1"), (socket.AF_INET6, "::1")):
        with socket.socket(family) as client:
            client.settimeout(1)
            if client.connect_ex((host, port)) == 0:
                return True
    return False


class Running:
    """A running server in its folder."""

    def __init__(self, server, parent):
        self.server = server
        self.port = free_port()
        self.folder = parent / (server.folder or server.key)
        self.process = None
        self.started = 0.0

    def prepare(self):
        for name, text in self.server.files.items():
            path = self.folder / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text)
        quiet = {"cwd": self.folder, "check": True, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        if self.server.npm:
            subprocess.run(["npm", "install", "--no-audit", "--no-fund", *self.server.npm], **quiet)
        if self.server.build:
            subprocess.run(self.server.build, **quiet)

    def start(self):
        self.started = time.monotonic()
        self.process = subprocess.Popen(
            [word.format(port=self.port) for word in self.server.command], cwd=self.folder,
            env={**os.environ, **self.server.environment}, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL, start_new_session=True)

    def wait(self):
        while not accepts(self.port):
            if self.process.poll() is not None:
                return "it ended with status %d" % self.process.returncode
            if time.monotonic() - self.started > START_LIMIT:
                return "it does not accept connections"
            time.sleep(0.2)
        return None

    def open_page(self):
        """Requests the page once, because some servers compile it on the first request."""
        for host in ("127.0.0.1", "::1"):
            page = http.client.HTTPConnection(host, self.port, timeout=START_LIMIT)
            try:
                page.request("GET", "/")
                page.getresponse().read()
                return None
            except (OSError, http.client.HTTPException) as error:
                failure = "its page cannot be read: %s" % error
            finally:
                page.close()
        return failure

    def stop(self):
        if self.process is None:
            return
        # The process group of its session includes all processes that it has started.
        for number in (signal.SIGTERM, signal.SIGKILL):
            try:
                os.killpg(self.process.pid, number)
                self.process.wait(timeout=5)
            except (ProcessLookupError, subprocess.TimeoutExpired):
                pass

    def errors(self, found):
        """Descriptions of everything that is reported incorrectly."""
        matching = [service for service in found if service["port"] == self.port]
        if len(matching) != 1:
            return ["not listed" if not matching else "listed %d times" % len(matching)]
        service = matching[0]
        expected = {
            "displayName": self.server.name,
            "framework": self.server.framework,
            "folderPath": str(self.folder),
            "url": "http://localhost:%d" % self.port,
            "id": "%d-%d" % (service["pid"], self.port),
        }
        wrong = ["%s is %r, not %r" % (key, service[key], value)
                 for key, value in expected.items() if service[key] != value]
        health = service["health"]
        if health["state"] != "healthy" or not 200 <= health["status"] < 300:
            wrong.append("health is %s" % json.dumps(health))
        return wrong + self.process_errors(service["pid"]) + self.stats_errors(service["stats"])

    def process_errors(self, pid):
        try:
            return [] if os.getpgid(pid) == self.process.pid else ["process %d does not belong to it" % pid]
        except ProcessLookupError:
            return ["process %d is gone" % pid]

    def stats_errors(self, stats):
        if stats is None:
            return ["no statistics"]
        wrong = []
        if not 0 <= stats["uptimeSeconds"] <= time.monotonic() - self.started + 2:
            wrong.append("uptime is %s s" % stats["uptimeSeconds"])
        if stats["memoryMB"] < MINIMUM_MEMORY:
            wrong.append("memory is %s MB" % stats["memoryMB"])
        if not 0 <= stats["cpuPercent"] <= 100 * os.cpu_count():
            wrong.append("CPU is %s %%" % stats["cpuPercent"])
        return wrong


def listing(portolanctl):
    output = subprocess.run([portolanctl, "list", "--json"], check=True, stdout=subprocess.PIPE, timeout=120).stdout
    return json.loads(output)


def report(rows):
    width = max(len(key) for key, _ in rows)
    for key, wrong in rows:
        print("%-*s  %s" % (width, key, "; ".join(wrong) if wrong else "correct"))
    right = sum(not wrong for _, wrong in rows)
    print("%d of %d correct" % (right, len(rows)))
    return right == len(rows)


def main():
    keys = [server.key for server in SERVERS]
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("servers", nargs="*", metavar="SERVER", help=", ".join(keys))
    parser.add_argument("--portolanctl", default=ROOT / "build/dev/bin/portolanctl", type=pathlib.Path)
    parser.add_argument("--keep", action="store_true", help="leave the servers running until Enter is pressed")
    arguments = parser.parse_args()
    unknown = sorted(set(arguments.servers) - set(keys))
    if unknown:
        parser.error("unknown server: " + ", ".join(unknown))
    chosen = [server for server in SERVERS if not arguments.servers or server.key in arguments.servers]

    install(chosen)
    parent = pathlib.Path(tempfile.mkdtemp(prefix="portolan-frameworks-", dir=pathlib.Path.home()))
    servers = [Running(server, parent) for server in chosen]
    try:
        for running in servers:
            running.prepare()
            running.start()
        failures = {running.server.key: running.wait() or running.open_page() for running in servers}
        found = listing(arguments.portolanctl)
        rows = [(running.server.key, [failures[running.server.key]] if failures[running.server.key]
                 else running.errors(found)) for running in servers]
        subprocess.run([arguments.portolanctl, "list"], check=False)
        print()
        all_correct = report(rows)
        if arguments.keep:
            input("Press Enter to end the servers.")
    finally:
        for running in servers:
            running.stop()
        shutil.rmtree(parent, ignore_errors=True)
    return 0 if all_correct else 1


if __name__ == "__main__":
    sys.exit(main())
