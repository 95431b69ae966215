"""A client for php-fpm on a Unix socket: one request for each connection, measured from the connect to the end of the answer.

Without the time of a web server. The parameters are those that the web server of the portal gives to php-fpm.
"""
import re
import socket
import struct
import time

BEGIN, PARAMETERS, INPUT, OUTPUT, ERRORS = 1, 4, 5, 6, 7
RESPONDER = struct.pack(">HB5x", 1, 0)


def record(kind, content):
    return struct.pack(">BBHHBx", 1, kind, 1, len(content), 0) + content


def pair(name, value):
    name, value = name.encode(), value.encode()
    lengths = b"".join(struct.pack(">B" if length < 128 else ">I", length if length < 128 else length | 1 << 31)
                       for length in (len(name), len(value)))
    return lengths + name + value


def request(script, target, cookie="", form=""):
    """The bytes of a request: with a form of less than 64 KB a POST, otherwise a GET."""
    parameters = {
        "SCRIPT_FILENAME": script,
        "QUERY_STRING": target.partition("?")[2],
        "REQUEST_METHOD": "POST" if form else "GET",
        "REQUEST_URI": target,
        "REMOTE_ADDR": "127.0.0.1",
        "HTTP_HOST": "127.0.0.1",
        "HTTP_ACCEPT_LANGUAGE": "en-GB,en;q=0.9",
        "HTTP_COOKIE": cookie,
        "CONTENT_TYPE": "application/x-www-form-urlencoded" if form else "",
        "CONTENT_LENGTH": str(len(form)) if form else "",
    }
    content = b"".join(pair(name, value) for name, value in parameters.items())
    body = record(INPUT, form.encode()) if form else b""
    return record(BEGIN, RESPONDER) + record(PARAMETERS, content) + record(PARAMETERS, b"") + body + record(INPUT, b"")


def measured(path, data, seconds=60):
    """The seconds that the answer took, and its records."""
    pieces = []
    with socket.socket(socket.AF_UNIX) as connection:
        connection.settimeout(seconds)
        start = time.perf_counter()
        connection.connect(path)
        connection.sendall(data)
        while piece := connection.recv(1 << 18):
            pieces.append(piece)
        return time.perf_counter() - start, b"".join(pieces)


class Answer:
    def __init__(self, records):
        texts = {OUTPUT: b"", ERRORS: b""}
        at = 0
        while at < len(records):
            _, kind, _, length, padding = struct.unpack_from(">BBHHB", records, at)
            if kind in texts:
                texts[kind] += records[at + 8:at + 8 + length]
            at += 8 + length + padding
        head, _, self.body = texts[OUTPUT].decode("utf-8", "replace").partition("\r\n\r\n")
        self.headers = re.findall(r"^([\w-]+): (.*?)\r?$", head, re.M)
        self.errors = texts[ERRORS].decode("utf-8", "replace")
        self.status = int(self.header("Status", "200")[:3])

    def header(self, name, otherwise=""):
        """The last one of the name."""
        return next((value for each, value in reversed(self.headers) if each.lower() == name.lower()), otherwise)
