"""What the component's classes look like, read from its member tables."""

import enum
import functools
from ctypes import byref, c_char_p, c_int32
from typing import Any, Dict, List, NamedTuple, Optional, Tuple

from . import _library as c
from ._errors import standard_error
from ._library import library

_KIND_NAMES = ("empty", "missing", "null", "int16", "int32", "single", "double", "currency", "decimal",
               "date", "boolean", "text", "bytes", "text array", "object")


class ValueType(NamedTuple):
    """What a parameter or result is. `name` is that of its class, record or enumeration."""

    kind: int
    name: str
    is_variant: bool
    is_void: bool

    def __str__(self) -> str:
        if self.is_void:
            return "nothing"
        return "variant" if self.is_variant else self.name or _KIND_NAMES[self.kind]


class Parameter(NamedTuple):
    name: str
    type: ValueType
    in_out: bool
    optional: bool
    default: Optional[int]

    def __str__(self) -> str:
        text = f"{self.name}: {self.type}" + (" in/out" if self.in_out else "")
        if not self.optional:
            return text
        return f"[{text}]" if self.default is None else f"[{text} = {self.default}]"


class Member(NamedTuple):
    """One published member; `kind` is "method", "get" or "put"."""

    name: str
    kind: str
    parameters: Tuple[Parameter, ...]
    result: ValueType
    handle: int

    def __str__(self) -> str:
        if self.kind == "get":
            return f"{self.name}: {self.result}"
        if self.kind == "put":
            return f"{self.name} = {self.parameters[-1].type}"
        result = "" if self.result.is_void else f" -> {self.result}"
        return f"{self.name}({', '.join(map(str, self.parameters))}){result}"


class Class:
    """One creatable class: its name, summary and members in the published order, its
    enumerations as IntEnum classes."""

    def __init__(self, handle: int) -> None:
        self.name: str = library.vg_class_name(handle).decode()
        self.summary: str = library.vg_class_summary(handle).decode()
        self.members: Tuple[Member, ...] = tuple(
            _member(library.vg_class_member(handle, i))
            for i in range(library.vg_class_member_count(handle)))
        self.enumerations: Tuple[Any, ...] = tuple(
            _enumeration(library.vg_class_enumeration(handle, i))
            for i in range(library.vg_class_enumeration_count(handle)))
        # Members of one name, whatever its case, by kind.
        self.by_name: Dict[str, Dict[str, Member]] = {}
        for member in self.members:
            self.by_name.setdefault(member.name.lower(), {})[member.kind] = member

    def __str__(self) -> str:
        width = max((len(member.kind) for member in self.members), default=0)
        lines = [f"{self.name}: {self.summary}"]
        lines += (f"  {member.kind:{width}} {member}" for member in self.members)
        for each in self.enumerations:
            lines += [f"  {each.__name__}", *(f"    {value.name} = {value.value}" for value in each)]
        return "\n".join(lines)

    __repr__ = __str__


def _type(raw: c.Type) -> ValueType:
    return ValueType(raw.kind, raw.name.decode(), bool(raw.is_variant), bool(raw.is_void))


def _enumeration(handle: int) -> Any:
    values: Dict[str, int] = {}
    name, value = c_char_p(), c_int32()
    for i in range(library.vg_enumeration_count(handle)):
        library.vg_enumeration_value(handle, i, byref(name), byref(value))
        values[(name.value or b"").decode()] = value.value
    title = library.vg_enumeration_name(handle).decode()
    return enum.IntEnum(title, values, module=__package__)


def _member(handle: int) -> Member:
    result, raw = c.Type(), c.Parameter()
    library.vg_member_result(handle, byref(result))
    parameters: List[Parameter] = []
    for i in range(library.vg_member_parameter_count(handle)):
        library.vg_member_parameter(handle, i, byref(raw))
        kind = _type(raw.type)
        default = raw.default_number if raw.optional and not kind.is_variant else None
        parameters.append(Parameter(raw.name.decode(), kind, bool(raw.in_out), bool(raw.optional),
                                    default))
    return Member(library.vg_member_name(handle).decode(),
                  ("method", "get", "put")[library.vg_member_kind(handle)], tuple(parameters),
                  _type(result), handle)


@functools.lru_cache(maxsize=None)
def class_at(handle: int) -> Class:
    return Class(handle)


def classes() -> Tuple[str, ...]:
    """The names of the creatable classes."""
    return tuple(class_at(library.vg_class_at(i)).name for i in range(library.vg_class_count()))


def describe(name: str) -> Class:
    """The members of a class; print it to read them. Error 429 for no such class."""
    handle = library.vg_class_find(name.encode("utf-8", "replace"))
    if not handle:
        raise standard_error(429)
    return class_at(handle)
