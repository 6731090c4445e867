r"""What a late-bound call costs from Python, beside the same call written by hand with ctypes.

    VELTGENERAL_LIBRARY=build/bench/src/libveltgeneral.so \
    PYTHONPATH=build/bench/bindings/python python3 bench/python_bench.py

By hand means: the values exist, their kinds are known, no error is looked at. Both are timed in turn;
the medians of the times and of their ratios count.
"""

import statistics
import timeit
from ctypes import byref, c_int32, c_size_t, c_void_p, string_at

import veltgeneral
from veltgeneral._library import library

CALLS, TURNS = 5_000, 41

funzioni = veltgeneral.CreateObject("Funzioni")
ini = veltgeneral.CreateObject("cInifile")
result = veltgeneral.CreateObject("ErrInfo")
ini.Section = "Main"

value, other, out = (library.vg_value_new() for _ in range(3))
one, two = (c_void_p * 1)(value), (c_void_p * 2)(value, other)
number, start, length = c_int32(), c_void_p(), c_size_t()


def row(target, name, kind="method"):
    described = veltgeneral.describe(target._class.name)
    return target._handle, described.by_name[name.lower()][kind].handle


def text(handle):
    library.vg_value_get_utf16(handle, byref(start), byref(length))
    return string_at(start, length.value * 2).decode("utf-16-le")


def store_text(handle, given):
    raw = given.encode("utf-16-le")
    library.vg_value_set_utf16(handle, raw, len(raw) // 2)


def is_success(called=row(result, "isSuccess")):
    library.vg_invoke(*called, None, 0, out, None)
    library.vg_value_get_boolean(out, byref(number))
    return number.value != 0


def is_date(called=row(funzioni, "isDateYYYYMMDD")):
    store_text(value, "20240229")
    library.vg_invoke(*called, one, 1, out, None)
    library.vg_value_get_boolean(out, byref(number))
    return number.value != 0


def data_for_db(called=row(funzioni, "getDataForDB")):
    library.vg_value_set_int32(value, 1)
    store_text(other, "20240229")
    library.vg_invoke(*called, two, 2, out, None)
    return text(out)


def section(called=row(ini, "Section", "get")):
    library.vg_invoke(*called, None, 0, out, None)
    return text(out)


ROWS = (
    ("no argument, isSuccess", result.isSuccess, is_success),
    ("a text, isDateYYYYMMDD", lambda: funzioni.isDateYYYYMMDD("20240229"), is_date),
    ("two arguments, getDataForDB", lambda: funzioni.getDataForDB(1, "20240229"), data_for_db),
    ("a property, Section", lambda: ini.Section, section),
)

for title, ours, by_hand in ROWS:
    assert ours() == by_hand(), (ours(), by_hand())
    pairs = [(timeit.timeit(ours, number=CALLS), timeit.timeit(by_hand, number=CALLS))
             for _ in range(TURNS)]
    own, theirs = (statistics.median(each) / CALLS * 1e6 for each in zip(*pairs))
    ratio = statistics.median(a / b for a, b in pairs)
    print(f"{title:30} {own:6.2f} us, by hand {theirs:6.2f} us, ratio {ratio:.2f}")
