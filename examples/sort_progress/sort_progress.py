"""Sorts a hundred thousand texts and draws the progress meanwhile, from the host's pending events.

    sort_progress.py [COUNT]

The sort serves events once a pass, and a pass ends with an exchange: of n texts in no order there
are about n ln(n) / 3.
"""
import math
import random
import sys
import time

import veltgeneral

count = int((sys.argv[1:] or ["100000"])[0])
words = [f"{random.random():.12f}" for _ in range(count)]
expected = count * math.log(max(count, 3)) / 3
passes, drawn = 0, 0.0


def draw_progress() -> None:
    global passes, drawn
    passes += 1
    if time.monotonic() - drawn > 0.02:
        drawn = time.monotonic()
        filled = min(40, int(40 * passes / expected))
        print(f"\r[{'#' * filled:40}] {passes} passes", end="", flush=True)


veltgeneral.set_host_events(draw_progress)
functions = veltgeneral.CreateObject("Funzioni")
err, array = functions.quickSortArray(veltgeneral.TextArray.of(words), 1, count, 1, 14, True)
veltgeneral.set_host_events(None)
same = err.isSuccess() and list(array) == sorted(words)
print(f"\r[{'#' * 40}] {passes} passes: {'sorted' if same else 'not sorted'}")
sys.exit(0 if same else 1)
