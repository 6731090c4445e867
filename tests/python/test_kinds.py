"""Kinds of values and arrays on their way into the library and back."""

import datetime
import decimal

from support import AutomationTest
from veltgeneral import Currency, Date, Empty, Int16, Missing, Single, TextArray
from veltgeneral import _library as kinds
from veltgeneral._values import fetch, store


def through(value):
    """The kind that the library holds for a value, and what comes back."""
    handle = kinds.library.vg_value_new()
    try:
        store(handle, value)
        return kinds.library.vg_value_kind(handle), fetch(handle)
    finally:
        kinds.library.vg_value_free(handle)


class Kinds(AutomationTest):
    def test_each_kind_comes_back_as_itself(self):
        for kind, value in (
                (kinds.NULL, None), (kinds.EMPTY, Empty), (kinds.MISSING, Missing),
                (kinds.BOOLEAN, True), (kinds.INT16, Int16(-32768)), (kinds.INT32, -2 ** 31),
                (kinds.SINGLE, Single(2.5)), (kinds.DOUBLE, 0.1), (kinds.TEXT, "é\U0001F600\0x"),
                (kinds.TEXT, ""), (kinds.TEXT, "lone \ud800"), (kinds.BYTES, b"\0\xff"),
                (kinds.BYTES, b""), (kinds.CURRENCY, Currency("-922337203685477.5808")),
                (kinds.DECIMAL, decimal.Decimal(2 ** 96 - 1)), (kinds.DECIMAL, decimal.Decimal("-1.10")),
                (kinds.DATE, datetime.datetime(1899, 12, 29, 12)),
                (kinds.DATE, datetime.datetime(9999, 12, 31, 23, 59, 59, 999000))):
            held, back = through(value)
            self.assertEqual((held, back, type(back), str(back)), (kind, value, type(value), str(value)))

    def test_other_types_take_the_nearest_kind(self):
        for given, back in ((bytearray(b"a"), b"a"), (memoryview(b"b"), b"b"),
                            (datetime.date(2024, 2, 29), datetime.datetime(2024, 2, 29)),
                            (Date(-1.5), datetime.datetime(1899, 12, 29, 12)),
                            (Date(1e9), Date(1e9)), (decimal.Decimal("1e3"), decimal.Decimal(1000)),
                            (decimal.Decimal("0." + "0" * 27 + "25"), decimal.Decimal("2e-28")),
                            (Currency("1.00005"), Currency(1)), (Currency("1.00015"), Currency("1.0002"))):
            self.assertEqual(through(given)[1], back)

    def test_what_does_not_fit_is_an_overflow(self):
        for action in (lambda: through(2 ** 31), lambda: Int16(32768), lambda: Currency(10 ** 15),
                       lambda: through(decimal.Decimal(2 ** 96)), lambda: Currency("NaN"),
                       lambda: through(decimal.Decimal("Infinity"))):
            self.raises(6, action)


class Arrays(AutomationTest):
    def test_bounds_and_cells(self):
        table = TextArray((1, 2), (-1, 5))
        table[2, 5] = "last"
        table[1, -1] = "\U0001F600\0"
        self.assertEqual((table[2, 5], table[1, -1], table[1, 0]), ("last", "\U0001F600\0", ""))
        self.assertEqual((table.bounds, len(table)), (((1, 2), (-1, 5)), 14))
        self.assertEqual(next(table.rows()), ("\U0001F600\0", ""))
        none = TextArray()
        self.assertEqual((none.bounds, list(none), list(none.rows()), bool(none)), ((), [], [], False))
        for array, index in ((table, 1), (table, (0, 0)), (table, (1, 6)), (table, (1, 1, 1)), (none, 1)):
            self.raises(9, array.__getitem__, index)
        self.raises(9, TextArray, (1, 0))
        self.assertEqual(list(TextArray.of_rows(["ab", "cd"]).rows()), [("a", "b"), ("c", "d")])
        self.assertRaises(ValueError, TextArray.of_rows, ["ab", "c"])

    def test_lists_of_any_texts(self):
        for texts in (["a", "b"], ["", "x\0y", "\0", "\ud800"], [str(i) for i in range(40000)]):
            array = TextArray.of(texts)
            self.assertEqual(list(array), texts)
            self.assertEqual((array[1], array[len(texts)]), (texts[0], texts[-1]))
            self.assertEqual(through(array)[1], array)
            array[1] = "new"  # after the cells were read
            self.assertEqual((array[1], array.copy()[1]), ("new", "new"))
        self.assertEqual(TextArray.of([]).bounds, ())
        self.assertRaises(TypeError, lambda: TextArray.of(["a", 1]))
