"""VeltGeneral for Python: the component's classes by name.

    import veltgeneral
    files = veltgeneral.CreateObject("VeltGeneral.FileUtility")
    result, text = files.readFile("orders.csv", "")

Names match without regard to case. Arguments go by position or by published name; optional ones may
be left out. A member with in/out arguments returns a tuple: its result first, if it has one, then
every in/out argument in order; a lone value comes bare. A TextArray is changed in place as well.
Properties read and assign as attributes. A dict serves as a record, any object with the right
attributes as a window. Run-time errors are AutomationError. The published enumerations are IntEnum
classes, their values attributes of this package: veltgeneral.eiABORTED.

The library is the file VELTGENERAL_LIBRARY names, else the registered one, else one near this
package, else the system's.
"""

from ._callbacks import set_host_events
from ._describe import classes, describe
from ._kinds import AutomationError, Currency, Date, Empty, Int16, Missing, Single
from ._objects import CreateObject, Object
from ._text_array import TextArray

__all__ = ["AutomationError", "CreateObject", "Currency", "Date", "Empty", "Int16", "Missing",
           "Object", "Single", "TextArray", "classes", "describe", "set_host_events"]

for _each in describe("VeltGlobal").enumerations:
    _published = {_each.__name__: _each, **_each.__members__}
    globals().update(_published)
    __all__ += _published
del _each, _published
