"""Python objects and functions that the library calls, and the errors that they raise."""

import ctypes
import itertools
import threading
from ctypes import byref, c_void_p
from typing import Any, Callable, Dict, List, Optional

from . import _library as c
from ._errors import standard_message
from ._kinds import AutomationError, Empty
from ._library import library
from ._values import check, fetch, store


class MemberNotFound(AutomationError, AttributeError):
    """Error 438, which Python also knows as a missing attribute."""

    def __init__(self, number: int = 438, description: str = "") -> None:
        super().__init__(number, description or standard_message(number))


# ---- Errors ----

class _State(threading.local):
    raised: Any = None  # number and exception of what failed last in the running call


state = _State()

_NUMBERS = ((AttributeError, 438), (KeyError, 438), (OverflowError, 6), (ZeroDivisionError, 11),
            (TypeError, 13), (MemoryError, 7))


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
    state.raised = (number, cause)
    library.vg_error_set(raised, number, text.encode("utf-8", "replace") if text else None)
    return number


def raise_from(status: int, error: c_void_p) -> None:
    """Raises what a call reported, with the error of a Python object that it came from."""
    number, cause = state.raised or (0, None)
    state.raised = None
    description = ""
    if error.value:
        description = library.vg_error_description(error.value).decode("utf-8", "replace")
        library.vg_error_free(error.value)
    if cause is not None and not isinstance(cause, Exception):
        raise cause  # KeyboardInterrupt and the like belong to the program
    if status:
        type_ = MemberNotFound if status == 438 else AutomationError
        raise type_(status, description) from (cause if number == status else None)


# ---- Objects ----

wrapped: Dict[int, Any] = {}
_contexts = itertools.count(1)


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
    raise MemberNotFound


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


def _called(context: int, name: bytes, kind: int, arguments: Any, count: int, result: int,
            raised: int) -> int:
    def action() -> None:
        values = [fetch(arguments[i]) for i in range(count)]
        store(result, _call_python(wrapped[context], name.decode(), kind, values))
    return _reported(raised, action)


def _released(context: int) -> None:
    wrapped.pop(context, None)


_CALLBACKS = c.Callbacks(ctypes.sizeof(c.Callbacks), c.CALL(_called), c.RELEASED(_released))


def wrap(target: Any) -> int:
    """A counted object of the library whose members are those of `target`."""
    context = next(_contexts)
    wrapped[context] = target
    made = library.vg_object_new(byref(_CALLBACKS), context)
    if not made:
        del wrapped[context]
        raise MemoryError
    return made


def context_of(handle: int) -> Optional[int]:
    """Where in `wrapped` the target of an object lies; None for other objects."""
    return library.vg_object_context(handle, byref(_CALLBACKS))


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
    check(library.vg_set_host_events(c.HOST_EVENTS() if hook is None else _HOST_EVENTS, None))
