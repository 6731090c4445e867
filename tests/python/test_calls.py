"""Calls by name: arguments, results, properties, a caller's own objects, errors."""

import inspect
import os
import tempfile
import unittest

import veltgeneral
from veltgeneral import AutomationError, CreateObject, Empty, Missing, TextArray


def filled(number=5):
    result = CreateObject("ErrInfo")
    result.ErrInfo(number, "description", 1, "place", vntStepInfo="step")
    return result


class Calls(unittest.TestCase):
    def test_arguments_by_position_by_name_and_left_out(self):
        result = CreateObject("ErrInfo")
        self.assertEqual(result.ErrInfo(7, "d", slocationinfo="l", iTypeInfo=3), 0)
        self.assertEqual((result.numberInfo, result.DescriptionInfo, result.stepInfo), (7, "d", ""))
        result.errinfo(1, "d", 1, "l", Missing, "process")
        self.assertEqual((result.classInfo, result.processInfo), ("", "process"))

    def test_in_out_arguments_follow_the_result_in_order(self):
        number = filled().getInfo(0, "", 0, "", vntStepInfo=Empty)
        self.assertEqual(number, (0, 5, "description", 1, "place", Missing, Missing, "step"))
        status, copy = filled().clone(None)
        self.assertTrue(status.isSuccess())
        self.assertEqual(copy.getAttrEqualValue(), filled().getAttrEqualValue())
        self.assertIsNone(filled().clear())

    def test_wrong_calls_raise_their_number(self):
        result = filled()
        for number, action in (
                (429, lambda: CreateObject("Nothing")),
                (438, lambda: result.nothing),
                (438, lambda: setattr(result, "numberInfo", 1)),
                (438, lambda: setattr(result, "nothing", 1)),
                (448, lambda: result.ErrInfo(1, "d", 1, sPlace="l")),
                (450, lambda: result.clear(1)),
                (450, lambda: result.ErrInfo(1, "d", 1, "l", lNumberInfo=2)),
                (13, lambda: result.ErrInfoNew(5)),
                (6, lambda: result.ErrInfo(2 ** 31, "d", 1, "l"))):
            with self.assertRaises(AutomationError) as raised:
                action()
            self.assertEqual(raised.exception.number, number)
            self.assertTrue(raised.exception.description)
            self.assertIn(str(number), str(raised.exception))
        self.assertEqual(result.getAttrEqualValue(), filled().getAttrEqualValue())
        self.assertFalse(hasattr(result, "nothing"))

    def test_a_real_table_goes_through_a_file_and_back(self):
        rows = [(f"name {i}", str(i), "\u20ac" if i % 2 else "") for i in range(1, 2001)]
        table = TextArray.of_rows(rows)
        files = CreateObject("FileUtility")
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "table.csv")
            written, same = files.writeCsvFileFromArray(path, table, 2000, 3)
            self.assertTrue(written.isSuccess(), written.descriptionInfo)
            self.assertIs(same, table)
            read, again, count = files.getArrayFromCsvFile(path, TextArray((1, 1)), 3, 0)
        self.assertTrue(read.isSuccess(), read.descriptionInfo)
        self.assertEqual(count, 2000)
        self.assertEqual(again[1, 2000], "name 2000")
        self.assertEqual(list(again.rows())[:2000], rows)


class CallersObjects(unittest.TestCase):
    def test_a_dict_is_a_record(self):
        record = {"vntnumberinfo": "12", "vntStepInfo": None}
        result = filled()
        self.assertEqual(result.ErrInfoNew(record), (0, record))
        self.assertEqual((result.numberInfo, result.stepInfo), (12, "step"))

    def test_any_object_with_the_attributes_serves(self):
        class Place:
            VNTLOCATIONINFO = "elsewhere"

            def vntStepInfo(self):
                raise AssertionError("a property is read, not called")
        result = filled()
        with self.assertRaises(AutomationError):
            result.ErrInfoNew(Place())  # a method is no text
        self.assertEqual(result.locationInfo, "elsewhere")

    def test_errors_of_the_object_come_back(self):
        def raising(error):
            class Raising:
                @property
                def vntNumberInfo(self):
                    raise error
            return Raising()
        for error, number in ((AutomationError(1234, "out of order"), 1234),
                              (ZeroDivisionError("by nothing"), 11), (ValueError("odd"), 440)):
            with self.assertRaises(AutomationError) as raised:
                filled().ErrInfoNew(raising(error))
            self.assertEqual(raised.exception.number, number)
            self.assertIn(raised.exception.description, ("out of order", "by nothing", "odd"))
            self.assertIs(raised.exception.__cause__, error)
        with self.assertRaises(KeyboardInterrupt):
            filled().ErrInfoNew(raising(KeyboardInterrupt()))

    def test_objects_are_released(self):
        from veltgeneral._callbacks import wrapped
        before = len(wrapped)
        for _ in range(10):
            filled().ErrInfoNew({})
        self.assertEqual(len(wrapped), before)


class Description(unittest.TestCase):
    def test_members_describe_themselves(self):
        fill = filled().errinfo
        self.assertIn("[vntClassInfo: variant]", fill.__doc__)
        self.assertEqual(fill.__name__, "ErrInfo")
        self.assertEqual(list(inspect.signature(fill).parameters)[:2],
                         ["lNumberInfo", "sDescriptionInfo"])
        self.assertIn("numberInfo", dir(filled()))

    def test_classes_list_their_members_in_order(self):
        described = veltgeneral.describe("velTGeneral.errinfo")
        self.assertIn("ErrInfoNew(structErrInfo: structError in/out) -> int16", str(described))
        self.assertIn("FileUtility", veltgeneral.classes())


class HostEvents(unittest.TestCase):
    def setUp(self):
        self.addCleanup(veltgeneral.set_host_events, None)

    def sort(self):
        texts = [f"{i * 7919 % 1000:04}" for i in range(1000)]
        result, array = CreateObject("Funzioni").quickSortArray(TextArray.of(texts), 1, 1000, 1, 4, True)
        return result, list(array) == sorted(texts)

    def test_a_sort_serves_them_until_told_otherwise(self):
        calls = []
        veltgeneral.set_host_events(lambda: calls.append(CreateObject("ErrInfo").isSuccess()))
        result, is_sorted = self.sort()
        self.assertTrue(result.isSuccess() and is_sorted and len(calls) > 100 and all(calls))
        served = len(calls)
        veltgeneral.set_host_events(None)
        self.sort()
        self.assertEqual(len(calls), served)

    def test_a_hook_may_take_itself_away(self):
        calls = []
        veltgeneral.set_host_events(
            lambda: (calls.append(1), veltgeneral.set_host_events(None)))
        self.assertTrue(self.sort()[1])
        self.assertEqual(len(calls), 1)

    def test_an_exception_ends_the_sort(self):
        for error, number in ((AutomationError(77, "enough"), 77), (KeyError("enough"), 438),
                              (ValueError("enough"), 440)):
            def hook():
                raise error
            veltgeneral.set_host_events(hook)
            result, is_sorted = self.sort()
            self.assertEqual((result.numberInfo, result.typeInfo, result.locationInfo, is_sorted),
                             (number, 1, "quickSortArray", False))
            self.assertIn("enough", result.descriptionInfo)

    def test_an_interrupt_belongs_to_the_program(self):
        def hook():
            raise KeyboardInterrupt
        veltgeneral.set_host_events(hook)
        with self.assertRaises(KeyboardInterrupt):
            self.sort()


if __name__ == "__main__":
    unittest.main()
