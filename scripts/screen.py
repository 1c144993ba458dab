"""A screen of its own with a program on it: real windows, keys and mouse.

Used by scripts/screen_reader.py. A screen has Xvfb, the window manager openbox and a folder that serves as
the program's home; nothing of the user's settings is read or changed. What a program shows is
waited for, never slept for: a StepFailed says which window or picture did not come.
"""

import os
import re
import shutil
import subprocess
import tempfile
import time

PATIENCE = 20  # seconds until something that should come counts as absent
PAUSE = 0.1
CALM = 4  # equal looks in a row after which a screen counts as finished
CURSOR_PIXELS = 80  # a text cursor that blinks does not keep a screen from being finished

# The main window fills the screen without a frame; dialogs keep theirs.
WINDOW_RULES = """<?xml version="1.0" encoding="UTF-8"?>
<openbox_config>
  <focus><focusNew>yes</focusNew></focus>
  <placement><policy>Smart</policy><center>yes</center></placement>
  <theme><name>pictures</name><titleLayout>L</titleLayout></theme>
  <applications>
    <application type="normal"><decor>no</decor><maximized>yes</maximized></application>
    <application type="dialog"><position force="yes"><x>center</x><y>center</y></position></application>
  </applications>
</openbox_config>
"""


# Flat frames in the colours of the light and the dark windows.
FRAMES = """border.width: 1
border.color: {border}
window.handle.width: 0
window.client.padding.width: 0
padding.height: 3
window.*.title.bg: flat solid
window.*.title.bg.color: {paper}
window.*.label.bg: parentrelative
window.*.label.text.color: {ink}
window.label.text.justify: center
"""
LIGHT = {"border": "#9aa1ab", "paper": "#dfe2e7", "ink": "#1b1f24"}
DARK = {"border": "#60666f", "paper": "#33373d", "ink": "#e8eaed"}


class StepFailed(Exception):
    """What was waited for, and what there was instead."""


