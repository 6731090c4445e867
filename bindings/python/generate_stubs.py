"""Writes the package's type stubs from the member tables of the library.

    generate_stubs.py OUTPUT

Members are declared under their published names; the package itself matches them in any case.
"""

import pathlib
import sys
from typing import Iterable, Iterator

import veltgeneral
from veltgeneral import _library as kinds
from veltgeneral._describe import Class, Member, Parameter, ValueType

_HEADER = '''\
"""VeltGeneral for Python: the component's classes by name."""

import datetime
import decimal
import enum
from typing import (Any, Callable, Dict, Final, Iterable, Iterator, Literal, Optional, Sequence, Tuple,
                    Union)
from typing import overload

class AutomationError(Exception):
    number: int
    description: str
    def __init__(self, number: int, description: str = ...) -> None: ...

class _Singleton: ...

Empty: Final[_Singleton]
Missing: Final[_Singleton]

class Int16(int): ...
class Single(float): ...

class Currency(decimal.Decimal):
    @property
    def scaled(self) -> int: ...

class Date(float):
    @property
    def days(self) -> float: ...
    @classmethod
    def of(cls, moment: datetime.date) -> Date: ...
    def datetime(self) -> datetime.datetime: ...

class TextArray:
    def __init__(self, *bounds: Tuple[int, int]) -> None: ...
    @classmethod
    def of(cls, texts: Iterable[str]) -> TextArray: ...
    @classmethod
    def of_rows(cls, rows: Iterable[Sequence[str]]) -> TextArray: ...
    @property
    def bounds(self) -> Tuple[Tuple[int, int], ...]: ...
    def __len__(self) -> int: ...
    def __bool__(self) -> bool: ...
    def __getitem__(self, index: Union[int, Tuple[int, int]]) -> str: ...
    def __setitem__(self, index: Union[int, Tuple[int, int]], text: str) -> None: ...
    def __iter__(self) -> Iterator[str]: ...
    def rows(self) -> Iterator[Tuple[str, ...]]: ...
    def copy(self) -> TextArray: ...

class Parameter:
    name: str
    in_out: bool
    optional: bool
    default: Optional[int]

class Member:
    name: str
    kind: str
    parameters: Tuple[Parameter, ...]

class Class:
    name: str
    summary: str
    members: Tuple[Member, ...]
    enumerations: Tuple[Any, ...]

class Object:
    def __getattr__(self, name: str) -> Any: ...
    def __setattr__(self, name: str, value: Any) -> None: ...

def classes() -> Tuple[str, ...]: ...
def describe(name: str) -> Class: ...
def set_host_events(hook: Optional[Callable[[], Any]]) -> None: ...
'''

_NUMBER = "float"
_TYPES = {
    kinds.INT16: "int", kinds.INT32: "int", kinds.SINGLE: _NUMBER, kinds.DOUBLE: _NUMBER,
    kinds.CURRENCY: "decimal.Decimal", kinds.DECIMAL: "decimal.Decimal",
    kinds.DATE: "datetime.datetime", kinds.BOOLEAN: "bool", kinds.TEXT: "str",
    kinds.BYTES: "bytes", kinds.TEXT_ARRAY: "TextArray",
}


def hint(value: ValueType, classes: Iterable[str]) -> str:
    if value.is_variant:
        return "Any"
    if value.kind == kinds.OBJECT:
        return value.name if value.name in classes else "Any"
    return _TYPES[value.kind]


def argument(parameter: Parameter, classes: Iterable[str]) -> str:
    # What is passed is coerced, and an in/out object may start as nothing at all.
    loose = parameter.in_out and parameter.type.kind == kinds.OBJECT
    text = f"{parameter.name}: {'Any' if loose else hint(parameter.type, classes)}"
    return text + " = ..." if parameter.optional else text


def result(member: Member, classes: Iterable[str]) -> str:
    parts = [] if member.result.is_void else [hint(member.result, classes)]
    parts += [hint(each.type, classes) for each in member.parameters if each.in_out]
    if len(parts) > 1:
        return f"Tuple[{', '.join(parts)}]"
    return parts[0] if parts else "None"


def members(described: Class, classes: Iterable[str]) -> Iterator[str]:
    for rows in described.by_name.values():
        for member in rows.values():
            if member.kind == "method":
                arguments = "".join(f", {argument(each, classes)}" for each in member.parameters)
                yield f"    def {member.name}(self{arguments}) -> {result(member, classes)}:"
                yield f'        """{member}"""'
            elif member.kind == "get":
                yield "    @property"
                yield f"    def {member.name}(self) -> {hint(member.result, classes)}: ..."
            else:
                if "get" not in rows:
                    yield "    @property"
                    yield f"    def {member.name}(self) -> Any: ..."
                kind = hint(member.parameters[-1].type, classes)
                yield f"    @{member.name}.setter"
                yield f"    def {member.name}(self, value: {kind}) -> None: ..."


def enumerations() -> Iterator[str]:
    for each in veltgeneral.describe("VeltGlobal").enumerations:
        yield f"class {each.__name__}(enum.IntEnum):"
        yield from (f"    {value.name} = {value.value}" for value in each)
        yield ""
        yield from (f"{value.name}: Final = {each.__name__}.{value.name}" for value in each)
        yield ""


def stubs() -> str:
    classes = veltgeneral.classes()
    lines = [_HEADER, *enumerations()]
    for name in classes:
        described = veltgeneral.describe(name)
        body = list(members(described, classes))
        lines += [f"class {name}(Object):", f'    """{described.summary}"""', *body, ""]
    for name in classes:
        both = f'Literal["{name}", "VeltGeneral.{name}"]'
        lines += ["@overload", f"def CreateObject(name: {both}) -> {name}: ..."]
    lines += ["@overload", "def CreateObject(name: str) -> Object: ...", ""]
    return "\n".join(lines)


if __name__ == "__main__":
    pathlib.Path(sys.argv[1]).write_text(stubs(), encoding="utf-8")
