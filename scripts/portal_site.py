#!/usr/bin/env python3
"""Runs the archive portal with a development archive server and invented users, all on the loopback address.

usage: scripts/portal_site.py --tools DIRECTORY --library FILE [--port N] [--nginx [--workers N]] [--people] [--postgresql]
                              [--devserver OPTION ...] [--setting NAME=VALUE ...]

Prints one JSON object: the address, the users and their passwords, the ports and directories. Serves until its standard input
ends or it is terminated, then stops what it has started and removes its files. --nginx serves with nginx and php-fpm as a site
would (PHP's default "ffi.enable = preload"); otherwise PHP's own server does. --postgresql keeps the users in a PostgreSQL
server of the site's own, otherwise they are in an SQLite file. --devserver passes an option on to the archive server, and
--setting changes one of the portal. A process whose file size is limited (prlimit --fsize) gets an error when it writes more, as
with a full disk."""
import argparse
import contextlib
import json
import os
import pwd
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PORTAL = ROOT / "portal"
PRELOAD = {"ffi.enable": "preload", "opcache.enable": "1", "opcache.preload": PORTAL / "preload.php",
           "opcache.preload_user": pwd.getpwuid(os.geteuid()).pw_name, "opcache.jit": "tracing",
           "opcache.jit_buffer_size": "16M"}
CHANNELS = ("Mail", "Finance", "Technik", "Büro")
# Names, and their options of "oxaqry user grant".
USERS = {
    "administrator": ["--group", "Staff", "--right", "1"],
    "clerk": ["--group", "Staff", "--edit", "Mail/Inbox=NED", "--edit", "Finance/Invoices=NED"],
    "reader": ["--channel", "Mail"],
}


def free_port():
    with socket.create_server(("127.0.0.1", 0)) as server:
        return server.getsockname()[1]


def wait_for(address, process, log, seconds=20):
    """Of a port on the loopback address, or of a socket's path."""
    is_port = isinstance(address, int)
    for _ in range(int(seconds / 0.05)):
        if process.poll() is not None:
            break
        try:
            with socket.socket(socket.AF_INET if is_port else socket.AF_UNIX) as client:
                client.settimeout(1)
                client.connect(("127.0.0.1", address) if is_port else str(address))
            return
        except OSError:
            time.sleep(0.05)
    raise SystemExit(f"{process.args[0]} does not listen on {address}:\n{log.read_text(errors='replace')}")


