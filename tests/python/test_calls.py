"""Calls by name: arguments, results, properties, a caller's own objects, errors."""

import inspect

import veltgeneral
from support import AutomationTest, filled
from veltgeneral import AutomationError, CreateObject, Empty, Missing, TextArray
from veltgeneral._callbacks import wrapped


class Calls(AutomationTest):
    def test_arguments_by_position_by_name_and_left_out(self):
        result = CreateObject("VELTGENERAL.errINFO")
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
            raised = self.raises(number, action)
            self.assertRegex(str(raised), rf"\b{number}\b.*\w{{4}}")
        self.assertEqual(result.getAttrEqualValue(), filled().getAttrEqualValue())
        self.assertFalse(hasattr(result, "nothing"))

    def test_members_describe_themselves(self):
        fill = filled().errinfo
        self.assertEqual((fill.__name__, *inspect.signature(fill).parameters)[:2], ("ErrInfo", "lNumberInfo"))
        self.assertIn("[vntClassInfo: variant]", fill.__doc__)
        self.assertIn("numberInfo", dir(filled()))
        self.assertIn("ErrInfoNew(structErrInfo: structError in/out) -> int16",
                      str(veltgeneral.describe("velTGeneral.errinfo")))


class CallersObjects(AutomationTest):
    def test_a_dict_or_an_object_with_the_attributes_is_a_record(self):
        class Place:
            VNTLOCATIONINFO = "elsewhere"

            def vntStepInfo(self):
                raise AssertionError("a property is read, not called")
        result, before = filled(), len(wrapped)
        record = {"vntnumberinfo": "12", "vntStepInfo": None}
        self.assertEqual(result.ErrInfoNew(record), (0, record))
        self.raises(13, result.ErrInfoNew, Place())  # a method is no text
        self.assertEqual((result.numberInfo, result.stepInfo, result.locationInfo), (12, "step", "elsewhere"))
        self.assertEqual(len(wrapped), before)  # none is kept

    def test_errors_of_the_object_come_back(self):
        def fill_from(error):
            class Raising:
                @property
                def vntNumberInfo(self):
                    raise error
            filled().ErrInfoNew(Raising())
        for error, number in ((AutomationError(1234, "out of order"), 1234),
                              (ZeroDivisionError("by nothing"), 11), (TypeError("no"), 13),
                              (ValueError("odd"), 440)):
            raised = self.raises(number, fill_from, error)
            self.assertIn(raised.description, ("out of order", "by nothing", "no", "odd"))
            self.assertIs(raised.__cause__, error)
        self.assertRaises(KeyboardInterrupt, fill_from, KeyboardInterrupt())


class HostEvents(AutomationTest):
    def sort(self, hook):
        self.addCleanup(veltgeneral.set_host_events, None)
        veltgeneral.set_host_events(hook)
        texts = [f"{i * 7919 % 1000:04}" for i in range(1000)]
        result, array = CreateObject("Funzioni").quickSortArray(TextArray.of(texts), 1, 1000, 1, 4, True)
        return result, list(array) == sorted(texts)

    def test_a_sort_serves_them_until_told_otherwise(self):
        calls = []
        self.sort(lambda: calls.append(CreateObject("ErrInfo").isSuccess()))
        self.assertTrue(len(calls) > 100 and all(calls))
        for hook in (None, lambda: (calls.clear(), veltgeneral.set_host_events(None))):
            served = len(calls)
            result, is_sorted = self.sort(hook)
            self.assertTrue(result.isSuccess() and is_sorted)
            self.assertEqual(len(calls), served if hook is None else 0)

    def test_an_exception_ends_the_sort(self):
        def raising(error):
            raise error
        for error, number in ((AutomationError(77, "enough"), 77), (KeyError("enough"), 438)):
            result, is_sorted = self.sort(lambda error=error: raising(error))
            self.assertEqual((result.numberInfo, result.typeInfo, result.locationInfo, is_sorted),
                             (number, 1, "quickSortArray", False))
            self.assertIn("enough", result.descriptionInfo)
        # Which belongs to the program.
        self.assertRaises(KeyboardInterrupt, self.sort, lambda: raising(KeyboardInterrupt()))
