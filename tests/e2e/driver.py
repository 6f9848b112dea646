# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Uses a Qt application as a person would: sees it through the accessibility tree, touches it by pointer and keys."""

import subprocess
import time

# The accessibility bus has to stand before pyatspi looks for it.
subprocess.run(
    "gdbus call --session -d org.a11y.Bus -o /org/a11y/bus -m org.a11y.Bus.GetAddress".split(),
    stdout=subprocess.DEVNULL,
    check=True,
    timeout=20,
)
import pyatspi  # noqa: E402

POLL_SECONDS = 0.05
STANDING_STILL_SECONDS = 0.12
# Between turns of the wheel: turns close together are taken for one large one.
GLIDING_SECONDS = 0.4


class NotSeen(AssertionError):
    """What was waited for did not come."""


def wait_for(look, what, seconds=15):
    """The first true answer of `look`. Nodes may vanish while they are looked at: that counts as not yet."""
    end = time.monotonic() + seconds
    while True:
        try:
            found = look()
            if found:
                return found
        except Exception as reason:  # pylint: disable=broad-except
            if isinstance(reason, NotSeen):
                raise
        if time.monotonic() > end:
            raise NotSeen(f"{what} was not seen within {seconds} s")
        time.sleep(POLL_SECONDS)


def run(*command, **options):
    return subprocess.run(command, check=True, timeout=20, capture_output=True, text=True, **options).stdout


def end(process):
    """Asks a process to end, and makes it when it does not."""
    process.terminate()
    try:
        process.wait(10)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait(10)


