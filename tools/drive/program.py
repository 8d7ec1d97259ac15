"""Drives the running program as a person's screen reader would: through accessibility, by role and spoken name.

Meant to run below tools/drive/under_xvfb. Waiting is for something to appear or go, never for time to pass."""

import os
import subprocess
import time
import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

warnings.simplefilter("ignore", DeprecationWarning)

PATIENCE = 60.0  # seconds until a wait gives up
REPLY = 10000  # milliseconds that the program may take to answer a question
PRESS = 700  # the same for a press: one that opens a box answers only when the box is gone


class Program:
    """One running Tessaly. Use it in a with statement: it is gone at the end."""

    def __init__(self, executable, environment=None):
        self.executable = executable
        self.process = subprocess.Popen([executable], env={**os.environ, **(environment or {})})

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()

    # --- finding

    def _root(self):
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(index)
            try:
                if application and application.get_process_id() == self.process.pid:
                    return application
            except GLib.GError:
                continue
        return None

    def all(self, role=None, name=None, below=None):
        """Every showing thing of that role and name (name may be a test)."""
        start = below or self._root()
        found = []
        pending = [start] if start else []
        while pending:
            node = pending.pop(0)
            try:
                if self._matches(node, role, name):
                    found.append(node)
                count = min(node.get_child_count(), 200)
                pending += [child for child in (node.get_child_at_index(i) for i in range(count)) if child]
            except GLib.GError:
                continue
        return found

    @staticmethod
    def _matches(node, role, name):
        if role == "button":
            role = ["button", "push button"]  # the newer and the older word for it
        if role and node.get_role_name() not in ([role] if isinstance(role, str) else role):
            return False
        if callable(name):
            return name(node.get_name() or "")
        return name is None or (node.get_name() or "") == name

    def find(self, role=None, name=None):
        """The first such thing, waited for."""
        return self.until(lambda: next(iter(self.all(role, name)), None), f"{role} {name!r}")

    def window(self, title):
        return self.find(["frame", "dialog", "window", "internal frame", "alert", "filler", "panel"], title)

    def control(self, name):
        """The showing control of that object name, waited for. Asks for control_names in section tests of the settings."""
        return self.until(lambda: next(self._controls(name), None), f"the control {name}")

    def _controls(self, name):
        for node in self.all():
            if node.get_description() == name and node.get_state_set().contains(Atspi.StateType.SHOWING):
                yield node

    def until(self, question, what):
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            try:
                answer = question()
            except GLib.GError:
                answer = None
            if answer:
                return answer
            if self.process.poll() is not None and what != "the end":
                raise AssertionError(f"the program ended while waiting for {what}")
            time.sleep(0.02)
        raise AssertionError(f"waited in vain for {what}; there is: {self.outline()}")

    def until_gone(self, role, name):
        self.until(lambda: not self.all(role, name), f"the end of {role} {name!r}")

    def outline(self):
        return [(n.get_role_name(), n.get_name()) for n in self.all() if n.get_name()][:80]

    # --- doing

    @staticmethod
    def press(node):
        """Presses a button or chooses a command."""
        Atspi.set_timeout(PRESS, PRESS)
        try:
            Atspi.Action.do_action(node, 0)
        except GLib.GError:
            pass  # it opened a box, or works: the answer comes when it is done
        finally:
            Atspi.set_timeout(REPLY, REPLY)

    def enabled(self, name):
        """The same, once it is enabled."""
        node = self.control(name)
        self.until(lambda: node.get_state_set().contains(Atspi.StateType.ENABLED), f"{name} to be enabled")
        return node

    def click(self, name):
        """Presses the button of that object name, once it is enabled."""
        self.press(self.enabled(name))

    def fill(self, name, text):
        """Puts the text into the box of that object name, in place of what it holds."""
        node = self.control(name)
        Atspi.EditableText.set_text_contents(node, text)
        self.until(lambda: self.text_of(node) == text, f"{text!r} in {name}")

    def mark(self, name, text):
        """Selects the first such text in the box of that object name."""
        node = self.control(name)
        start = self.text_of(node).index(text)
        Atspi.Text.add_selection(node, start, start + len(text))

    def choose_entry(self, name, shortcut, position, entry, title="Tessaly"):
        """Goes to a combo box and to the entry at that position, counted from 1, by keyboard, and looks which it is."""
        node = self.control(name)
        self.keys(shortcut, title=title)
        self.until(lambda: node.get_state_set().contains(Atspi.StateType.FOCUSED), f"the keyboard in {name}")
        subprocess.run(["xdotool", "key", "Home", *["Down"] * (position - 1)], check=True)
        self.until(lambda: node.get_name() == entry, f"{entry} in {name}")

    def choose_row(self, name, text):
        """Selects the row of a list that has a cell of that text."""
        self.press(self.until(lambda: next(iter(self.all("table cell", text, below=self.control(name))), None),
                              f"{text} in {name}"))

    def choose(self, menu, command):
        """Chooses a command of the menu bar by its caption."""
        parent = self.find("menu item", menu)
        found = self.until(lambda: next(iter(self.all("menu item", command, below=parent)), None), f"{menu} > {command}")
        assert found.get_state_set().contains(Atspi.StateType.ENABLED), f"{menu} > {command} is greyed"
        self.press(found)

    def dismiss_splash(self):
        """Presses a key on the tips; waits until they are gone and the console is there."""
        self.window("Tip of the Day")
        # To the screen, not to the window: that one goes at the press and would leave the key down for ever.
        subprocess.run(["xdotool", "search", "--sync", "--name", "^Tip of the Day$", "windowfocus"], check=True)
        subprocess.run(["xdotool", "key", "space"], check=True)
        self.until_gone(None, "Tip of the Day")

    def type_into(self, role, name, text, title="Tessaly"):
        """Types the text into a field of the window, in place of what it holds."""
        self._go_to(self.find(role, name), name, title)
        subprocess.run(["xdotool", "key", "ctrl+a"], check=True)
        subprocess.run(["xdotool", "type", text], check=True)

    def type_before(self, name, text, title="Tessaly"):
        """Types the text into the box of that object name, before what it holds."""
        node = self.control(name)
        before = self.text_of(node)
        self._go_to(node, name, title)
        subprocess.run(["xdotool", "key", "ctrl+Home"], check=True)
        subprocess.run(["xdotool", "type", text], check=True)
        self.until(lambda: self.text_of(node) == text + before, f"{text!r} in {name}")

    def press_by_key(self, name, title="Tessaly"):
        """Goes to the button of that object name and presses it by keyboard."""
        self._go_to(self.enabled(name), name, title)
        subprocess.run(["xdotool", "key", "space"], check=True)

    def _go_to(self, node, name, title):
        self.keys(title=title)
        self.until(lambda: self._focused(node), f"the keyboard in {name}")

    def keys(self, *pressed, title="Tessaly"):
        """Gives the window the keyboard and presses keys, such as "alt+i"."""
        focus = ["xdotool", "search", "--sync", "--onlyvisible", "--name", f"^{title}$", "windowfocus", "--sync"]
        # Refused where a box of the same title was found and has just gone: there is another one then.
        self.until(lambda: subprocess.run(focus, stderr=subprocess.DEVNULL).returncode == 0, f"the keyboard in {title}")
        for key in pressed:
            subprocess.run(["xdotool", "key", key], check=True)

    @staticmethod
    def _focused(node):
        Atspi.Component.grab_focus(node)
        return node.get_state_set().contains(Atspi.StateType.FOCUSED)

    def text_of(self, node):
        return Atspi.Text.get_text(node, 0, Atspi.Text.get_character_count(node))

    def ended(self):
        """Waits for the end; the exit status."""
        self.until(lambda: self.process.poll() is not None, "the end")
        return self.process.returncode

    @staticmethod
    def picture(path):
        subprocess.run(["import", "-window", "root", path], check=True)
