"""Run-time errors by number."""

from ._kinds import AutomationError
from ._library import library


def standard_message(number: int) -> str:
    """The standard message of a run-time error."""
    error = library.vg_error_new(number, None)
    text = library.vg_error_description(error).decode()
    library.vg_error_free(error)
    return text


def standard_error(number: int) -> AutomationError:
    return AutomationError(number, standard_message(number))
