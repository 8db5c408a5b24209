"""Drives a program through the accessibility interface (AT-SPI), as a screen reader does, on the
desktop of the script `session`:

    with driver.Program("build/tarnwell", "--port=simulated") as program:
        program.menu("I2C Operations", "Read Entire EEP")
        program.wait_for_status("Primary EEProm Data Read Into Memory")
        program.keys("alt+h", "t")

Things are found by their accessible names and roles ("push button", "menu item"). Whatever is asked
for is waited for, up to TIMEOUT seconds; what does not come raises Missing. `with` ends the program
however the block is left.
"""

import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

TIMEOUT = 300.0  # s; of what is expected, on a machine that is busy
_ACTION_TIMEOUT = 150  # ms; an action that opens a dialog answers only when that is closed
_CALL_TIMEOUT = 100000  # ms


class Missing(AssertionError):
    """Something that was waited for did not come."""


def wait_for(what, condition, timeout=TIMEOUT):
    """Returns the first true value of condition(); `what` is a text or makes one."""
    end = time.monotonic() + timeout
    while True:
        try:
            value = condition()
        except GLib.Error:  # it went away while it was looked at
            value = None
        if value:
            return value
        if time.monotonic() > end:
            raise Missing(f"{what() if callable(what) else what} did not come in {timeout:g} s")
        time.sleep(0.02)


def has(node, state):
    """Whether the node has the state, such as "focused"."""
    return node.get_state_set().contains(getattr(Atspi.StateType, state.upper()))


def children(node):
    """The children that are there; none of a table's or tree's cells, which are made when asked for."""
    if node.get_role() in (Atspi.Role.TABLE, Atspi.Role.TREE, Atspi.Role.TREE_TABLE):
        return []
    found = (node.get_child_at_index(index) for index in range(node.get_child_count()))
    return [child for child in found if child is not None]


def tree(node, shown=True):
    """The node and all below it; what is not shown, and what is below that, only if asked for."""
    if shown and not has(node, "showing"):
        return
    yield node
    for child in children(node):
        yield from tree(child, shown)


def press(node):
    """Does what the node can do, which is called Press."""
    names = [Atspi.Action.get_action_name(node, i) for i in range(Atspi.Action.get_n_actions(node))]
    Atspi.set_timeout(_ACTION_TIMEOUT, 0)
    try:
        Atspi.Action.do_action(node, names.index("Press"))
    except GLib.Error as error:
        if "reply" not in error.message:
            raise
    finally:
        Atspi.set_timeout(_CALL_TIMEOUT, 0)


class Program:
    def __init__(self, path, *arguments, **popen):
        Atspi.set_timeout(_CALL_TIMEOUT, 0)
        self.process = subprocess.Popen([path, *arguments], **popen)
        try:
            self.application = wait_for(f"{path} on the accessibility bus", self._find_application)
        except BaseException:
            self.end()
            raise
        self.application.set_cache_mask(Atspi.Cache.NONE)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.end()

    def _find_application(self):
        if self.process.poll() is not None:
            raise Missing(f"the program has ended with status {self.process.returncode}")
        return next((application for application in children(Atspi.get_desktop(0))
                     if application.get_process_id() == self.process.pid
                     and application.get_child_count() > 0), None)

    def windows(self):
        """The windows and dialogs that are shown, the newest last."""
        return [window for window in children(self.application) if has(window, "showing")]

    def window(self, title):
        """The window whose title contains this text."""
        return wait_for(f"window {title!r}", lambda: next(
            (window for window in reversed(self.windows()) if title in window.get_name()), None))

    def find(self, name, role=None, within=None, shown=True):
        """The node of this name and role, in the newest window that has one."""
        return wait_for(f"{role or 'something'} named {name!r}", lambda: next(
            (node for root in ([within] if within else reversed(self.windows()))
             for node in tree(root, shown)
             if node.get_name() == name and role in (None, node.get_role_name())), None))

    def press(self, button):
        press(self.find(button, "push button"))

    def menu(self, *names):
        """Chooses a menu item, found by its way through the menus."""
        node = None
        for name in names:
            node = self.find(name, "menu item", within=node, shown=False)
        press(node)

    def focused(self):
        """What has the focus, or None; a chosen page tab always says so, its list is taken for it."""
        return next((node for window in reversed(self.windows()) for node in tree(window)
                     if has(node, "focused") and node.get_role() != Atspi.Role.PAGE_TAB), None)

    def panel(self, caption):
        """The text of a status panel: that of "Mode", "Status", "CRC32" or "EEP"."""
        start = caption + ": "
        return next((node.get_name()[len(start):] for node in tree(self.application.get_child_at_index(0))
                     if node.get_name().startswith(start)), None)

    def wait_for_status(self, text):
        """Waits until the status panel contains the text."""
        return wait_for(lambda: f"status {text!r} (it is {self.panel('Status')!r})",
                        lambda: text in (self.panel("Status") or ""))

    def keys(self, *names):
        """Types keys into the newest window, once it is active: "Tab", "ctrl+Tab", "5" (names of
        X keysyms)."""
        wait_for("an active window", lambda: has(self.windows()[-1], "active"))
        for name in names:
            subprocess.run(["xdotool", "key", "--clearmodifiers", name], check=True)

    def end(self):
        self.process.kill()
        self.process.wait()