class Site:
    def __init__(self, options, directory):
        self.options, self.directory = options, directory
        self.processes = []
        for name in ("state", "blobs", "logs", "uploads"):
            (directory / name).mkdir(mode=0o700)
        self.database = f"Driver=SQLite3;Database={directory}/users.sqlite"
        self.odbc = {}
        self.administration = {"administration": f"sqlite:{directory}/users.sqlite"}

    def start(self, name, command, **environment):
        log = self.directory / f"{name}.log"
        with open(log, "ab") as output:
            # Python ignores SIGXFSZ, and its child processes inherit that: writing beyond a limit fails and does not end them.
            process = subprocess.Popen(list(map(str, command)), stdin=subprocess.DEVNULL, stdout=output, stderr=output,
                                       env={**os.environ, **environment}, restore_signals=False, start_new_session=True)
        self.processes.append(process)
        return process, log

    def stop(self):
        for process in reversed(self.processes):
            process.terminate()
            try:
                process.wait(10)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait(10)
            # The workers of PHP's own server do not end with it.
            with contextlib.suppress(ProcessLookupError):
                os.killpg(process.pid, signal.SIGTERM)

    def start_postgresql(self):
        command, directory = ROOT / "scripts/private-postgres", self.directory / "postgresql"
        done = subprocess.run([command, "start", directory], capture_output=True, text=True, timeout=120, check=False)
        if done.returncode != 0:
            raise SystemExit(f"PostgreSQL does not start: {done.stdout}{done.stderr}")
        self.database = (directory / "connection").read_text(encoding="utf-8")
        given = dict(part.split("=", 1) for part in self.database.split(";"))
        self.administration = {"administration": f"pgsql:host=127.0.0.1;port={given['Port']};dbname={given['Database']}",
                               "administration_user": given["UID"], "administration_password": given["PWD"]}
        self.odbc = {"ODBCSYSINI": str(directory)}

    def stop_postgresql(self):
        subprocess.run([ROOT / "scripts/private-postgres", "stop", self.directory / "postgresql"], timeout=60, check=False)

    def user_command(self, *arguments, text=""):
        done = subprocess.run([f"{self.options.tools}/oxaqry/oxaqry", "user", *arguments], input=text,
                              env={**os.environ, **self.odbc, "OXAQRY_DATABASE": self.database},
                              capture_output=True, text=True, timeout=60, check=False)
        if done.returncode != 0:
            raise SystemExit(f"oxaqry user {arguments[0]}: {done.stderr}")

    def make_users(self):
        self.user_command("init", "--sample")
        self.user_command("add", "Staff", "--group")
        self.user_command("grant", "Staff", *(part for channel in CHANNELS for part in ("--channel", channel)))
        for name, rights in USERS.items():
            self.user_command("add", name, "--password-stdin", text=f"{name}-pass1\n")
            self.user_command("grant", name, *rights)

    def start_devserver(self):
        port = free_port()
        process, log = self.start("devserver", [f"{self.options.tools}/devserver/devserver", "--port", port, "--blob-dir",
                                                self.directory / "blobs", *self.options.devserver])
        wait_for(port, process, log)
        return port

    def write_settings(self, archive_port):
        file = self.directory / "portal.ini"
        settings = {"title": "Harbour office archive", "hosts": f"127.0.0.1,{archive_port}", "user": "webuser",
                    "password": "secret", "timeout": 10, "database": self.database, "blob_local": self.directory / "blobs",
                    "log_dir": self.directory / "logs", "state_dir": self.directory / "state",
                    "layouts": "1=Standard, 2=By customer, 3=Titles alone", **self.administration,
                    **dict(setting.split("=", 1) for setting in self.options.setting)}
        file.write_text("".join(f'{name} = "{value}"\n' for name, value in settings.items()), encoding="utf-8")
        file.chmod(0o600)
        return file

    def environment(self, settings):
        return {"PORTAL_SETTINGS": str(settings), "OXAQRYCLN_LIBRARY": str(self.options.library), **self.odbc}

    def serve_with_php(self, port, settings):
        options = [part for name, value in PRELOAD.items() for part in ("-d", f"{name}={value}")]
        process, log = self.start("php", ["php", *options, "-d", "opcache.enable_cli=1", "-S", f"127.0.0.1:{port}", "-t",
                                          PORTAL / "public", PORTAL / "development-router.php"],
                                  PHP_CLI_SERVER_WORKERS="4", **self.environment(settings))
        wait_for(port, process, log)

    def serve_with_nginx(self, port, settings):
        directory, fpm = self.directory, shutil.which("php-fpm") or sorted(Path("/usr/sbin").glob("php-fpm*"))[-1]
        lines = ["[global]", f"error_log={directory}/fpm-errors.log", "daemonize=no", "[portal]", f"listen={directory}/fpm.sock",
                 "pm=static", f"pm.max_children={self.options.workers}", "catch_workers_output=yes",
                 *(f"env[{name}]={value}" for name, value in self.environment(settings).items())]
        if os.geteuid() == 0:
            lines += ["user=root", "group=root"]
        (directory / "fpm.conf").write_text("\n".join(lines) + "\n", encoding="utf-8")
        options = [part for name, value in {**PRELOAD, "upload_tmp_dir": directory / "uploads"}.items()
                   for part in ("-d", f"{name}={value}")]
        process, log = self.start("fpm", [fpm, "-R", "-F", "-y", directory / "fpm.conf", *options])
        wait_for(directory / "fpm.sock", process, log)
        (directory / "nginx.conf").write_text(NGINX.format(directory=directory, port=port, public=PORTAL / "public",
                                                           user="user root;" if os.geteuid() == 0 else ""), encoding="utf-8")
        process, log = self.start("nginx", [shutil.which("nginx") or "/usr/sbin/nginx", "-c", directory / "nginx.conf", "-e",
                                            directory / "nginx-errors.log"])
        wait_for(port, process, log)


