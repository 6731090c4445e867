"""Finds the library, loads it, and declares its C interface (veltgeneral_c.h)."""

import ctypes
import os
import pathlib
from ctypes import (CFUNCTYPE, POINTER, Structure, c_char_p, c_double, c_float, c_int, c_int16, c_int32,
                    c_int64, c_size_t, c_uint8, c_uint32, c_void_p)
from typing import Iterator, Optional

SONAME = "libveltgeneral.so.1"
_REGISTERED = r"[hkey_local_machine\software\classes\veltgeneral.errinfo\inprocserver32]"

# Kinds of values, in the order of the interface.
(EMPTY, MISSING, NULL, INT16, INT32, SINGLE, DOUBLE, CURRENCY, DECIMAL, DATE, BOOLEAN, TEXT, BYTES,
 TEXT_ARRAY, OBJECT) = range(15)
METHOD, PROPERTY_GET, PROPERTY_PUT = range(3)


class Decimal96(Structure):
    _fields_ = [("low", c_uint32), ("mid", c_uint32), ("high", c_uint32), ("scale", c_uint8),
                ("negative", c_uint8)]


class Bounds(Structure):
    _fields_ = [("lower", c_int32), ("upper", c_int32)]


class Type(Structure):
    _fields_ = [("kind", c_int), ("name", c_char_p), ("is_variant", c_int32), ("is_void", c_int32)]


class Parameter(Structure):
    _fields_ = [("name", c_char_p), ("type", Type), ("in_out", c_int32), ("optional", c_int32),
                ("default_number", c_int32)]


CALL = CFUNCTYPE(c_int32, c_void_p, c_char_p, c_int, POINTER(c_void_p), c_size_t, c_void_p, c_void_p)
RELEASED = CFUNCTYPE(None, c_void_p)
HOST_EVENTS = CFUNCTYPE(c_int32, c_void_p, c_void_p)


class Callbacks(Structure):
    _fields_ = [("size", c_size_t), ("call", CALL), ("released", RELEASED)]


def registered_path() -> Optional[str]:
    """The library's path as the component registered it, or None."""
    folder = os.environ.get("VELTGENERAL_REGISTRY_DIR", "/etc/veltgeneral")
    try:
        raw = pathlib.Path(folder, "machine.reg").read_bytes()
    except OSError:
        return None
    utf16 = raw.startswith(b"\xff\xfe")
    text = raw.decode("utf-16" if utf16 else "utf-8-sig", "replace")
    inside = False
    for line in text.splitlines():
        line = line.strip()
        if line.startswith("["):
            inside = line.lower() == _REGISTERED
        elif inside and line.startswith('@="') and line.endswith('"'):
            return line[3:-1].replace('\\"', '"').replace("\\\\", "\\")
    return None


def _candidates() -> Iterator[str]:
    registered = registered_path()
    if registered:
        yield registered
    folder = pathlib.Path(__file__).resolve().parent
    yield str(folder / SONAME)
    # The package lies below the "lib" folder of a prefix, the library in it or in the system's own.
    for parent in folder.parents:
        if parent.name == "lib":
            yield str(parent / SONAME)
            yield from map(str, parent.glob("*-linux-gnu*/" + SONAME))
            break
    yield SONAME


def load() -> ctypes.CDLL:
    """The library: VELTGENERAL_LIBRARY, as registered, near this package, or the system's."""
    named = os.environ.get("VELTGENERAL_LIBRARY")
    if named:
        return _declare(ctypes.CDLL(named))
    for path in _candidates():
        if os.path.sep in path and not os.path.exists(path):
            continue
        try:
            return _declare(ctypes.CDLL(path))
        except OSError as error:
            reason = error
    raise ImportError(f"the VeltGeneral library was not found ({reason}); "
                      "set VELTGENERAL_LIBRARY to its path") from None