class Screen:
    """A context: at its end everything that was started is ended, and the folder removed."""

    def __init__(self, width, height, dark):
        self.size = f"{width}x{height}"
        self.width, self.height = width, height
        self.dark = dark
        self.processes = []

    def __enter__(self):
        self.folder = tempfile.mkdtemp(prefix="kelvarin-pictures-")
        try:
            self._write_settings()
            self.environment = self._environment(self._start_server())
            self._start("openbox", "--sm-disable", "--config-file", self._path("openbox.xml"))
            self._wait(lambda: self._ask("xdotool", "get_desktop") is not None, "the window manager")
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self.processes):
            process.terminate()
        for process in reversed(self.processes):
            try:
                process.wait(PATIENCE)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    # What a picture is made of.

    def run(self, *command):
        """Runs a command in the folder to its end."""
        done = subprocess.run(command, cwd=self.folder, env=self.environment, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        if done.returncode != 0:
            raise StepFailed(f"{' '.join(command)}: {done.stdout.strip()}")

    def start(self, *command):
        """Starts a program in the folder, which stays until the screen goes."""
        self.program = self._start(*command)

    def window(self, title):
        """Waits until a window is seen whose title matches."""
        pattern = re.compile(title)

        def found():
            for window in (self._ask("xdotool", "search", "--onlyvisible", "--name", ".") or "").split():
                if pattern.search(self._ask("xdotool", "getwindowname", window) or ""):
                    return window
            return None
        return self._wait(found, f"a window with the title '{title}'")

    def popup(self):
        """Waits for a window without a frame and a title of its own, such as a menu."""
        def found():
            for window in (self._ask("xdotool", "search", "--onlyvisible", "--class", ".") or "").split():
                if (self._ask("xdotool", "getwindowname", window) or "").strip() == "kelvarin":
                    return window
            return None
        return self._wait(found, "a menu")

    def geometry(self, window):
        """X, Y, WIDTH and HEIGHT on the screen."""
        lines = self._ask("xdotool", "getwindowgeometry", "--shell", window).split()
        return {name: int(value) for name, value in (line.split("=") for line in lines)}

    def keys(self, *keys):
        self._order("key", "--clearmodifiers", *keys)
        self.calm()

    def type(self, text):
        self._order("type", "--delay", "12", text)
        self.calm()

    def point(self, x, y):
        self._order("mousemove", str(x), str(y))
        self.calm()

    def click(self, x, y, count=1, button=1):
        self._order("mousemove", str(x), str(y), "click", "--repeat", str(count), "--delay", "60",
                    str(button))
        self.calm()

    def calm(self):
        """Waits until the screen does not change any more."""
        looks = [self._look()]

        def finished():
            looks.append(self._look())
            if differing_pixels(looks[-2], looks[-1]) > CURSOR_PIXELS:
                del looks[:-1]
            return len(looks) >= CALM
        self._wait(finished, "the end of all changes on the screen")

    def shoot(self, file):
        """Writes what is seen as a small PNG."""
        self._require_program()
        raw = self._path("raw.png")
        self.run("import", "-silent", "-window", "root", raw)
        self.run("convert", raw, "+dither", "-colors", "128", "-strip",
                 "-define", "png:compression-level=9", f"png8:{file}")

    # The machinery below.

    def _path(self, name):
        return os.path.join(self.folder, name)

    def _write_settings(self):
        os.makedirs(self._path("config/kelvarin"))
        with open(self._path("config/kelvarin/kelvarin.conf"), "w", encoding="utf-8") as settings:
            settings.write(f"[General]\ntheme={'dark' if self.dark else 'light'}\n")
        with open(self._path("openbox.xml"), "w", encoding="utf-8") as rules:
            rules.write(WINDOW_RULES)
        os.makedirs(self._path("data/themes/pictures/openbox-3"))
        with open(self._path("data/themes/pictures/openbox-3/themerc"), "w", encoding="utf-8") as frames:
            frames.write(FRAMES.format(**(DARK if self.dark else LIGHT)))

    def _environment(self, display):
        kept = {name: os.environ[name] for name in ("PATH", "LD_LIBRARY_PATH") if name in os.environ}
        return {**kept, "DISPLAY": display, "LANG": "C.UTF-8", "HOME": self.folder,
                "XDG_CONFIG_HOME": self._path("config"), "XDG_DATA_HOME": self._path("data"),
                "XDG_RUNTIME_DIR": self.folder, "QT_QPA_PLATFORM": "xcb"}

    def _start_server(self):
        """It must not begin anew when its first client goes before the second one comes."""
        reading, writing = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{self.size}x24", "-dpi", "96",
             "-nolisten", "tcp", "-noreset"], pass_fds=[writing], stderr=subprocess.DEVNULL)
        self.processes.append(server)
        os.close(writing)
        with os.fdopen(reading) as number:
            line = number.readline().strip()
        if not line:
            raise StepFailed("Xvfb does not start")
        return f":{line}"

    def _start(self, *command):
        with open(self._path("messages"), "a", encoding="utf-8") as messages:
            process = subprocess.Popen(command, cwd=self.folder, env=self.environment,
                                       stdout=messages, stderr=messages)
        self.processes.append(process)
        return process

    def _require_program(self):
        if self.program.poll() is not None:
            with open(self._path("messages"), encoding="utf-8") as messages:
                raise StepFailed(f"the program has ended: {messages.read().strip()[-600:]}")

    def _ask(self, *command):
        done = subprocess.run(command, env=self.environment, text=True, check=False,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        return done.stdout if done.returncode == 0 else None

    def _order(self, *arguments):
        self._require_program()
        self.run("xdotool", *arguments)

    def _wait(self, condition, what):
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            if hasattr(self, "program"):
                self._require_program()
            result = condition()
            if result:
                return result
            time.sleep(PAUSE)
        raise StepFailed(f"{what} did not come within {PATIENCE} seconds")

    def _look(self):
        return subprocess.run(["import", "-silent", "-window", "root", "-depth", "8", "rgb:-"],
                              env=self.environment, stdout=subprocess.PIPE, check=True).stdout


def differing_pixels(one, other):
    if one == other:
        return 0
    if len(one) != len(other):
        return len(other)
    step = 4096
    return sum(sum(a != b for a, b in zip(one[i:i + step], other[i:i + step]))
               for i in range(0, len(one), step) if one[i:i + step] != other[i:i + step]) // 3
