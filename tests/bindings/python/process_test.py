"""Threads, forks, signals and the end of the interpreter."""
import os
import signal
import subprocess
import sys
import threading
import time
import unittest

import support
from support import SilentServer, ThreadedTest, run_program

from oxaqrycln import ArchivePool, Cancelled
from oxaqrycln._access import _spread


class ThreadsTest(ThreadedTest):
    def test_a_pool_gives_each_thread_an_archive_of_its_own(self):
        pool = ArchivePool(**self.server.settings)
        archives, failures = [], []

        def work():
            try:
                archives.append(own := pool.archive())
                for _ in range(20):
                    assert pool.archive() is own
                    assert own.search("copper").total == 21
                own.close()
                assert pool.archive().search("copper").total == 21
            except Exception as error:
                failures.append(error)
        threads = [threading.Thread(target=work) for _ in range(8)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual((failures, len(set(map(id, archives)))), ([], 8))

    def test_a_wait_lets_other_threads_run(self):
        silent = self.started(SilentServer)
        archive = ArchivePool(hosts=silent.hosts, timeout=60).archive()
        threading.Timer(0.2, archive.cancel).start()  # which could not run otherwise
        self.assertRaises(Cancelled, archive.channels)

    def test_threads_start_at_servers_of_their_own(self):
        hosts, seen = "a,1|b,2,1|c,3", []

        def ask():
            seen.append((_spread(hosts), _spread(hosts)))
        for _ in range(3):
            thread = threading.Thread(target=ask)
            thread.start()
            thread.join()
        self.assertEqual({first for first, _ in seen}, {"a,1|b,2,1|c,3", "b,2,1|c,3|a,1", "c,3|a,1|b,2,1"})
        self.assertTrue(all(first == second for first, second in seen))


# argv: hosts
FORK = """
import os, sys, traceback, warnings
warnings.simplefilter("ignore", DeprecationWarning)  # of a fork beside the thread that reads signals
from oxaqrycln import Archive, ArchivePool, WrongThread, raw
settings = {"hosts": sys.argv[1], "user": "webuser", "password": "secret"}

def child(work):
    process = os.fork()
    if process == 0:
        status = 1
        try:
            work()
            status = 0
        except Exception:
            traceback.print_exc()
        finally:
            sys.stderr.flush()
            os._exit(status)
    return os.waitpid(process, 0)[1]

def search():
    assert Archive(**settings).search("copper").total == 21

pool = ArchivePool(**settings)
for _ in range(20):  # the library is loaded, and no query was made yet
    assert child(search) == 0
pool.archive().channels()

def use_parents():
    for call in (parent.channels, hits.read):
        try:
            call()
        except WrongThread:
            pass
        else:
            raise AssertionError("the parent's archive answers")
    parent.close()
    assert pool.archive().search("copper").total == 21

parent = pool.archive()
hits = parent.search("copper")
for _ in range(20):
    assert child(use_parents) == 0
assert parent.search("copper").total == len(list(hits)) == 21
print("done")
"""

# argv: hosts
EXIT = """
import sys, threading
from oxaqrycln import Archive
settings = {"hosts": sys.argv[1], "user": "webuser", "password": "secret"}
archives = [Archive(**settings)]
archives[0].channels()
hits = archives[0].search("copper")
ready = threading.Event()

def wait():
    archives.append(Archive(**settings))
    archives[-1].channels()
    ready.set()
    threading.Event().wait()

threading.Thread(target=wait, daemon=True).start()
ready.wait()
print(len(hits))
"""

# argv: hosts; the statement that handles the interrupt
INTERRUPT = """
import asyncio, os, signal, sys, threading, time
from oxaqrycln import Archive, Cancelled
archive = Archive(hosts=sys.argv[1], timeout=60)
exec(sys.argv[2])
began = time.monotonic()
for _ in range(2):
    threading.Timer(0.3, os.kill, [os.getpid(), signal.SIGINT]).start()
    try:
        archive.channels()
    except (KeyboardInterrupt, Cancelled) as error:
        print(type(error).__name__)
assert time.monotonic() - began < 30
archive.close()
exec(sys.argv[3])
"""


# The signal comes when the request has just ended, before the thread that reads it can run.
LATE_INTERRUPT = """
import os, signal, time
from unittest import mock
from oxaqrycln import _interrupt
query, following = mock.Mock(), mock.Mock()
_interrupt.run(query, int, ())
try:
    _interrupt.run(query, os.kill, (os.getpid(), signal.SIGINT))
except KeyboardInterrupt:
    _interrupt.run(following, time.sleep, (0.2,))
print(query.mock_calls[-1], following.mock_calls)
"""

# argv: hosts. A host that runs Python on a thread of its own.
OTHER_MAIN_THREAD = """
import _thread, sys
sys.modules.pop("threading", None)  # which some installations import before

def search():
    from oxaqrycln import Archive
    print(Archive(hosts=sys.argv[1], user="webuser", password="secret").search("copper").total)
    ended.release()

ended = _thread.allocate_lock()
ended.acquire()
_thread.start_new_thread(search, ())
ended.acquire(True, 20)
"""

# argv: hosts. A thread forks while the main thread waits; the child looks for a descriptor that is left for its signals.
FORK_IN_A_REQUEST = """
import os, signal, sys, threading, warnings
warnings.simplefilter("ignore", DeprecationWarning)
from oxaqrycln import Archive, Cancelled
archive = Archive(hosts=sys.argv[1], timeout=60)

def fork():
    process = os.fork()
    if process == 0:
        os._exit(signal.set_wakeup_fd(-1) == -1)
    print(os.waitpid(process, 0)[1] >> 8)
    archive.cancel()

threading.Timer(0.3, fork).start()
try:
    archive.channels()
except Cancelled:
    print("cancelled")
"""


class ProcessesTest(ThreadedTest):
    def check(self, run, output):
        self.assertEqual((run.stdout, run.stderr, run.returncode), (output, "", 0))

    def test_forked_children_work_and_leave_the_parents_archive_alone(self):
        self.check(run_program(FORK, self.server.hosts), "done\n")

    def test_the_interpreter_ends_with_open_archives(self):
        self.check(run_program(EXIT, self.server.hosts), "21\n")

    def test_an_interrupt_cancels_a_request_at_once(self):
        silent = self.started(SilentServer)
        self.check(run_program(INTERRUPT, silent.hosts, "", ""), "KeyboardInterrupt\n" * 2)
        # A handler that does not raise leaves the cancelled request, and the next one is not cancelled.
        self.check(run_program(INTERRUPT, silent.hosts, "signal.signal(signal.SIGINT, lambda *_: None)", ""),
                   "Cancelled\n" * 2)
        # A host that reads the signals itself still gets them.
        self.check(run_program(INTERRUPT, silent.hosts,
                               "import socket; a, b = socket.socketpair(); a.setblocking(False); "
                               "signal.set_wakeup_fd(a.fileno())",
                               "assert b.recv(9) == bytes([signal.SIGINT] * 2) and signal.set_wakeup_fd(-1) == a.fileno()"),
                   "KeyboardInterrupt\n" * 2)

    def test_signals_in_hosts_with_threads_and_forks(self):
        silent = self.started(SilentServer)
        for name, program, hosts, output in [
                ("a late interrupt cancels no later request", LATE_INTERRUPT, "", "call._end_interrupt() []\n"),
                ("a thread that Python takes no signals on", OTHER_MAIN_THREAD, self.server.hosts, "21\n"),
                ("a fork during a request", FORK_IN_A_REQUEST, silent.hosts, "1\ncancelled\n")]:
            with self.subTest(name):
                self.check(run_program(program, hosts), output)

    def test_a_terminal_interrupt_ends_the_program(self):
        silent = self.started(SilentServer)
        program = f"from oxaqrycln import Archive; print('ready', flush=True); Archive(hosts='{silent.hosts}').channels()"
        process = subprocess.Popen([sys.executable, "-c", program], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   env={**os.environ, "PYTHONPATH": str(support.PACKAGE)}, text=True)
        process.stdout.readline()
        time.sleep(0.5)
        process.send_signal(signal.SIGINT)
        _, error = process.communicate(timeout=20)
        self.assertIn("KeyboardInterrupt", error)
        self.assertEqual(process.returncode, -signal.SIGINT)


if __name__ == "__main__":
    unittest.main()
