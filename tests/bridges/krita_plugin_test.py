#!/usr/bin/env python3
"""Kro's Krita plug-in against a stand-in for Krita's colours, on a real socket and a Qt event loop: requests
and replies, input that is not a request, and a client that leaves before its answer, with SIGPIPE at its
default action as it is inside Krita."""
import json
import os
import random
import signal
import socket
import sys
import tempfile
import threading

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "resources", "krita", "kro_bridge"))
try:
    from PyQt5.QtCore import QCoreApplication, QTimer
except ImportError:
    print("SKIP: PyQt5 is not installed (scripts/setup-deps installs python3-pyqt5)")
    sys.exit(77)
import kro_bridge_server as server


class StandInColors:
    def __init__(self):
        self.slots = {"primary": "#000000", "secondary": "#ffffff"}

    def get(self, slot):
        return self.slots[slot]

    def set(self, slot, color):
        self.slots[slot] = color.lower()


def check(condition, what):
    if not condition:
        print("FAIL:", what)
        sys.exit(1)


def requests_and_garbage():
    colors = StandInColors()
    check(server.handle(b'{"op": "set", "slot": "secondary", "color": "#FF0080"}', colors) == {"ok": True}, "set")
    check(server.handle(b'{"op": "get", "slot": "secondary"}', colors) == {"ok": True, "color": "#ff0080"}, "get")
    for bad in (b"", b"\xff\xfe", b"[]", b'{"op": "get"}', b'{"op": "drop", "slot": "primary"}',
                b'{"op": "set", "slot": "primary", "color": "#ff008"}', b'{"op": "set", "slot": "primary", "color": "#ff0080\\n"}',
                b'{"op": "set", "slot": "primary", "color": 16711808}', b'{"op": "get", "slot": ["primary"]}'):
        reply = server.handle(bad, colors)
        check(reply["ok"] is False and "color" not in reply, "refused: %r" % bad)
    check(colors.slots["primary"] == "#000000", "a refused request changed nothing")
    # Random bytes and mangled requests: an answer every time, never an exception.
    rng = random.Random(7)
    seeds = [b'{"op": "set", "slot": "primary", "color": "#ff0080"}', b'{"op": "get", "slot": "secondary"}']
    for _ in range(3000):
        data = bytearray(rng.choice(seeds))
        for _ in range(rng.randint(1, 6)):
            data[rng.randrange(len(data))] = rng.randrange(256)
        reply = server.handle(bytes(data), colors)
        check(isinstance(reply, dict) and isinstance(reply.get("ok"), bool), "an answer for %r" % bytes(data))


def over_the_socket():
    # Inside Krita a write to a peer that has gone raises SIGPIPE, which ends the program.
    signal.signal(signal.SIGPIPE, signal.SIG_DFL)
    app = QCoreApplication([])
    folder = tempfile.mkdtemp()
    path = os.path.join(folder, server.SOCKET_NAME)
    bridge = server.BridgeServer(StandInColors(), path)
    check(bridge.start(), "the server listens")
    check(os.stat(path).st_mode & 0o777 == 0o600, "the socket is private")
    results = {}

    def exchange(line, read=True):
        client = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        client.settimeout(5)
        client.connect(path)
        client.sendall(line)
        if not read:
            client.close()
            return None
        data = b""
        while not data.endswith(b"\n"):
            chunk = client.recv(4096)
            if not chunk:
                break
            data += chunk
        client.close()
        return json.loads(data) if data else None

    def client():
        try:
            results["set"] = exchange(b'{"op": "set", "slot": "primary", "color": "#00c0ff"}\n')
            for _ in range(5):  # leave before the answer, within the listen queue
                exchange(b'{"op": "get", "slot": "primary"}\n', read=False)
            results["get"] = exchange(b'{"op": "get", "slot": "primary"}\n')
            results["long"] = exchange(b"x" * (server.MAX_REQUEST + 10))
        except OSError as error:
            results["error"] = str(error)
        QTimer.singleShot(0, app.quit)

    threading.Thread(target=client, daemon=True).start()
    QTimer.singleShot(20000, app.quit)
    app.exec_()
    bridge.stop()
    check("error" not in results, "the client: %s" % results.get("error"))
    check(results.get("set") == {"ok": True}, "set over the socket: %r" % results.get("set"))
    check(results.get("get") == {"ok": True, "color": "#00c0ff"}, "get after clients that left: %r" % results.get("get"))
    check(results.get("long", {}).get("ok") is False, "a request past the limit is refused")
    check(not os.path.exists(path), "the socket is removed when the server stops")


requests_and_garbage()
over_the_socket()
print("krita plug-in test passed")
