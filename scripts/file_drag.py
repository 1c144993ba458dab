#!/usr/bin/python3
"""A file that can be dragged: scripts/file_drag.py FILE, as a file manager shows it.

Started by scripts/example_screen.py. Shows a small window in the corner of the screen; a button that is
pressed in it drags the file by the XDND protocol, the way X programs exchange what is dragged,
until the button is released. Ends when the window it was dropped on has taken it, with status 1
where none has.
"""

import os
import pathlib
import select
import sys
import time

from Xlib import X, Xatom, display, protocol

PATIENCE = 20  # seconds from the start
VERSION = 5
SIZE = 96, 24


class FileDrag:
    def __init__(self, file):
        self.display = display.Display()
        self.root = self.display.screen().root
        self.uris = (pathlib.Path(os.path.abspath(file)).as_uri() + "\r\n").encode()
        self.copy = self._atom("XdndActionCopy")
        self.list_of_uris = self._atom("text/uri-list")
        self.selection = self._atom("XdndSelection")
        self.target = None  # the window under the pointer, where it takes drops
        self.is_waiting = self.is_accepted = self.is_released = False
        self.window = self.root.create_window(
            0, 0, *SIZE, 1, X.CopyFromParent, override_redirect=True, background_pixel=0xFFFFFF,
            event_mask=X.ExposureMask | X.ButtonPressMask | X.ButtonReleaseMask | X.Button1MotionMask)
        self.window.set_wm_name("File to drag")
        self.window.map()

    def run(self):
        """Whether the file was taken."""
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            self.display.flush()
            if not self.display.pending_events():
                select.select([self.display], [], [], 0.1)
                continue
            event = self.display.next_event()
            taken = self._take(event)
            if taken is not None:
                return taken
        return False

    def _take(self, event):
        """None while the drag goes on."""
        if event.type == X.ButtonPress:
            self.window.set_selection_owner(self.selection, event.time)
        elif event.type == X.MotionNotify:
            self._move(event)
        elif event.type == X.ButtonRelease:
            self.is_released = True
            return self._drop_if_known()
        elif event.type == X.SelectionRequest:
            self._hand_out(event)
        elif event.type == X.ClientMessage and event.client_type == self._atom("XdndStatus"):
            self.is_waiting = False
            self.is_accepted = bool(event.data[1][1] & 1)
            return self._drop_if_known()
        elif event.type == X.ClientMessage and event.client_type == self._atom("XdndFinished"):
            return bool(event.data[1][1] & 1)
        return None

    def _move(self, event):
        target = self._target_at_pointer()
        if target != self.target:
            if self.target is not None:
                self._send("XdndLeave", [0, 0, 0, 0])
            self.target, self.is_waiting, self.is_accepted = target, False, False
            if target is not None:
                self._send("XdndEnter", [VERSION << 24, self.list_of_uris, 0, 0])
        if target is not None and not self.is_waiting:
            self.is_waiting = True
            self._send("XdndPosition", [0, event.root_x << 16 | event.root_y, event.time, self.copy])

    def _drop_if_known(self):
        """As soon as the target has answered to the last position; false where it does not want it."""
        if not self.is_released or self.is_waiting:
            return None
        if self.target is None or not self.is_accepted:
            return False
        self.is_released = False
        self._send("XdndDrop", [0, X.CurrentTime, 0, 0])
        return None

    def _target_at_pointer(self):
        window = self.root
        while window != X.NONE:
            if window.get_full_property(self._atom("XdndAware"), Xatom.ATOM) is not None:
                return window
            window = window.query_pointer().child
        return None

    def _send(self, kind, values):
        message = protocol.event.ClientMessage(window=self.target, client_type=self._atom(kind),
                                               data=(32, [self.window.id, *values]))
        self.target.send_event(message)

    def _hand_out(self, request):
        is_known = request.target == self.list_of_uris
        if is_known:
            request.requestor.change_property(request.property, request.target, 8, self.uris)
        request.requestor.send_event(protocol.event.SelectionNotify(
            time=request.time, requestor=request.requestor, selection=request.selection,
            target=request.target, property=request.property if is_known else X.NONE))

    def _atom(self, name):
        return self.display.intern_atom(name)


if __name__ == "__main__":
    sys.exit(0 if FileDrag(sys.argv[1]).run() else "file_drag: no window has taken the file")
