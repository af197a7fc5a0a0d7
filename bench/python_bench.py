#!/usr/bin/env python3
"""Times functions called from Python beside those of cv2 and scikit-image, and the overhead of a call.

Each time is the least of many repetitions, in microseconds. The libraries alternate, and use one thread.
"""

import time

import numpy

import nuvimgsdk as nuv

try:
    import cv2
    cv2.setNumThreads(1)
except ImportError:
    cv2 = None
try:
    import skimage.filters
except ImportError:
    skimage = None


def least(call, seconds=0.2):
    """The least time of a call in microseconds, or a dash if the library is missing."""
    if call is None:
        return "-"
    call()  # some libraries load modules when they are first used
    best, end = float("inf"), time.perf_counter() + seconds
    while time.perf_counter() < end:
        start = time.perf_counter()
        call()
        best = min(best, time.perf_counter() - start)
    return f"{best * 1e6:.1f}"


def overhead():
    """The time of calls on images of 3x3 pixels, which is hardly any work."""
    gray, colour = numpy.zeros((3, 3), "u1"), numpy.zeros((3, 3, 3), "u1")
    calls = {
        "NuvGryImgSobel": lambda: nuv.NuvGryImgSobel(gray), "NuvRGB2Gry": lambda: nuv.NuvRGB2Gry(colour),
        "NuvThreshold": lambda: nuv.NuvThreshold(gray, 9), "NuvImg1SubstractImg2": lambda:
        nuv.NuvImg1SubstractImg2(gray, gray), "NuvDrawCircle": lambda: nuv.NuvDrawCircle(gray, 1, 1, 1, 1, 9),
        "NuvGryRectAvr": lambda: nuv.NuvGryRectAvr(gray, 0, 2, 0, 2), "NuvBinImgCentroid": lambda:
        nuv.NuvBinImgCentroid(gray)}
    for name, call in calls.items():
        print(f"overhead {name:24}{least(call):>8} us")


def compare(size):
    rng = numpy.random.default_rng(1)
    gray, colour = rng.integers(0, 256, (size, size), "u1"), rng.integers(0, 256, (size, size, 3), "u1")
    rows = {
        "threshold": (lambda: nuv.NuvThresholdToRes(gray, 99),
                      cv2 and (lambda: cv2.threshold(gray, 98, 255, cv2.THRESH_BINARY)), skimage and
                      (lambda: gray > 98)),
        "RGB to gray": (lambda: nuv.NuvRGB2Gry(colour), cv2 and (lambda: cv2.cvtColor(colour, cv2.COLOR_BGR2GRAY)),
                        None),
        "mean 5x5": (lambda: nuv.NuvGryAverageFilterFast(gray, 2, 2), cv2 and (lambda: cv2.blur(gray, (5, 5))), None),
        "median 5x5": (lambda: nuv.NuvGryImgMedianBoundary0(gray, 2, 2), cv2 and (lambda: cv2.medianBlur(gray, 5)),
                       skimage and (lambda: skimage.filters.median(gray, numpy.ones((5, 5), "u1")))),
        "histogram": (lambda: nuv.NuvGetHistogram(gray), cv2 and
                      (lambda: cv2.calcHist([gray], [0], None, [256], [0, 256])),
                      lambda: numpy.bincount(gray.ravel(), minlength=256)),
        "half turn": (lambda: nuv.NuvReverseImg(gray), cv2 and (lambda: cv2.flip(gray, -1)),
                      lambda: gray[::-1, ::-1].copy())}
    for name, calls in rows.items():
        ours, of_cv2, of_others = map(least, calls)
        print(f"{size:5} {name:14} nuvimgsdk {ours:>9}   cv2 {of_cv2:>9}   numpy, skimage {of_others:>9} us")


if __name__ == "__main__":
    overhead()
    for side in (128, 512, 1024):
        compare(side)
