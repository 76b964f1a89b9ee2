"""Kro's bridge: lets the Kro colour tool read and set the foreground and background colours of the
active view, through a socket only this user can reach."""
from krita import Extension, Krita

from .kro_bridge_server import BridgeServer, KritaColors


class KroBridge(Extension):
    def __init__(self, parent):
        super().__init__(parent)
        self.server = None

    def setup(self):
        pass

    def createActions(self, window):
        # Listening starts with the first window: before it, Krita's loop is busy loading its resources and
        # could not answer.
        if self.server is None:
            self.server = BridgeServer(KritaColors(Krita.instance()))
            self.server.start()


Krita.instance().addExtension(KroBridge(Krita.instance()))
