#!/usr/bin/env python3
"""Writes a PNG of the X display (or of one window, by id) using only Xlib through ctypes and zlib.

usage: screenshot.py OUT.png [WINDOW_ID]
"""
import ctypes
import struct
import sys
import zlib

x11 = ctypes.CDLL("libX11.so.6")
x11.XOpenDisplay.restype = ctypes.c_void_p
x11.XDefaultRootWindow.restype = ctypes.c_ulong
x11.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
x11.XGetImage.restype = ctypes.c_void_p
x11.XGetImage.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_int, ctypes.c_uint, ctypes.c_uint,
                          ctypes.c_ulong, ctypes.c_int]
x11.XGetPixel.restype = ctypes.c_ulong


class XWindowAttributes(ctypes.Structure):
    _fields_ = [("x", ctypes.c_int), ("y", ctypes.c_int), ("width", ctypes.c_int), ("height", ctypes.c_int),
                ("rest", ctypes.c_byte * 256)]


class XImage(ctypes.Structure):
    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("xoffset", ctypes.c_int), ("format", ctypes.c_int),
                ("data", ctypes.POINTER(ctypes.c_uint8)), ("byte_order", ctypes.c_int), ("bitmap_unit", ctypes.c_int),
                ("bitmap_bit_order", ctypes.c_int), ("bitmap_pad", ctypes.c_int), ("depth", ctypes.c_int),
                ("bytes_per_line", ctypes.c_int), ("bits_per_pixel", ctypes.c_int)]


def main():
    display = x11.XOpenDisplay(None)
    if not display:
        sys.exit("no display")
    window = int(sys.argv[2], 0) if len(sys.argv) > 2 else x11.XDefaultRootWindow(display)
    attributes = XWindowAttributes()
    x11.XGetWindowAttributes(ctypes.c_void_p(display), ctypes.c_ulong(window), ctypes.byref(attributes))
    width, height = attributes.width, attributes.height
    pointer = x11.XGetImage(display, window, 0, 0, width, height, 0xFFFFFFFF, 2)  # ZPixmap
    image = ctypes.cast(pointer, ctypes.POINTER(XImage)).contents
    stride = image.bytes_per_line
    raw = ctypes.string_at(image.data, stride * height)
    rows = bytearray()
    for y in range(height):
        rows.append(0)
        line = raw[y * stride:y * stride + width * 4]
        # 32-bit BGRX on a little-endian server.
        rgb = bytearray(width * 3)
        rgb[0::3] = line[2::4]
        rgb[1::3] = line[1::4]
        rgb[2::3] = line[0::4]
        rows += rgb

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF)

    png = b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
    png += chunk(b"IDAT", zlib.compress(bytes(rows), 6)) + chunk(b"IEND", b"")
    with open(sys.argv[1], "wb") as out:
        out.write(png)


main()
