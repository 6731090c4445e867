"""Python types for the automation kinds that Python has no type of its own for."""

import datetime
import decimal
import math
from typing import Any

_DAY_ZERO = datetime.datetime(1899, 12, 30)
_MILLISECONDS = 86_400_000
_EXACT = decimal.Context(prec=60)  # whatever precision the caller computes with


class AutomationError(Exception):
    """A run-time error of the component: its number and its description."""

    def __init__(self, number: int, description: str = "") -> None:
        super().__init__(number, description)
        self.number = number
        self.description = description

    def __str__(self) -> str:
        return f"run-time error {self.number}: {self.description}"


class _Singleton:
    __slots__ = ("_name",)

    def __init__(self, name: str) -> None:
        self._name = name

    def __repr__(self) -> str:
        return self._name

    def __bool__(self) -> bool:
        return False

    def __copy__(self) -> "_Singleton":
        return self

    def __deepcopy__(self, memo: Any) -> "_Singleton":
        return self

    def __reduce__(self) -> str:
        return self._name


Empty = _Singleton("Empty")
"""A value that was not yet given one."""
Missing = _Singleton("Missing")
"""An optional argument that is left out."""


class Int16(int):
    """An integer of 16 bits."""

    def __new__(cls, value: Any = 0) -> "Int16":
        made = super().__new__(cls, value)
        if not -32768 <= made <= 32767:
            raise AutomationError(6, "Overflow")
        return made


class Single(float):
    """A number with seven significant digits."""


class Currency(decimal.Decimal):
    """An exact amount with four decimals; halves are rounded to even."""

    def __new__(cls, value: Any = 0) -> "Currency":
        exact = decimal.Decimal(value)
        if not exact.is_finite() or abs(exact) > 10 ** 15:
            raise AutomationError(6, "Overflow")
        scaled = exact.scaleb(4, _EXACT).to_integral_value(decimal.ROUND_HALF_EVEN, _EXACT)
        return cls._of_scaled(int(scaled))

    @classmethod
    def _of_scaled(cls, scaled: int) -> "Currency":
        if not -2 ** 63 <= scaled < 2 ** 63:
            raise AutomationError(6, "Overflow")
        digits = decimal.Decimal(scaled).as_tuple()
        return super().__new__(cls, (digits.sign, digits.digits, -4))

    @property
    def scaled(self) -> int:
        """The amount in ten-thousandths."""
        return int(self.scaleb(4, _EXACT))


class Date(float):
    """A date as days since 30 December 1899; the fraction is the time of day.

    In a negative date the time still counts forward: -1.5 is noon of 29 December 1899.
    """

    @property
    def days(self) -> float:
        return float(self)

    @classmethod
    def of(cls, moment: datetime.date) -> "Date":
        """The date of a `datetime.datetime` (local time where it has a zone) or `datetime.date`."""
        if isinstance(moment, datetime.datetime):
            local = moment.astimezone() if moment.tzinfo else moment
            since = local.replace(tzinfo=None) - _DAY_ZERO
        else:
            since = datetime.datetime.combine(moment, datetime.time()) - _DAY_ZERO
        time = (since - datetime.timedelta(since.days)) / datetime.timedelta(1)
        return cls(since.days + time if since.days >= 0 else since.days - time)

    def datetime(self) -> datetime.datetime:
        """The moment, to the millisecond. ValueError outside the years 1 to 9999."""
        days = math.trunc(self)
        try:
            return _DAY_ZERO + datetime.timedelta(
                days, milliseconds=round(abs(self - days) * _MILLISECONDS))
        except OverflowError:
            raise ValueError(f"{float(self)} days lie outside the calendar") from None
