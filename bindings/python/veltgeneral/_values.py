"""Values on their way through the C interface: what a Python value becomes, and what comes back."""

import codecs
import datetime
import decimal
from ctypes import byref, c_double, c_int32, c_int64, c_size_t, c_void_p, string_at
from typing import Any, Callable, Dict

from . import _library as c
from ._errors import standard_error
from ._kinds import AutomationError, Currency, Date, Empty, Int16, Missing, Single
from ._library import library
from ._text_array import TextArray

# The codec itself: looking it up by name takes longer than a short text.
_decoded, _encoded = codecs.utf_16_le_decode, codecs.utf_16_le_encode


def check(status: int) -> None:
    if status:
        raise standard_error(status)


# ---- From Python ----

def _decimal_parts(number: decimal.Decimal) -> c.Decimal96:
    if not number.is_finite():
        raise AutomationError(6, "Overflow")
    sign, digits, exponent = number.as_tuple()
    coefficient = int("".join(map(str, digits)) or "0")
    if exponent > 0:
        coefficient *= 10 ** exponent
    scale = max(0, -exponent)
    while scale > 28 or (coefficient >> 96 and scale > 0):
        coefficient, rest = divmod(coefficient, 10)
        coefficient += rest > 5 or (rest == 5 and coefficient & 1)
        scale -= 1
    if coefficient >> 96:
        raise AutomationError(6, "Overflow")
    return c.Decimal96(coefficient & 0xFFFFFFFF, coefficient >> 32 & 0xFFFFFFFF, coefficient >> 64,
                       scale, sign)


def _store_singleton(handle: int, value: Any) -> int:
    setter = library.vg_value_set_empty if value is Empty else library.vg_value_set_missing
    return setter(handle)


def _store_int(handle: int, value: int) -> int:
    if not -2 ** 31 <= value < 2 ** 31:
        raise standard_error(6)
    return library.vg_value_set_int32(handle, value)


def _store_text(handle: int, value: str) -> int:
    raw = _encoded(value, "surrogatepass")[0]
    return library.vg_value_set_utf16(handle, raw, len(raw) // 2)


def _store_bytes(handle: int, value: Any) -> int:
    raw = bytes(value)
    return library.vg_value_set_bytes(handle, raw, len(raw))


# By type; a subclass is stored as the nearest of its bases. Objects add theirs.
STORES: Dict[type, Callable[[int, Any], int]] = {
    type(None): lambda handle, value: library.vg_value_set_null(handle),
    type(Empty): _store_singleton,
    bool: library.vg_value_set_boolean,
    Int16: library.vg_value_set_int16,
    int: _store_int,
    Single: library.vg_value_set_single,
    Date: library.vg_value_set_date,
    float: library.vg_value_set_double,
    Currency: lambda handle, value: library.vg_value_set_currency(handle, value.scaled),
    decimal.Decimal: lambda handle, value: library.vg_value_set_decimal(
        handle, byref(_decimal_parts(value))),
    datetime.date: lambda handle, value: library.vg_value_set_date(handle, Date.of(value)),
    str: _store_text,
    bytes: _store_bytes,
    bytearray: _store_bytes,
    memoryview: _store_bytes,
    TextArray: lambda handle, value: library.vg_value_copy(handle, value._handle),
}

# Values that neither take memory beside themselves nor hold an object.
PLAIN = frozenset((type(None), type(Empty), bool, Int16, int, Single, Date, float))


def store(handle: int, value: Any) -> None:
    """Gives a value of the library the kind and content of a Python value."""
    known = STORES.get(type(value)) or next(
        STORES[base] for base in type(value).__mro__ if base in STORES)
    status = known(handle, value)
    if status:
        raise standard_error(status)


# ---- To Python ----

def _getter(getter: Callable[..., int], place: type) -> Callable[[int], Any]:
    def fetch_plain(handle: int) -> Any:
        out = place()
        status = getter(handle, byref(out))
        if status:
            raise standard_error(status)
        return out.value
    return fetch_plain


_int32 = _getter(library.vg_value_get_int32, c_int32)
_double = _getter(library.vg_value_get_double, c_double)
_currency = _getter(library.vg_value_get_currency, c_int64)
_date = _getter(library.vg_value_get_date, c_double)
_boolean = _getter(library.vg_value_get_boolean, c_int32)


def _block(getter: Callable[..., int], handle: int, unit: int) -> bytes:
    start, length = c_void_p(), c_size_t()
    check(getter(handle, byref(start), byref(length)))
    return string_at(start, length.value * unit) if length.value else b""


def _fetch_text(handle: int) -> str:
    return _decoded(_block(library.vg_value_get_utf16, handle, 2), "surrogatepass", True)[0]


def _fetch_decimal(handle: int) -> decimal.Decimal:
    raw = c.Decimal96()
    check(library.vg_value_get_decimal(handle, byref(raw)))
    coefficient = raw.high << 64 | raw.mid << 32 | raw.low
    return decimal.Decimal((raw.negative, tuple(map(int, str(coefficient))), -raw.scale))


def _fetch_date(handle: int) -> Any:
    date = Date(_date(handle))
    try:
        return date.datetime()
    except ValueError:
        return date


def _fetch_array(handle: int) -> TextArray:
    # The cells change owner instead of being copied.
    made = TextArray()
    check(library.vg_value_swap(made._handle, handle))
    made._changed()
    return made


# By kind. Objects add theirs.
FETCHES: Dict[int, Callable[[int], Any]] = {
    c.EMPTY: lambda handle: Empty,
    c.MISSING: lambda handle: Missing,
    c.NULL: lambda handle: None,
    c.INT16: lambda handle: int.__new__(Int16, _int32(handle)),  # which need not be checked again
    c.INT32: _int32,
    c.SINGLE: lambda handle: Single(_double(handle)),
    c.DOUBLE: _double,
    c.CURRENCY: lambda handle: Currency._of_scaled(_currency(handle)),
    c.DECIMAL: _fetch_decimal,
    c.DATE: _fetch_date,
    c.BOOLEAN: lambda handle: bool(_boolean(handle)),
    c.TEXT: _fetch_text,
    c.BYTES: lambda handle: _block(library.vg_value_get_bytes, handle, 1),
    c.TEXT_ARRAY: _fetch_array,
}


def fetch(handle: int) -> Any:
    """The content of a value as a Python value. An array leaves the value it was in."""
    return FETCHES[library.vg_value_kind(handle)](handle)
