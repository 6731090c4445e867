"""What the tests of the package share: the numbers of errors, a host of the test's own."""

import os
import pathlib
import tempfile
import unittest
from unittest import mock

from veltgeneral import AutomationError, CreateObject


class AutomationTest(unittest.TestCase):
    def raises(self, number, action, *arguments):
        with self.assertRaises(AutomationError) as raised:
            action(*arguments)
        self.assertEqual(raised.exception.number, number)
        return raised.exception


class HostTest(AutomationTest):
    """Drive C and the library's own folder are a temporary folder."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.put_in_force(VELTGENERAL_DRIVE_C=folder.name, VELTGENERAL_HOME=folder.name,
                          VELTGENERAL_REGISTRY_DIR=folder.name, VELTGENERAL_LOCALE="en_US")

    def put_in_force(self, **variables):
        change = mock.patch.dict(os.environ, variables)
        change.start()
        self.addCleanup(change.stop)


def filled(number=5):
    result = CreateObject("ErrInfo")
    result.ErrInfo(number, "description", 1, "place", vntStepInfo="step")
    return result
