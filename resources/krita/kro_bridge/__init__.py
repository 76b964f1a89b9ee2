"""Kro's bridge: lets the Kro colour tool read and set the foreground and background colours of the
active view, through a socket only this user can reach."""
from krita import Extension, Krita

from .kro_bridge_server import BridgeServer, KritaColors


class KroBridge(Extension):
    def __init__(self, parent):
        super().__init__(parent)
        self.server = None

    def setup(self):
        self.server = BridgeServer(KritaColors(Krita.instance()))
        self.server.start()

    def createActions(self, window):
        pass


Krita.instance().addExtension(KroBridge(Krita.instance()))
