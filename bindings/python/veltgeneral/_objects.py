"""Objects of the component, each of a Python class that is made from the member table of its own."""

import functools
import inspect
from ctypes import byref, c_void_p
from typing import Any, Callable, Dict, List, Optional, Sequence

from . import _library as c
from ._callbacks import MemberNotFound, context_of, raise_from, state, wrap, wrapped
from ._describe import Class, Member, class_at
from ._errors import standard_error
from ._kinds import Missing
from ._library import library
from ._text_array import TextArray
from ._values import FETCHES, PLAIN, STORES, check, fetch, store


# ---- Calls ----

def _new_value() -> int:
    handle = library.vg_value_new()
    if not handle:
        raise MemoryError
    return handle


class _Frame:
    """The values of one call, kept for the next one."""

    __slots__ = ("own", "given", "result", "error", "error_place")

    def __init__(self, count: int) -> None:
        self.own = [_new_value() for _ in range(count)]
        self.given = (c_void_p * count)(*self.own)
        self.result = _new_value()
        self.error = c_void_p()
        self.error_place = byref(self.error)

    def fill(self, arguments: Sequence[Any]) -> None:
        for i, value in enumerate(arguments):
            if isinstance(value, TextArray):
                self.given[i] = value._handle  # changed in place, never copied
            else:
                store(self.own[i], value)

    def changed(self, position: int, given: Any) -> Any:
        """An in/out argument after the call."""
        if not isinstance(given, TextArray):
            return fetch(self.own[position])
        if given._still_array():
            given._changed()
            return given
        # The member stored another kind; the caller's array keeps being one, unallocated.
        made = fetch(given._handle)
        check(library.vg_value_set_array(given._handle, 0, None))
        given._changed()
        return made

    def empty(self, position: int) -> None:
        self.given[position] = own = self.own[position]
        library.vg_value_set_empty(own)


class _Call:
    """How one member is called."""

    __slots__ = ("_member", "_count", "_in_out", "_fetch", "_plain_result", "_idle")

    def __init__(self, member: Member) -> None:
        result = member.result
        self._member = member
        self._count = len(member.parameters)
        self._in_out = [i for i, each in enumerate(member.parameters) if each.in_out]
        self._fetch = (None if result.is_void else fetch if result.is_variant else
                       FETCHES[result.kind])
        self._plain_result = not result.is_variant and result.kind < c.TEXT
        self._idle: List[_Frame] = []

    def run(self, target: "Object", positional: Sequence[Any] = (),
            named: Optional[Dict[str, Any]] = None) -> Any:
        """The result, or a tuple of it and of every in/out argument."""
        arguments = positional
        if named or len(positional) != self._count:
            arguments = self._arranged(positional, named or {})
        try:
            frame = self._idle.pop()
        except IndexError:
            frame = _Frame(self._count)
        try:
            frame.fill(arguments)
            status = library.vg_invoke(target._handle, self._member.handle, frame.given, self._count,
                                       frame.result, frame.error_place)
            if status or state.raised:
                raise_from(status, frame.error)
            outputs = [self._fetch(frame.result)] if self._fetch else []
            for i in self._in_out:
                outputs.append(frame.changed(i, arguments[i]))
        finally:
            for i, value in enumerate(arguments):
                if type(value) not in PLAIN or i in self._in_out:
                    frame.empty(i)
            if not self._plain_result:
                library.vg_value_set_empty(frame.result)
            self._idle.append(frame)
        if len(outputs) > 1:
            return tuple(outputs)
        return outputs[0] if outputs else None

    def _arranged(self, positional: Sequence[Any], named: Dict[str, Any]) -> List[Any]:
        if len(positional) > self._count:
            raise standard_error(450)
        arguments = [*positional, *[Missing] * (self._count - len(positional))]
        places = {each.name.lower(): i for i, each in enumerate(self._member.parameters)}
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


# ---- Objects ----