def _declare(library: ctypes.CDLL) -> ctypes.CDLL:
    out = POINTER
    text, handle, size = c_char_p, c_void_p, c_size_t
    signatures = {
        "vg_error_description": (text, [handle]),
        "vg_error_set": (c_int32, [handle, c_int32, text]),
        "vg_error_new": (handle, [c_int32, text]),
        "vg_error_free": (None, [handle]),
        "vg_value_new": (handle, []),
        "vg_value_free": (None, [handle]),
        "vg_value_kind": (c_int, [handle]),
        "vg_value_copy": (c_int32, [handle, handle]),
        "vg_value_swap": (c_int32, [handle, handle]),
        "vg_value_set_empty": (c_int32, [handle]),
        "vg_value_set_missing": (c_int32, [handle]),
        "vg_value_set_null": (c_int32, [handle]),
        "vg_value_set_int16": (c_int32, [handle, c_int16]),
        "vg_value_set_int32": (c_int32, [handle, c_int32]),
        "vg_value_set_single": (c_int32, [handle, c_float]),
        "vg_value_set_double": (c_int32, [handle, c_double]),
        "vg_value_set_currency": (c_int32, [handle, c_int64]),
        "vg_value_set_decimal": (c_int32, [handle, out(Decimal96)]),
        "vg_value_set_date": (c_int32, [handle, c_double]),
        "vg_value_set_boolean": (c_int32, [handle, c_int32]),
        "vg_value_set_utf16": (c_int32, [handle, text, size]),
        "vg_value_set_bytes": (c_int32, [handle, text, size]),
        "vg_value_set_object": (c_int32, [handle, handle]),
        "vg_value_get_int32": (c_int32, [handle, out(c_int32)]),
        "vg_value_get_double": (c_int32, [handle, out(c_double)]),
        "vg_value_get_currency": (c_int32, [handle, out(c_int64)]),
        "vg_value_get_decimal": (c_int32, [handle, out(Decimal96)]),
        "vg_value_get_date": (c_int32, [handle, out(c_double)]),
        "vg_value_get_boolean": (c_int32, [handle, out(c_int32)]),
        "vg_value_get_utf16": (c_int32, [handle, out(c_void_p), out(size)]),
        "vg_value_get_bytes": (c_int32, [handle, out(c_void_p), out(size)]),
        "vg_value_get_object": (c_int32, [handle, out(c_void_p)]),
        "vg_value_set_array": (c_int32, [handle, c_int32, POINTER(Bounds)]),
        "vg_array_shape": (c_int32, [handle, out(c_int32), POINTER(Bounds), out(size)]),
        "vg_array_set_utf16": (c_int32, [handle, POINTER(c_int32), text, size]),
        "vg_array_read": (c_int32, [handle, size, size, c_void_p, size, c_void_p, out(size)]),
        "vg_array_write": (c_int32, [handle, size, size, text, size, c_void_p]),
        "vg_create": (c_int32, [text, out(c_void_p), out(c_void_p)]),
        "vg_object_release": (None, [handle]),
        # Called for every member: pointers without a type take the least time.
        "vg_invoke": (c_int32, [handle, handle, handle, size, handle, handle]),
        "vg_object_new": (handle, [POINTER(Callbacks), handle]),
        "vg_object_context": (handle, [handle, POINTER(Callbacks)]),
        "vg_set_host_events": (c_int32, [HOST_EVENTS, handle]),
        "vg_class_count": (size, []),
        "vg_class_at": (handle, [size]),
        "vg_class_find": (handle, [text]),
        "vg_class_of": (handle, [handle]),
        "vg_class_name": (text, [handle]),
        "vg_class_summary": (text, [handle]),
        "vg_class_member_count": (size, [handle]),
        "vg_class_member": (handle, [handle, size]),
        "vg_class_enumeration_count": (size, [handle]),
        "vg_class_enumeration": (handle, [handle, size]),
        "vg_enumeration_name": (text, [handle]),
        "vg_enumeration_count": (size, [handle]),
        "vg_enumeration_value": (c_int32, [handle, size, out(text), out(c_int32)]),
        "vg_member_name": (text, [handle]),
        "vg_member_kind": (c_int, [handle]),
        "vg_member_result": (c_int32, [handle, out(Type)]),
        "vg_member_parameter_count": (size, [handle]),
        "vg_member_parameter": (c_int32, [handle, size, out(Parameter)]),
    }
    for name, (result, arguments) in signatures.items():
        function = getattr(library, name)
        function.restype = result
        function.argtypes = arguments
    return library


library = load()
