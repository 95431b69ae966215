"""canned_server.py - gives the answers of a scenario in their order, and compares each request with the expected one.

An answer is one of

    ["line", ...]                      a sound answer with these lines
    {"lines": ["line", ...], "files": {NAME: CONTENT}}   the same, after these files were put into the blob directory
    {"status": TEXT}                   the text in place of "OK"
    {"lines": [...], "announced": N}   announces N bytes, and closes the connection behind the lines
    {"bytes": TEXT}                    these bytes, whatever they are, and the end of the connection
    {"silent": true}                   nothing; the client must go first
"""
import socket
import threading

from scenario import bytes_of, escaped, text_of

LONGEST_WAIT = 10  # seconds


def framed(answer):
    """The bytes to send."""
    if isinstance(answer, list):
        answer = {"lines": answer}
    if "bytes" in answer:
        return bytes_of(answer["bytes"])
    lines = ["Status: " + answer.get("status", "OK"), *answer.get("lines", [])]
    response = bytes_of("".join(line + "\r\n" for line in lines))
    return b"TotalBytes:%d\r\n" % answer.get("announced", len(response)) + response


def first_difference(expected, received):
    at = next((at for at, pair in enumerate(zip(expected, received)) if pair[0] != pair[1]),
              min(len(expected), len(received)))
    return f"  they differ from position {at} on: {escaped(expected[at:at + 20])}, but received {escaped(received[at:at + 20])}"


class CannedServer:
    """Serves from its making until close(). One connection at a time, on either of two ports."""

    def __init__(self, scenario, steps, blobs, record=False):
        self.accounts = (scenario.json["account"], scenario.json["printAccount"])
        self.blobs, self.record = blobs, record
        self.waiting = [step for step in steps if "answer" in step.json]
        self.differences = []
        self.sockets = [socket.create_server(("127.0.0.1", 0)) for _ in self.accounts]
        self.ports = [each.getsockname()[1] for each in self.sockets]
        self.turn = threading.Lock()
        self.ended = threading.Event()
        self.threads = [threading.Thread(target=self.serve, args=(print_server,)) for print_server in (False, True)]
        for thread in self.threads:
            thread.start()

    def close(self):
        self.ended.set()
        for thread in self.threads:
            thread.join()
        for each in self.sockets:
            each.close()
        for step in self.waiting[:1]:
            self.differences.append(f"{step.title()}: its request never came")

    def serve(self, print_server):
        listener = self.sockets[print_server]
        listener.settimeout(0.05)
        while not self.ended.is_set():
            try:
                connection, _ = listener.accept()
            except socket.timeout:
                continue
            with connection, self.turn:
                try:
                    self.answer(connection, print_server)
                except OSError as error:
                    self.differences.append(f"the connection failed: {error}")

    def answer(self, connection, print_server):
        connection.settimeout(LONGEST_WAIT)
        if not self.waiting:
            self.differences.append(f"a request that no step expects: {escaped(connection.recv(65536))}")
            return
        step = self.waiting.pop(0)
        account = bytes_of(self.accounts[print_server]) + b","
        received = self.receive(connection, len(account) + len(bytes_of(step.json["request"])))
        if self.record:
            step.json["request"] = text_of(received.removeprefix(account))
        self.check(step, account, received, print_server)
        answer = step.json["answer"]
        for name, content in answer.get("files", {}).items() if isinstance(answer, dict) else ():
            (self.blobs / name).write_bytes(bytes_of(content))
        if "silent" in answer:
            connection.recv(1)
        else:
            connection.sendall(framed(answer))

    def receive(self, connection, byte_count):
        """So many bytes, those that come with them, or what has come when the client is silent for a second."""
        received = b""
        connection.settimeout(0.1 if self.record else 1)
        try:
            while len(received) < byte_count or self.record:
                piece = connection.recv(65536)
                if not piece:
                    break
                received += piece
        except socket.timeout:
            pass
        connection.settimeout(LONGEST_WAIT)
        return received

    def check(self, step, account, received, print_server):
        expected = account + bytes_of(step.json["request"])
        if bool(step.json.get("print")) != print_server:
            self.differences.append(f"{step.title()}: the request came to the wrong one of the two servers")
        elif expected != received and not self.record:
            self.differences.append(f"{step.title()}: the server received another request\n"
                                    f"  expected {escaped(expected)}\n  received {escaped(received)}\n"
                                    + first_difference(expected, received))
