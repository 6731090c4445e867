"""TextArray: the array of texts, kept in the library and read in blocks."""

import ctypes
from typing import Iterable, Iterator, List, Optional, Sequence, Tuple, Union

from ._errors import standard_error
from ._library import Bounds, TEXT_ARRAY, library

_BLOCK = 16384  # cells fetched at a time

Index = Union[int, Tuple[int, int]]


def _check(status: int) -> None:
    if status:
        raise standard_error(status)


class TextArray:
    """An array of texts with bounds in one or two dimensions.

    TextArray() is unallocated; TextArray((1, 3)) is a list of three; TextArray((1, 2), (1, 5)) is a
    table of 2 fields and 5 rows, addressed as (field, row). An index outside the bounds is error 9.
    A member that changes an array changes this one.
    """

    __slots__ = ("_handle", "_shape", "_blocks")

    def __init__(self, *bounds: Tuple[int, int]) -> None:
        self._handle = library.vg_value_new()
        if not self._handle:
            raise MemoryError
        if len(bounds) > 2:
            raise standard_error(9)
        given = (Bounds * 2)(*(Bounds(*pair) for pair in bounds))
        _check(library.vg_value_set_array(self._handle, len(bounds), given))
        self._changed()

    @classmethod
    def of(cls, texts: Iterable[str]) -> "TextArray":
        """A list whose first text has index 1; unallocated when there is none."""
        cells = list(texts)
        if not cells:
            return cls()
        made = cls((1, len(cells)))
        made._write(cells)
        return made

    @classmethod
    def of_rows(cls, rows: Iterable[Sequence[str]]) -> "TextArray":
        """A table from rows of equal length, both dimensions beginning at 1."""
        whole = list(rows)
        width = len(whole[0]) if whole else 0
        if any(len(row) != width for row in whole):
            raise ValueError("the rows differ in length")
        if not width:
            return cls()
        made = cls((1, width), (1, len(whole)))
        made._write([cell for row in whole for cell in row])
        return made

    @classmethod
    def _adopt(cls, handle: int) -> "TextArray":
        made = cls.__new__(cls)
        made._handle = handle
        made._changed()
        return made

    def __del__(self) -> None:
        handle = getattr(self, "_handle", None)
        if handle and library is not None:
            library.vg_value_free(handle)

    def _changed(self) -> None:
        # The library may have changed shape and cells: forget what was fetched.
        dimensions, cells = ctypes.c_int32(), ctypes.c_size_t()
        bounds = (Bounds * 2)()
        _check(library.vg_array_shape(self._handle, dimensions, bounds, cells))
        self._shape: Tuple[Tuple[int, int], ...] = tuple(
            (each.lower, each.upper) for each in bounds[:dimensions.value])
        self._blocks: List[Optional[List[str]]] = [None] * -(-cells.value // _BLOCK)

    @property
    def bounds(self) -> Tuple[Tuple[int, int], ...]:
        """(lower, upper) of each dimension; () for an unallocated array."""
        return self._shape

    def __len__(self) -> int:
        """The number of cells, over both dimensions."""
        cells = 1 if self._shape else 0
        for lower, upper in self._shape:
            cells *= upper - lower + 1
        return cells

    def __bool__(self) -> bool:
        return bool(self._shape)

    def _position(self, index: Index) -> int:
        indices = index if isinstance(index, tuple) else (index,)
        if len(indices) != len(self._shape):
            raise standard_error(9)
        position, stride = 0, 1
        for each, (lower, upper) in zip(indices, self._shape):
            if not lower <= each <= upper:
                raise standard_error(9)
            position += (each - lower) * stride
            stride *= upper - lower + 1
        return position

    def __getitem__(self, index: Index) -> str:
        block, offset = divmod(self._position(index), _BLOCK)
        return (self._blocks[block] or self._fetch(block))[offset]

    def __setitem__(self, index: Index, text: str) -> None:
        if not isinstance(text, str):
            raise TypeError("a cell holds a str")
        block, offset = divmod(self._position(index), _BLOCK)
        indices = index if isinstance(index, tuple) else (index,)
        raw = text.encode("utf-16-le", "surrogatepass")
        _check(library.vg_array_set_utf16(self._handle, (ctypes.c_int32 * 2)(*indices), raw,
                                          len(raw) // 2))
        fetched = self._blocks[block]
        if fetched is not None:
            fetched[offset] = text

    def __iter__(self) -> Iterator[str]:
        """All cells; in a table row by row."""
        for block in range(len(self._blocks)):
            yield from self._blocks[block] or self._fetch(block)

    def rows(self) -> Iterator[Tuple[str, ...]]:
        """The rows of a table, each a tuple of its fields; a list gives one-field rows."""
        width = len(self) // self._row_count()
        return zip(*[iter(self)] * width) if width else iter(())

    def _row_count(self) -> int:
        lower, upper = self._shape[-1] if self._shape else (1, 1)
        return upper - lower + 1

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, TextArray):
            return NotImplemented
        return self._shape == other._shape and all(a == b for a, b in zip(self, other))

    __hash__ = None  # type: ignore[assignment]

    def __repr__(self) -> str:
        return f"<TextArray {', '.join(f'{a} to {b}' for a, b in self._shape) or 'unallocated'}>"

    def copy(self) -> "TextArray":
        handle = library.vg_value_new()
        _check(library.vg_value_copy(handle, self._handle))
        return TextArray._adopt(handle)

    __copy__ = copy

    def _fetch(self, block: int) -> List[str]:
        first = block * _BLOCK
        count = min(_BLOCK, len(self) - first)
        units = ctypes.c_size_t()
        _check(library.vg_array_read(self._handle, first, count, None, 0, None, units))
        text = (ctypes.c_char * (units.value * 2))()
        lengths = (ctypes.c_size_t * count)()
        _check(library.vg_array_read(self._handle, first, count, text, units.value, lengths, units))
        raw = text.raw
        cells = raw.decode("utf-16-le", "surrogatepass").split("\0")
        cells.pop()
        if len(cells) != count:  # some hold NUL themselves
            cells, at = [], 0
            for length in lengths:
                cells.append(raw[at:at + length * 2].decode("utf-16-le", "surrogatepass"))
                at += length * 2 + 2
        self._blocks[block] = cells
        return cells

    def _write(self, cells: List[str]) -> None:
        whole = "\0".join(cells) + "\0"  # refuses what is no str
        raw = whole.encode("utf-16-le", "surrogatepass")
        lengths = None
        if whole.count("\0") != len(cells):
            lengths = (ctypes.c_size_t * len(cells))(
                *(len(cell.encode("utf-16-le", "surrogatepass")) // 2 for cell in cells))
        _check(library.vg_array_write(self._handle, 0, len(cells), raw, len(raw) // 2, lengths))

    def _still_array(self) -> bool:
        return library.vg_value_kind(self._handle) == TEXT_ARRAY
