#!/usr/bin/env python3
"""Milliseconds from starting the viewer on an image to the picture standing on the screen.

usage: first_picture.py VIEWER IMAGE [RUNS]

Needs a display with a plain black root window and no window manager of its own (Xvfb), since it
waits for the middle of the screen to change. Prints each run and the median.
"""

import ctypes
import os
import statistics
import subprocess
import sys
import time

x11 = ctypes.CDLL("libX11.so.6")
x11.XOpenDisplay.restype = ctypes.c_void_p
x11.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
x11.XDefaultRootWindow.restype = ctypes.c_ulong
x11.XGetImage.restype = ctypes.c_void_p
x11.XGetImage.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_int,
                          ctypes.c_uint, ctypes.c_uint, ctypes.c_ulong, ctypes.c_int]
x11.XGetPixel.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_int]
x11.XGetPixel.restype = ctypes.c_ulong
x11.XDestroyImage.argtypes = [ctypes.c_void_p]

CANVAS = 0x232529  # The surround that is painted before any picture would be.
ALL_PLANES = 0xFFFFFFFF
Z_PIXMAP = 2
SIDE = 16


def colours_at(display, root, x, y):
    image = x11.XGetImage(display, root, x, y, SIDE, SIDE, ALL_PLANES, Z_PIXMAP)
    found = {x11.XGetPixel(image, i, i) & 0xFFFFFF for i in range(SIDE)}
    x11.XDestroyImage(image)
    return found


def run_once(display, root, viewer, image):
    if len(colours_at(display, root, 380, 330)) > 1:
        raise SystemExit("the screen is not empty before the start")
    start = time.perf_counter()
    process = subprocess.Popen([viewer, image], stderr=subprocess.DEVNULL)
    try:
        while time.perf_counter() - start < 10:
            # A picture has many colours; an empty frame has one.
            if len(colours_at(display, root, 380, 330) - {CANVAS}) > 3:
                return (time.perf_counter() - start) * 1000
            time.sleep(0.001)
        raise SystemExit("no picture within 10 seconds")
    finally:
        process.kill()
        process.wait()
        time.sleep(0.2)


def main():
    viewer, image = sys.argv[1:3]
    runs = int(sys.argv[3]) if len(sys.argv) > 3 else 15
    display = x11.XOpenDisplay(os.environ["DISPLAY"].encode())
    root = x11.XDefaultRootWindow(display)
    run_once(display, root, viewer, image)  # Warms the caches.
    times = sorted(run_once(display, root, viewer, image) for _ in range(runs))
    print(" ".join(f"{value:.0f}" for value in times))
    print(f"median {statistics.median(times):.0f} ms")


main()
