"""A scenario: what a user does with a window, step by step.

Used by scripts/edit_scenario and scripts/gui_scenario. A step is an operation that waits for all
that it must bring. The first one that fails ends the scenario, with a picture of the screen.
"""

import os
import sys
import tempfile
import time

from example_screen import PROGRAM
from screen import StepFailed
from screen_reader import GLib


def program():
    """From the command line, else of the release build."""
    path = os.path.abspath(sys.argv[1]) if len(sys.argv) > 1 else PROGRAM
    if not os.access(path, os.X_OK):
        sys.exit(f"{path} is missing; build it: scripts/build release")
    return path


def expect(found, wanted):
    if found != wanted:
        raise StepFailed(f"there is {found!r} instead of {wanted!r}")


def play(scenario):
    """Does the steps of a scenario, which is a screen; what a step returns is said of it."""
    with scenario:
        for step in scenario.steps():
            title = step.__name__.replace("_", " ")
            begin = time.monotonic()
            try:
                said = step()
            except (StepFailed, GLib.Error) as failure:  # the latter of a widget that has just gone
                _give_up(scenario, f"{title}: {failure}")
            seconds = f"{time.monotonic() - begin:.1f} s"
            print(f"{title}: {f'{said}, {seconds}' if said else seconds}", flush=True)


def _give_up(scenario, failure):
    name = os.path.basename(sys.argv[0])
    picture = os.path.join(tempfile.gettempdir(), f"{name}.png")
    try:
        scenario.shoot(picture)
    except StepFailed as no_picture:
        sys.exit(f"{name}: {failure}\nNo picture: {no_picture}")
    sys.exit(f"{name}: {failure}\nThe screen then: {picture}")