class Object:
    """An object of the component; its members are attributes, in any case."""

    __slots__ = ("_handle", "__weakref__")
    _class: Optional[Class] = None  # None for an object of somebody else

    def __init__(self, handle: int) -> None:
        """Takes over one count of `handle`; objects are made by CreateObject."""
        object.__setattr__(self, "_handle", handle)

    def __del__(self) -> None:
        handle = getattr(self, "_handle", None)
        if handle and library is not None:
            library.vg_object_release(handle)

    def _published(self, name: str) -> str:
        """A member's name as it was published. Error 438 where there is none."""
        rows = self._class.by_name.get(name.lower()) if self._class else None
        if rows is None:
            raise MemberNotFound
        return next(iter(rows.values())).name

    def __getattr__(self, name: str) -> Any:
        if name.startswith("__"):
            raise AttributeError(name)
        published = self._published(name)
        if published == name:  # found already, and cannot be read
            raise MemberNotFound
        return getattr(self, published)

    def __setattr__(self, name: str, value: Any) -> None:
        member = getattr(type(self), self._published(name))
        if not isinstance(member, property) or member.fset is None:
            raise MemberNotFound
        member.fset(self, value)

    def __repr__(self) -> str:
        return f"<VeltGeneral.{self._class.name}>" if self._class else "<automation object>"


def _method(member: Member) -> Callable[..., Any]:
    run = _Call(member).run

    def method(self: Object, *positional: Any, **named: Any) -> Any:
        return run(self, positional, named)

    parameters = [inspect.Parameter("self", inspect.Parameter.POSITIONAL_ONLY)]
    parameters += (inspect.Parameter(each.name, inspect.Parameter.POSITIONAL_OR_KEYWORD,
                                     default=Missing if each.optional else inspect.Parameter.empty)
                   for each in member.parameters)
    method.__name__ = method.__qualname__ = member.name
    method.__doc__ = str(member)
    method.__signature__ = inspect.Signature(parameters)  # type: ignore[attr-defined]
    return method


def _property(get: Optional[Member], put: Optional[Member]) -> property:
    getter, putter = get and _Call(get).run, put and _Call(put).run
    return property(getter,
                    putter and (lambda self, value: putter(self, (value,))), doc=str(get or put))


@functools.lru_cache(maxsize=None)
def _type_of(handle: int) -> type:
    """The Python class of a class of the component."""
    described = class_at(handle)
    attributes: Dict[str, Any] = {"__module__": __package__, "__doc__": described.summary,
                                  "__slots__": (), "_class": described}
    for rows in described.by_name.values():
        for member in rows.values():
            attributes[member.name] = (_method(member) if member.kind == "method" else
                                       _property(rows.get("get"), rows.get("put")))
    return type(described.name, (Object,), attributes)


def _object(handle: int) -> Object:
    of = library.vg_class_of(handle)
    return (_type_of(of) if of else Object)(handle)


def _fetch_object(handle: int) -> Any:
    out = c_void_p()
    check(library.vg_value_get_object(handle, byref(out)))
    if not out.value:
        return None
    context = context_of(out.value)
    if context is None:
        return _object(out.value)
    library.vg_object_release(out.value)
    return wrapped[context]


def _store_wrapped(handle: int, value: Any) -> int:
    made = wrap(value)
    status = library.vg_value_set_object(handle, made)
    library.vg_object_release(made)
    return status


FETCHES[c.OBJECT] = _fetch_object
STORES[Object] = lambda handle, value: library.vg_value_set_object(handle, value._handle)
STORES[object] = _store_wrapped


def CreateObject(name: str) -> Object:
    """A new object of a class; the prefix "VeltGeneral." may be left out. Error 429 for no class."""
    made, error = c_void_p(), c_void_p()
    raise_from(library.vg_create(name.encode(), byref(made), byref(error)), error)
    return _object(made.value or 0)
