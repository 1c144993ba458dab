"""A scenario: what a user does with a window, step by step, on a screen of its own.

Used by scripts/edit_scenario and scripts/gui_scenario. A step is an operation of the scenario's
screen; it waits for all that it must bring. The first one that fails ends the scenario, with a
picture of the screen.
"""

import os
import sys
import tempfile
import time

from screen import StepFailed

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))

# Names of the editors' widgets, as a screen reader says them.
FIELD = "text", "Expression"
FIRST_ROWS = "table", "Values of the first rows"
COMPLETIONS = "tree", "Completions"


def program():
    """From the command line, else of the release build."""
    built = os.path.join(ROOT, "build/release/bin/kelvarin")
    path = os.path.abspath(sys.argv[1]) if len(sys.argv) > 1 else built
    if not os.access(path, os.X_OK):
        sys.exit(f"{path} is missing; build it: scripts/build release")
    return path


def expect(found, wanted):
    if found != wanted:
        raise StepFailed(f"there is {found!r} instead of {wanted!r}")


def play(scenario, steps):
    """The steps are operations of the scenario, a context."""
    with scenario:
        for step in steps(scenario):
            begin = time.monotonic()
            try:
                effort = step()
            except StepFailed as failure:
                _give_up(scenario, step, failure)
            print(f"{_title(step)}: {effort or ''}{time.monotonic() - begin:.1f} s", flush=True)


def _title(step):
    return step.__name__.replace("_", " ")


def _give_up(scenario, step, failure):
    name = os.path.basename(sys.argv[0])
    picture = os.path.join(tempfile.gettempdir(), f"{name}.png")
    said = f"{name}: {_title(step)}: {failure}"
    try:
        scenario.shoot(picture)
    except StepFailed as no_picture:
        sys.exit(f"{said}\nNo picture: {no_picture}")
    sys.exit(f"{said}\nThe screen then: {picture}")