class Driver:
    """One running application and its window."""

    def __init__(self, command, application, title, log):
        # An application that registers before the registry is awake stays unseen.
        pyatspi.Registry.getDesktop(0).childCount
        self.process = subprocess.Popen(command, stdout=log, stderr=log, stdin=subprocess.DEVNULL)
        self.root = wait_for(lambda: self._application(application), f"application {application}")
        self.window = wait_for(lambda: self._window(title), f"window {title}")
        # Without a window manager nobody else gives it the focus.
        run("xdotool", "windowmove", self.window, "0", "0", "windowfocus", self.window)

    @staticmethod
    def _application(name):
        return next((each for each in pyatspi.Registry.getDesktop(0) if each and each.name == name), None)

    @staticmethod
    def _window(title):
        # A count of those who wait for an answer may stand in front.
        return run("xdotool", "search", "--onlyvisible", "--name", rf"^(\([0-9]+\) )?{title}$").split()[0]

    def close(self):
        end(self.process)

    # ---- seeing -----------------------------------------------------------------------------------------------------

    def showing(self, root=None):
        """Every node that shows, parents first."""
        todo = [root or self.root]
        while todo:
            node = todo.pop()
            if node is None:
                continue
            try:
                children = [node.getChildAtIndex(i) for i in range(node.childCount)]
                if node.getState().contains(pyatspi.STATE_SHOWING) or node == self.root:
                    yield node
            except Exception:  # pylint: disable=broad-except
                continue
            todo.extend(reversed(children))

    def all(self, role, root=None):
        return [node for node in self.showing(root) if node.getRoleName() == role]

    def find(self, role, name, seconds=15, root=None):
        return wait_for(
            lambda: next((node for node in self.all(role, root) if node.name == name), None),
            f'{role} "{name}"',
            seconds,
        )

    def shows(self, role, name):
        return any(node.name == name for node in self.all(role))

    def gone(self, role, name, seconds=15):
        wait_for(lambda: not self.shows(role, name), f'the end of {role} "{name}"', seconds)

    def rows(self, list_name):
        """The names of a list's rows from top to bottom, as far as they exist."""
        nodes = self.all("list item", self.find("list", list_name))
        return [node.name for node in sorted(nodes, key=lambda node: self.place(node).y)]

    @staticmethod
    def place(node):
        return node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)

    @staticmethod
    def text(node):
        content = node.queryText()
        return content.getText(0, content.characterCount)

    # ---- touching ---------------------------------------------------------------------------------------------------

    def settled(self, node):
        """Where it is once it no longer moves: a press on what glides does something else."""
        last = None
        for _ in range(60):
            place = self.place(node)
            if last and (place.x, place.y, place.width) == (last.x, last.y, last.width):
                return place
            last = place
            time.sleep(STANDING_STILL_SECONDS)
        raise NotSeen(f"{node.name} does not stand still")

    def click(self, node):
        place = self.settled(node)
        x, y = place.x + place.width // 2, place.y + place.height // 2
        run("xdotool", "mousemove", "--sync", str(x), str(y), "click", "1")
        # Out of the way, so that no picture shows a hovered control; where it goes no control is.
        run("xdotool", "mousemove", "1299", "859")

    def click_right(self, node):
        place = self.settled(node)
        run("xdotool", "mousemove", "--sync", str(place.x + place.width // 2), str(place.y + place.height // 2))
        run("xdotool", "click", "3", "mousemove", "1299", "859")

    def swipe(self, node, distance):
        """Drags the node sideways by so many pixels as a finger does, and lets go."""
        place = self.settled(node)
        x, y = place.x + place.width // 2, place.y + place.height // 2
        run("xdotool", "mousemove", "--sync", str(x), str(y), "mousedown", "1")
        for step in range(1, 11):
            run("xdotool", "mousemove", "--sync", str(x + distance * step // 10), str(y))
        run("xdotool", "mouseup", "1")

    def scroll(self, node, clicks):
        """Turns the wheel over the node: down for a positive number."""
        place = self.place(node)
        run("xdotool", "mousemove", "--sync", str(place.x + place.width // 2), str(place.y + place.height // 2))
        run("xdotool", "click", "--repeat", str(abs(clicks)), "--delay", "20", "5" if clicks > 0 else "4")
        run("xdotool", "mousemove", "1299", "859")

    def scroll_to(self, list_name, wanted):
        """The first row whose name `wanted` takes, scrolled to where it can be touched. Rows out of view do not exist."""
        view = self.find("list", list_name)
        for turn in range(40):
            bounds = self.place(view)
            for row in self.all("list item", view):
                if not wanted(row.name):
                    continue
                place = self.settled(row)
                if bounds.y <= place.y and place.y + place.height <= bounds.y + bounds.height:
                    return row
            self.scroll(view, 1 if turn else -80)
            time.sleep(GLIDING_SECONDS)
        raise NotSeen(f"no such row in {list_name}: {self.rows(list_name)}")

    def scroll_page_to(self, role, name):
        """What is on a page that scrolls, from its top, brought above the tabs."""
        frame = self.all("frame")[0]
        bounds = self.place(frame)
        for turn in range(40):
            node = next((each for each in self.all(role) if each.name == name), None)
            if turn and node:
                place = self.settled(node)
                if bounds.y + 60 <= place.y and place.y + place.height <= bounds.y + bounds.height - 60:
                    return node
            self.scroll(frame, 1 if turn else -80)
            time.sleep(GLIDING_SECONDS)
        raise NotSeen(f'{role} "{name}" is not on the page')

    def key(self, *keys):
        run("xdotool", "key", *keys)

    def type(self, node, text):
        """Clicks into the field and types; `text` is ASCII, as xdotool loses other characters now and then."""
        self.click(node)
        wait_for(lambda: node.getState().contains(pyatspi.STATE_FOCUSED), f"focus on {node.name}")
        run("xdotool", "type", "--delay", "8", text)
        wait_for(lambda: self.text(node).replace("\u2029", "\n").endswith(text), "the typed text")

    def copy(self, text):
        """Puts it into the clipboard, by way of standard input: arguments can be read by everybody."""
        subprocess.run(
            ["xclip", "-selection", "clipboard"],
            input=text,
            text=True,
            check=True,
            timeout=10,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )

    def resize(self, width, height):
        run("xdotool", "windowsize", self.window, str(width), str(height))
        frame = self.all("frame")[0]
        wait_for(lambda: (self.place(frame).width, self.place(frame).height) == (width, height), "the window's new size")

    def picture(self, path):
        """Of the window once it stands still, or after two seconds when something in it keeps moving."""
        last = None
        end = time.monotonic() + 2
        while time.monotonic() < end:
            run("import", "-window", self.window, str(path))
            now = path.read_bytes()
            if now == last:
                return
            last = now
            time.sleep(STANDING_STILL_SECONDS)
