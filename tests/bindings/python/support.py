"""What the tests of the Python package share. The environment names the programs: OXAQRYCLN_LIBRARY, DEVSERVER."""
import os
import socket
import subprocess
import sys
import tempfile
import threading
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
PACKAGE = ROOT / "bindings/python/src"
sys.path.insert(0, str(PACKAGE))
LONGEST_RUN = 60  # seconds


class DevServer:
    """The development archive server with its blob directory."""

    def __init__(self, *options):
        self._directory = tempfile.TemporaryDirectory(prefix="blobs-")
        self.blobs = Path(self._directory.name)
        self._process = subprocess.Popen([os.environ["DEVSERVER"], "--blob-dir", self.blobs, *options],
                                         stdout=subprocess.PIPE, text=True)
        line = next(line for line in self._process.stdout if line.startswith("listening"))
        self.hosts = "127.0.0.1," + line.strip().rpartition(":")[2]
        self.settings = {"hosts": self.hosts, "user": "webuser", "password": "secret", "blob_local": self.blobs}

    def close(self):
        self._process.terminate()
        self._process.wait(LONGEST_RUN)
        self._process.stdout.close()
        self._directory.cleanup()


class SilentServer:
    """Accepts connections and never answers."""

    def __init__(self):
        self._socket = socket.create_server(("127.0.0.1", 0))
        self.hosts = f"127.0.0.1,{self._socket.getsockname()[1]}"

    def close(self):
        self._socket.close()


class CannedServer(SilentServer):
    """Gives every request the same lines as its answer."""

    def __init__(self, lines):
        super().__init__()
        text = "".join(line + "\r\n" for line in ["Status: OK", *lines]).encode("cp1252")
        self._answer = b"TotalBytes:%d\r\n" % len(text) + text
        self._thread = threading.Thread(target=self._serve)
        self._thread.start()

    def _serve(self):
        while True:
            connection, _ = self._socket.accept()
            with connection:
                if not connection.recv(65536):
                    return
                connection.sendall(self._answer)

    def close(self):
        with socket.create_connection(self._socket.getsockname()):
            pass  # which ends the thread
        self._thread.join()
        super().close()


def unused_server():
    """The address of a port where nobody listens."""
    with socket.create_server(("127.0.0.1", 0)) as each:
        return f"127.0.0.1,{each.getsockname()[1]}"


class ThreadedTest(unittest.TestCase):
    """Runs each test in a thread of its own, which has no query servers yet. The class has a development server."""

    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.server = DevServer()
        cls.addClassCleanup(cls.server.close)

    def run(self, result=None):
        thread = threading.Thread(target=super().run, args=[result])
        thread.start()
        thread.join()
        return result

    @staticmethod
    def in_own_thread(call):
        """The result of the call in a thread that has no query servers yet."""
        results = []
        thread = threading.Thread(target=lambda: results.append(call()))
        thread.start()
        thread.join()
        return results[0]

    def started(self, make, *arguments):
        """A server that ends with the test."""
        server = make(*arguments)
        self.addCleanup(server.close)
        return server


def run_program(text, *arguments, **settings):
    """Runs a Python program that has the package; what it prints, and its status."""
    environment = {**os.environ, "PYTHONPATH": str(PACKAGE), "PYTHONDONTWRITEBYTECODE": "1",
                   **settings.pop("environment", {})}
    return subprocess.run([sys.executable, "-X", "faulthandler", "-c", text, *arguments], env=environment, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=LONGEST_RUN, check=False, **settings)