NGINX = """daemon off;
pid {directory}/nginx.pid;
{user}
worker_processes 1;
events {{ worker_connections 256; }}
http {{
  access_log off;
  error_log {directory}/nginx-errors.log;
  client_body_temp_path {directory}/nginx-body;
  fastcgi_temp_path {directory}/nginx-fastcgi;
  proxy_temp_path {directory}/nginx-proxy;
  uwsgi_temp_path {directory}/nginx-uwsgi;
  scgi_temp_path {directory}/nginx-scgi;
  types {{ text/css css; text/javascript js; image/svg+xml svg; }}
  server {{
    listen 127.0.0.1:{port};
    root {public};
    client_max_body_size 64m;
    fastcgi_read_timeout 300s;
    location ~ ^/[a-z-]+\\.(css|js|svg)$ {{
      add_header X-Content-Type-Options nosniff always;
      add_header Content-Security-Policy "default-src 'none'; frame-ancestors 'none'" always;
    }}
    fastcgi_buffering off;
    fastcgi_param SCRIPT_FILENAME {public}/index.php;
    fastcgi_param QUERY_STRING $query_string;
    fastcgi_param REQUEST_METHOD $request_method;
    fastcgi_param CONTENT_TYPE $content_type;
    fastcgi_param CONTENT_LENGTH $content_length;
    fastcgi_param REQUEST_URI $request_uri;
    fastcgi_param REMOTE_ADDR $remote_addr;
    fastcgi_param HTTP_HOST $http_host;
    fastcgi_param HTTPS $https if_not_empty;
    location / {{
      fastcgi_pass unix:{directory}/fpm.sock;
    }}
    error_page 413 = @too_large;
    location @too_large {{
      client_max_body_size 0;
      fastcgi_pass unix:{directory}/fpm.sock;
      fastcgi_pass_request_body off;
    }}
  }}
}}
"""


def show(port):
    print(f"\nThe portal is at http://127.0.0.1:{port}/\n\n  {'user':15}password")
    for name in USERS:
        print(f"  {name:15}{name}-pass1")
    print("\nCtrl-C stops everything.", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tools", required=True)
    parser.add_argument("--library", required=True)
    parser.add_argument("--port", type=int, default=0)
    parser.add_argument("--people", action="store_true", help="print for people, and serve until Ctrl-C")
    parser.add_argument("--nginx", action="store_true")
    parser.add_argument("--workers", type=int, default=4, help="of php-fpm")
    parser.add_argument("--postgresql", action="store_true")
    parser.add_argument("--devserver", action="append", default=[])
    parser.add_argument("--setting", action="append", default=[])
    options = parser.parse_args()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(0))
    with tempfile.TemporaryDirectory(prefix="portal-") as directory:
        site = Site(options, Path(directory))
        try:
            if options.postgresql:
                site.start_postgresql()
            site.make_users()
            archive_port = site.start_devserver()
            settings = site.write_settings(archive_port)
            port = options.port or free_port()
            (site.serve_with_nginx if options.nginx else site.serve_with_php)(port, settings)
            if options.people:
                show(port)
                signal.pause()
            print(json.dumps({"address": f"http://127.0.0.1:{port}", "archive_port": archive_port, "directory": directory,
                              "processes": [process.pid for process in site.processes],
                              "users": {name: f"{name}-pass1" for name in USERS}}), flush=True)
            sys.stdin.read()
        except KeyboardInterrupt:
            pass
        finally:
            site.stop()
            if options.postgresql:
                site.stop_postgresql()


if __name__ == "__main__":
    main()
