"""The socket side of Kro's Krita bridge. One JSON line in, one JSON line out, then the connection closes:

    {"op": "get", "slot": "primary"}                      ->  {"ok": true, "color": "#ff0080"}
    {"op": "set", "slot": "secondary", "color": "#ff0080"} ->  {"ok": true}
    anything else                                          ->  {"ok": false, "error": "..."}

Everything runs on Krita's own event loop, so Krita's objects are only touched from its main thread."""
import json
import os
import re
import socket
import struct

from PyQt5.QtCore import QObject, QSocketNotifier, QTimer

SOCKET_NAME = "kroapp.Kro.krita.socket"
# A request is a few dozen bytes; a peer that sends more is not Kro.
MAX_REQUEST = 4096
HEX_COLOR = re.compile(r"#[0-9A-Fa-f]{6}\Z")
SLOTS = ("primary", "secondary")


def socket_path():
    """The socket in the user's private runtime folder; None when the session has none."""
    runtime = os.environ.get("XDG_RUNTIME_DIR")
    return os.path.join(runtime, SOCKET_NAME) if runtime else None


def peer_uid(connection):
    credentials = connection.getsockopt(socket.SOL_SOCKET, socket.SO_PEERCRED, struct.calcsize("3i"))
    return struct.unpack("3i", credentials)[1]


def handle(line, colors):
    """The reply to one request line (bytes), as a dict. Never raises."""
    try:
        request = json.loads(line.decode("utf-8"))
    except (UnicodeDecodeError, ValueError):
        return {"ok": False, "error": "the request is not JSON"}
    if not isinstance(request, dict):
        return {"ok": False, "error": "the request is not a JSON object"}
    op, slot = request.get("op"), request.get("slot")
    if slot not in SLOTS:
        return {"ok": False, "error": "the slot is neither primary nor secondary"}
    try:
        if op == "get":
            return {"ok": True, "color": colors.get(slot)}
        if op == "set":
            color = request.get("color")
            if not isinstance(color, str) or not HEX_COLOR.match(color):
                return {"ok": False, "error": "the colour is not # and six hex digits"}
            colors.set(slot, color)
            return {"ok": True}
    except LookupError as error:
        return {"ok": False, "error": str(error)}
    except Exception as error:  # Krita's own failure must not take the bridge down
        return {"ok": False, "error": "Krita failed: %s" % error}
    return {"ok": False, "error": "the operation is neither get nor set"}


class KritaColors:
    """The active view's two colours, as "#rrggbb"."""

    def __init__(self, krita):
        self.krita = krita

    def view(self):
        window = self.krita.activeWindow()
        view = window.activeView() if window else None
        if view is None or view.document() is None:
            raise LookupError("no image is open in Krita")
        # A view is made before it is shown and ready; its colours are asked for only once it is.
        if not window.qwindow().isVisible() or not view.visible() or view.canvas() is None:
            raise LookupError("Krita is still opening the image")
        return view

    def get(self, slot):
        view = self.view()
        color = view.foregroundColor() if slot == "primary" else view.backgroundColor()
        return color.colorForCanvas(view.canvas()).name()

    def set(self, slot, hex_color):
        from krita import ManagedColor
        from PyQt5.QtGui import QColor

        view = self.view()
        color = ManagedColor.fromQColor(QColor(hex_color), view.canvas())
        if slot == "primary":
            view.setForeGroundColor(color)
        else:
            view.setBackGroundColor(color)


class Connection(QObject):
    def __init__(self, server, sock):
        super().__init__()
        self.server, self.sock, self.buffer = server, sock, b""
        self.notifier = QSocketNotifier(sock.fileno(), QSocketNotifier.Read)
        self.notifier.activated.connect(self.readable)

    def readable(self):
        try:
            chunk = self.sock.recv(MAX_REQUEST)
        except BlockingIOError:
            return
        except OSError:
            return self.close()
        self.buffer += chunk
        if b"\n" in self.buffer:
            self.reply(handle(self.buffer.split(b"\n", 1)[0], self.server.colors))
        elif not chunk:
            self.close()
        elif len(self.buffer) > MAX_REQUEST:
            self.reply({"ok": False, "error": "the request is too long"})

    def reply(self, answer):
        # Kro may have given up and gone: a write to a closed peer must fail here, not raise SIGPIPE, which
        # Krita does not ignore and which would end Krita.
        data = (json.dumps(answer) + "\n").encode("utf-8")
        try:
            self.sock.setblocking(True)
            self.sock.settimeout(1.0)
            while data:
                data = data[self.sock.send(data, socket.MSG_NOSIGNAL):]
        except OSError:
            pass
        self.close()

    def close(self):
        # This runs inside the notifier's own signal: the notifier and this object go on a later turn of
        # Krita's loop, never while Qt is still delivering to them.
        self.notifier.setEnabled(False)
        self.sock.close()
        QTimer.singleShot(0, lambda: self.server.connections.discard(self))


class BridgeServer(QObject):
    def __init__(self, colors, path=None):
        super().__init__()
        self.colors, self.path = colors, path or socket_path()
        self.listener, self.notifier, self.connections = None, None, set()

    def start(self):
        if not self.path:
            return False
        # A socket left by an earlier Krita is ours to replace: the runtime folder is private to this user.
        if os.path.exists(self.path):
            os.unlink(self.path)
        listener = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        old_mask = os.umask(0o177)
        try:
            listener.bind(self.path)
        finally:
            os.umask(old_mask)
        listener.listen(8)
        listener.setblocking(False)
        self.listener = listener
        self.notifier = QSocketNotifier(listener.fileno(), QSocketNotifier.Read)
        self.notifier.activated.connect(self.accept)
        return True

    def accept(self):
        try:
            sock, _ = self.listener.accept()
        except OSError:
            return
        # Only this user's programs may read or change the colours.
        if peer_uid(sock) != os.getuid():
            sock.close()
            return
        sock.setblocking(False)
        self.connections.add(Connection(self, sock))

    def stop(self):
        if self.notifier:
            self.notifier.setEnabled(False)
        if self.listener:
            self.listener.close()
            if os.path.exists(self.path):
                os.unlink(self.path)
