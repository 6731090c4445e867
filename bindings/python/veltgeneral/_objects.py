"""Objects and values on their way through the C interface."""

import ctypes
import datetime
import decimal
import inspect
import itertools
import threading
from ctypes import byref, c_double, c_int32, c_int64, c_size_t, c_void_p, string_at
from typing import Any, Callable, Dict, List, Optional

from . import _library as c
from ._describe import Class, Member, class_at
from ._errors import standard_error, standard_message
from ._kinds import AutomationError, Currency, Date, Empty, Int16, Missing, Single
from ._library import library
from ._text_array import TextArray


class MemberNotFound(AutomationError, AttributeError):
    """Error 438, which Python also knows as a missing attribute."""


# ---- Values ----

def _check(status: int) -> None:
    if status:
        raise standard_error(status)


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


def _store_int(handle: int, value: int) -> int:
    if not -2 ** 31 <= value < 2 ** 31:
        raise standard_error(6)
    return library.vg_value_set_int32(handle, value)


def _store_text(handle: int, value: str) -> int:
    raw = value.encode("utf-16-le", "surrogatepass")
    return library.vg_value_set_utf16(handle, raw, len(raw) // 2)


def _store_bytes(handle: int, value: Any) -> int:
    raw = bytes(value)
    return library.vg_value_set_bytes(handle, raw, len(raw))


def _store_decimal(handle: int, value: decimal.Decimal) -> int:
    return library.vg_value_set_decimal(handle, byref(_decimal_parts(value)))


# Subclasses stand before their bases; anything else is an object.
_STORES: Dict[type, Callable[[int, Any], int]] = {
    type(None): lambda handle, value: library.vg_value_set_null(handle),
    bool: lambda handle, value: library.vg_value_set_boolean(handle, value),
    Int16: lambda handle, value: library.vg_value_set_int16(handle, value),
    int: _store_int,
    Single: lambda handle, value: library.vg_value_set_single(handle, value),
    Date: lambda handle, value: library.vg_value_set_date(handle, value),
    float: lambda handle, value: library.vg_value_set_double(handle, value),
    str: _store_text,
    Currency: lambda handle, value: library.vg_value_set_currency(handle, value.scaled),
    decimal.Decimal: _store_decimal,
    datetime.date: lambda handle, value: library.vg_value_set_date(handle, Date.of(value)),
    TextArray: lambda handle, value: library.vg_value_copy(handle, value._handle),
    bytes: _store_bytes,
    bytearray: _store_bytes,
    memoryview: _store_bytes,
}


def store(handle: int, value: Any) -> None:
    """Gives a value of the library the kind and content of a Python value."""
    known = _STORES.get(type(value))
    if known is None:
        if value is Empty:
            known = lambda at, _: library.vg_value_set_empty(at)
        elif value is Missing:
            known = lambda at, _: library.vg_value_set_missing(at)
        else:
            known = next((each for base, each in _STORES.items() if isinstance(value, base)),
                         _store_object)
    _check(known(handle, value))


def _store_object(handle: int, value: Any) -> int:
    if isinstance(value, Object):
        return library.vg_value_set_object(handle, value._handle)
    made = _wrap(value)
    status = library.vg_value_set_object(handle, made)
    library.vg_object_release(made)
    return status


def _getter(getter: str, place: type) -> Callable[[int], Any]:
    function = getattr(library, getter)

    def fetch_plain(handle: int) -> Any:
        out = place()
        _check(function(handle, byref(out)))
        return out.value
    return fetch_plain


_int32 = _getter("vg_value_get_int32", c_int32)
_double = _getter("vg_value_get_double", c_double)
_currency = _getter("vg_value_get_currency", c_int64)
_date = _getter("vg_value_get_date", c_double)
_boolean = _getter("vg_value_get_boolean", c_int32)


def _block(getter: Any, handle: int, unit: int) -> bytes:
    start, length = c_void_p(), c_size_t()
    _check(getter(handle, byref(start), byref(length)))
    return string_at(start, length.value * unit) if length.value else b""


def _fetch_decimal(handle: int) -> decimal.Decimal:
    raw = c.Decimal96()
    _check(library.vg_value_get_decimal(handle, byref(raw)))
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
    _check(library.vg_value_swap(made._handle, handle))
    made._changed()
    return made


def _fetch_object(handle: int) -> Any:
    out = c_void_p()
    _check(library.vg_value_get_object(handle, byref(out)))
    if not out.value:
        return None
    context = library.vg_object_context(out.value, byref(_CALLBACKS))
    if context is None:
        return Object(out.value)
    library.vg_object_release(out.value)
    return _wrapped[context]


_FETCHES: Dict[int, Callable[[int], Any]] = {
    c.EMPTY: lambda handle: Empty,
    c.MISSING: lambda handle: Missing,
    c.NULL: lambda handle: None,
    c.INT16: lambda handle: Int16(_int32(handle)),
    c.INT32: _int32,
    c.SINGLE: lambda handle: Single(_double(handle)),
    c.DOUBLE: _double,
    c.CURRENCY: lambda handle: Currency._of_scaled(_currency(handle)),
    c.DECIMAL: _fetch_decimal,
    c.DATE: _fetch_date,
    c.BOOLEAN: lambda handle: bool(_boolean(handle)),
    c.TEXT: lambda handle: _block(library.vg_value_get_utf16, handle, 2).decode("utf-16-le",
                                                                               "surrogatepass"),
    c.BYTES: lambda handle: _block(library.vg_value_get_bytes, handle, 1),
    c.TEXT_ARRAY: _fetch_array,
    c.OBJECT: _fetch_object,
}


def fetch(handle: int) -> Any:
    """The content of a value as a Python value. An array leaves the value it was in."""
    return _FETCHES[library.vg_value_kind(handle)](handle)


# ---- Python objects that the library calls ----

_wrapped: Dict[int, Any] = {}
_contexts = itertools.count(1)
_state = threading.local()  # .raised: the last error of a Python object in the running call

_NUMBERS = ((AttributeError, 438), (KeyError, 438), (OverflowError, 6), (ZeroDivisionError, 11),
            (TypeError, 13), (MemoryError, 7))


def _find(target: Any, name: str) -> str:
    """The target's own spelling of a name. Error 438 where it has none."""
    if isinstance(target, dict):
        names = target
    elif hasattr(target, name):
        return name
    else:
        names = dir(target)
    lower = name.lower()
    for each in names:
        if isinstance(each, str) and each.lower() == lower:
            return each
    raise MemberNotFound(438, standard_message(438))


def _call_python(target: Any, name: str, kind: int, arguments: List[Any]) -> Any:
    if isinstance(target, dict):
        if kind == c.PROPERTY_PUT:
            try:
                name = _find(target, name)
            except MemberNotFound:
                pass  # a field of its own from now on
            target[name] = arguments[-1]
            return Empty
        return target[_find(target, name)]
    name = _find(target, name)
    if kind == c.PROPERTY_PUT:
        setattr(target, name, arguments[-1])
        return Empty
    member = getattr(target, name)
    if kind == c.METHOD and callable(member):
        result = member(*arguments)
        return Empty if result is None else result
    return member


def _reported(raised: int, action: Callable[[], Any]) -> int:
    """Runs what the library called; its exception becomes the error that the library is given."""
    try:
        action()
        return 0
    except AutomationError as error:
        number, text, cause = error.number or 440, error.description, error
    except BaseException as error:  # nothing may pass through the library as an exception
        number = next((n for type_, n in _NUMBERS if isinstance(error, type_)), 440)
        text, cause = str(error), error
    _state.raised = (number, cause)
    library.vg_error_set(raised, number, text.encode("utf-8", "replace") if text else None)
    return number


def _called(context: int, name: bytes, kind: int, arguments: Any, count: int, result: int,
            raised: int) -> int:
    def action() -> None:
        values = [fetch(arguments[i]) for i in range(count)]
        store(result, _call_python(_wrapped[context], name.decode(), kind, values))
    return _reported(raised, action)


def _released(context: int) -> None:
    _wrapped.pop(context, None)


_CALLBACKS = c.Callbacks(ctypes.sizeof(c.Callbacks), c.CALL(_called), c.RELEASED(_released))


def _wrap(target: Any) -> int:
    context = next(_contexts)
    _wrapped[context] = target
    made = library.vg_object_new(byref(_CALLBACKS), context)
    if not made:
        del _wrapped[context]
        raise MemoryError
    return made


# ---- The host's pending events ----

_hook: Optional[Callable[[], Any]] = None


def _events_called(_: Optional[int], raised: int) -> int:
    hook = _hook
    return 0 if hook is None else _reported(raised, hook)


_HOST_EVENTS = c.HOST_EVENTS(_events_called)


def set_host_events(hook: Optional[Callable[[], Any]]) -> None:
    """Has long operations of the whole process call `hook` while they work; None ends that.

    An exception that it raises ends the operation, whose result then says so.
    """
    global _hook
    _hook = hook
    _check(library.vg_set_host_events(c.HOST_EVENTS() if hook is None else _HOST_EVENTS, None))


# ---- Calls ----

def raise_from(status: int, error: c_void_p) -> None:
    """Raises what a call reported, with the error of a Python object that it came from."""
    number, cause = getattr(_state, "raised", None) or (0, None)
    _state.raised = None
    if cause is not None and not isinstance(cause, Exception):
        if error.value:
            library.vg_error_free(error.value)
        raise cause  # KeyboardInterrupt and the like belong to the program
    if not status:
        return
    description = ""
    if error.value:
        description = library.vg_error_description(error.value).decode("utf-8", "replace")
        library.vg_error_free(error.value)
    type_ = MemberNotFound if status == 438 else AutomationError
    raise type_(status, description) from (cause if number == status else None)


class _Frame:
    """The values of one call; freed when it is over."""

    __slots__ = ("values", "owned", "result")

    def __init__(self, arguments: List[Any]) -> None:
        self.values = (c_void_p * len(arguments))()
        self.owned: List[int] = []
        self.result = self._new()
        try:
            for i, value in enumerate(arguments):
                if isinstance(value, TextArray):
                    self.values[i] = value._handle  # changed in place, never copied
                elif value is not Missing:
                    self.values[i] = handle = self._new()
                    store(handle, value)
        except BaseException:
            self.free()
            raise

    def _new(self) -> int:
        handle = library.vg_value_new()
        if not handle:
            raise MemoryError
        self.owned.append(handle)
        return handle

    def changed(self, position: int, given: Any) -> Any:
        """An in/out argument after the call."""
        handle = self.values[position]
        if handle is None:
            return Missing
        if not isinstance(given, TextArray):
            return fetch(handle)
        if given._still_array():
            given._changed()
            return given
        # The member stored another kind; the caller's array keeps being one, unallocated.
        made = fetch(handle)
        _check(library.vg_value_set_array(handle, 0, None))
        given._changed()
        return made

    def free(self) -> None:
        for handle in self.owned:
            library.vg_value_free(handle)


def _arrange(member: Member, positional: tuple, named: Dict[str, Any]) -> List[Any]:
    parameters = member.parameters
    if len(positional) > len(parameters):
        raise standard_error(450)
    arguments = list(positional) + [Missing] * (len(parameters) - len(positional))
    if named:
        places = {parameter.name.lower(): i for i, parameter in enumerate(parameters)}
        given = set(range(len(positional)))
        for name, value in named.items():
            at = places.get(name.lower())
            if at is None:
                raise standard_error(448)
            if at in given:
                raise standard_error(450)
            given.add(at)
            arguments[at] = value
    return arguments


def call_member(target: "Object", member: Member, positional: tuple = (),
                named: Optional[Dict[str, Any]] = None) -> Any:
    """Calls a member: its result, or a tuple of it and of every in/out argument."""
    arguments = _arrange(member, positional, named or {})
    frame = _Frame(arguments)
    try:
        error = c_void_p()
        _state.raised = None
        raise_from(library.vg_invoke(target._handle, member.handle, frame.values, len(arguments),
                                     frame.result, byref(error)), error)
        outputs = [frame.changed(i, arguments[i])
                   for i, parameter in enumerate(member.parameters) if parameter.in_out]
        if not member.result.is_void:
            outputs.insert(0, fetch(frame.result))
    finally:
        frame.free()
    if len(outputs) > 1:
        return tuple(outputs)
    return outputs[0] if outputs else None


class Method:
    """A method of one object, ready to be called."""

    __slots__ = ("_target", "_member")

    def __init__(self, target: "Object", member: Member) -> None:
        self._target = target
        self._member = member

    def __call__(self, *positional: Any, **named: Any) -> Any:
        return call_member(self._target, self._member, positional, named)

    @property
    def __name__(self) -> str:
        return self._member.name

    @property
    def __doc__(self) -> str:  # type: ignore[override]
        return str(self._member)

    @property
    def __signature__(self) -> inspect.Signature:
        return inspect.Signature([
            inspect.Parameter(each.name, inspect.Parameter.POSITIONAL_OR_KEYWORD,
                              default=Missing if each.optional else inspect.Parameter.empty)
            for each in self._member.parameters])

    def __repr__(self) -> str:
        return f"<method {self._member}>"


class Object:
    """An object of the component; its members are attributes, in any case."""

    __slots__ = ("_handle", "_class", "__weakref__")

    def __init__(self, handle: int) -> None:
        """Takes over one count of `handle`; objects are made by CreateObject."""
        object.__setattr__(self, "_handle", handle)
        of = library.vg_class_of(handle)
        object.__setattr__(self, "_class", class_at(of) if of else None)

    def __del__(self) -> None:
        handle = getattr(self, "_handle", None)
        if handle and library is not None:
            library.vg_object_release(handle)

    def _rows(self, name: str) -> Dict[str, Member]:
        rows = self._class.by_name.get(name.lower()) if self._class else None
        if rows is None:
            raise MemberNotFound(438, standard_message(438))
        return rows

    def __getattr__(self, name: str) -> Any:
        if name.startswith("__"):
            raise AttributeError(name)
        rows = self._rows(name)
        if "get" in rows:
            return call_member(self, rows["get"])
        if "method" in rows:
            return Method(self, rows["method"])
        raise MemberNotFound(438, standard_message(438))

    def __setattr__(self, name: str, value: Any) -> None:
        rows = self._rows(name)
        if "put" not in rows:
            raise MemberNotFound(438, standard_message(438))
        call_member(self, rows["put"], (value,))

    def __dir__(self) -> List[str]:
        own: Optional[Class] = self._class
        return [*object.__dir__(self), *(each.name for each in own.members)] if own else []

    def __repr__(self) -> str:
        return f"<VeltGeneral.{self._class.name}>" if self._class else "<automation object>"


def CreateObject(name: str) -> Object:
    """A new object of a class; the prefix "VeltGeneral." may be left out. Error 429 for no class."""
    made, error = c_void_p(), c_void_p()
    raise_from(library.vg_create(name.encode(), byref(made), byref(error)), error)
    return Object(made.value or 0)
