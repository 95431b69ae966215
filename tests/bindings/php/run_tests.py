#!/usr/bin/env python3
"""run_tests.py PHPUNIT TEST ... - runs PHPUnit tests against a development server and a web user database of their own.

The environment names what is tested: OXAQRYCLN_LIBRARY, and OXAQRY_DEVSERVER for the program of the server. Libraries in
OXAQRY_PRELOAD, those of the sanitizers, are loaded before PHP.
"""
import os
import sqlite3
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
USERS = """
INSERT INTO Users (UserID, UserName) VALUES (1, 'Sales');
INSERT INTO Users (UserID, UserName, Passwd, TELOUser, TELOPasswd)
  VALUES (3, 'anna', 'AC98A69293A4', 'webuser', 'AC98A69293A4');
INSERT INTO UserGroups (UserID, GroupID) VALUES (3, 1);
INSERT INTO UserRights (UserID, RightID) VALUES (1, 7);
INSERT INTO UserEditRights (UserID, Archive, New, Edit, Del) VALUES (3, 'Orders, old', 1, 0, 1);
INSERT INTO UserArchives (UserID, Archive) VALUES (1, '$(#Finance)\\Orders');
INSERT INTO UserChannels (UserID, Channel) VALUES (3, 'Finance');
INSERT INTO UserChannels (UserID, Channel) VALUES (1, 'Büro');
INSERT INTO UserDocRights (UserID, DocRightID) VALUES (3, 1);
INSERT INTO UserSearchRights (UserID, SearchRightID) VALUES (3, 1);
"""


def make_database(file):
    database = sqlite3.connect(file)
    for name in ("schema.sql", "sample.sql"):
        database.executescript((ROOT / "userdb" / name).read_text(encoding="utf-8"))
    database.executescript(USERS)
    database.commit()
    database.close()
    return f"Driver={{SQLite3}};Database={file}"


def main():
    with tempfile.TemporaryDirectory(prefix="php-") as directory:
        blobs = Path(directory) / "blobs"
        server = subprocess.Popen([os.environ["OXAQRY_DEVSERVER"], "--blob-dir", blobs], stdout=subprocess.PIPE, text=True)
        try:
            server.stdout.readline()
            port = server.stdout.readline().rstrip().rpartition(":")[2]
            environment = {**os.environ, "OXAQRY_HOSTS": f"127.0.0.1,{port}", "OXAQRY_BLOBS": str(blobs),
                           "OXAQRY_DATABASE": make_database(f"{directory}/users.sqlite"), "OXAQRY_DIRECTORY": directory}
            if preload := os.environ.get("OXAQRY_PRELOAD"):
                # The quarantine for freed memory is small, so that the size of a process tells something.
                environment.update(LD_PRELOAD=preload, ASAN_OPTIONS="detect_leaks=0:verify_asan_link_order=0:"
                                   "quarantine_size_mb=1:thread_local_quarantine_size_kb=64")
            command = [sys.argv[1], "--no-configuration", "--do-not-cache-result",
                       "--bootstrap", ROOT / "bindings/php/autoload.php", *sys.argv[2:]]
            return subprocess.run(command, env=environment, check=False).returncode
        finally:
            server.terminate()
            server.wait(10)


if __name__ == "__main__":
    sys.exit(main())
