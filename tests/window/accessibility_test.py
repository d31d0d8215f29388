"""What an assistive tool meets: every control has a name, a role and a description, all can be reached and used by
keyboard alone, and the focus is where one left it when a sheet has ended. Seen over AT-SPI, as a screen reader sees it.
"""
import shutil
import sys

import windowtest

try:
    import gi
    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi, GLib
except (ImportError, ValueError):
    print("cannot run here without AT-SPI for Python")
    sys.exit(windowtest.SKIPPED)

State, Role = Atspi.StateType, Atspi.Role
# Controls that answer to the user; a list, a table or a row of tabs counts once, whatever it holds.
CONTROLS = {Role.PUSH_BUTTON, Role.CHECK_BOX, Role.COMBO_BOX, Role.SPIN_BUTTON, Role.TABLE, Role.LIST, Role.TEXT,
            Role.PAGE_TAB_LIST}
NEED_NO_DESCRIPTION = {Role.PAGE_TAB_LIST, Role.LIST}
DOCUMENTS = {Role.LABEL}  # a text to read that takes the focus; the Tab key visits its links first


def children(node):
    if node.get_role() in (Role.TABLE, Role.LIST, Role.COMBO_BOX, Role.PAGE_TAB_LIST):
        return []
    found = (node.get_child_at_index(i) for i in range(node.get_child_count()))
    return [child for child in found if child]


def has(node, *states):
    return all(node.get_state_set().contains(state) for state in states)


def walk(node):
    yield node
    for child in children(node):
        yield from walk(child)


def name_of(node):
    if node.get_name():
        return node.get_name()
    for relation in node.get_relation_set():
        if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY:
            return relation.get_target(0).get_name()
    return ""


def label(node):
    return f"{node.get_role_name()} {name_of(node)!r}"


class Late(AssertionError):
    pass


def wait(condition, what, limit=windowtest.LIMIT):
    """Until the condition gives something; the accessibility bus is asked again after each of its events."""
    context, end = GLib.MainContext.default(), GLib.get_monotonic_time() + limit * 1_000_000
    ticking = GLib.timeout_add(20, lambda: True)  # an event may have come just before the question
    try:
        while not (found := condition()):
            if GLib.get_monotonic_time() > end:
                raise Late(f"waited in vain for {what}")
            context.iteration(True)
    finally:
        GLib.source_remove(ticking)
    return found


def application(title):
    def find():
        desktop = Atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(i)
            if child and child.get_name() == title and child.get_child_count():
                return child
        return None
    return wait(find, title)


class Pane:
    def __init__(self, session):
        self.session, self.node = session, application("panehost")

    def shown(self, title, is_sheet=False):
        """The window or sheet of this title, while it is on the screen."""
        self.node.clear_cache()
        for child in children(self.node):
            if child.get_name() == title and (child.get_role() == Role.DIALOG) == is_sheet and has(child, State.SHOWING):
                return child
        return None

    def controls(self, window):
        return [node for node in walk(window)
                if node.get_role() in CONTROLS and has(node, State.SHOWING)
                and (has(node, State.FOCUSABLE) or node.get_role() == Role.PAGE_TAB_LIST)]

    def focused(self):
        """The control that has the focus; of what is in a table or a list, Qt calls the current one focused, too."""
        self.node.clear_cache()
        for top in children(self.node):
            for node in walk(top):
                if node.get_role() in CONTROLS | DOCUMENTS and has(node, State.SHOWING, State.FOCUSED):
                    return node
        return None

    def tab(self):
        """Where the Tab key takes the focus."""
        before = self.focused()
        moved = lambda: (now := self.focused()) and now != before and now
        for _ in range(10 if before.get_role() in DOCUMENTS else 0):
            self.session.key("Tab")
            try:
                return wait(moved, "the end of a text", limit=1)
            except Late:
                pass  # at a link
        self.session.key("Tab")
        return wait(moved, f"the focus after {label(before)}")

    def check_window(self, title, is_sheet=False):
        """Names, roles and descriptions of what is shown, and a round by the Tab key."""
        window = wait(lambda: self.shown(title, is_sheet), title)
        controls = self.controls(window)
        assert controls, title
        for node in controls:
            assert name_of(node), f"{title}: {label(node)} has no name"
            assert node.get_description() or node.get_role() in NEED_NO_DESCRIPTION, \
                f"{title}: {label(node)} has no description"
        usable = {label(node) for node in controls if has(node, State.ENABLED)}
        first = wait(self.focused, f"a focus in {title}")
        reached, node = {label(first)}, self.tab()
        while label(node) not in reached:
            reached.add(label(node))
            node = self.tab()
        assert usable <= reached, f"{title}: the keyboard does not reach {usable - reached}"

    def check_sheet(self, keys, title):
        before = label(wait(self.focused, "a focus"))
        self.session.key(*keys)
        sheet = wait(lambda: self.shown(title, True), title)
        wait(lambda: any(node == self.focused() for node in walk(sheet)), f"the focus in {title}")
        self.check_window(title, True)
        self.session.key("Escape")
        wait(lambda: not self.shown(title, True), f"the end of {title}")
        wait(lambda: (now := self.focused()) and label(now) == before, f"the focus back on {before}")


def test(session):
    session.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
    session.ctl("defaults", "write", "com.tarnwick.typeslate", "Added Default Exclusions", "true")
    session.ctl("defaults", "write", "com.tarnwick.typeslate", "Default Exclusions Version", "1000")
    host = session.open_pane()
    pane = Pane(session)
    main = wait(lambda: pane.shown("Typeslate"), "the window")

    # The module is missing here: the line that says so is an alert, not only red.
    alerts = [node for node in walk(main) if node.get_role() in (Role.ALERT, Role.NOTIFICATION)]
    assert [node.get_name() for node in alerts] == ["The Plinth component is either disabled or not installed."], alerts

    pane.check_window("Typeslate")
    pane.check_sheet(["alt+e"], "Regular Expression")
    pane.check_sheet(["alt+a"], "Choose an Application")
    session.key("alt+v")  # "Advanced"
    wait(lambda: any(node.get_name() == "Write a detailed log" and has(node, State.SHOWING) for node in walk(main)),
         "the Advanced tab")
    pane.check_window("Typeslate")
    pane.check_sheet(["alt+l"], "Typeslate")  # the warning before the log is switched on
    pane.check_sheet(["alt+a"], "About Typeslate")
    session.close(host)

    # With a module there are the controls for updates.
    shutil.copytree(session.build + "/Sample.plinth", session.home + "/Library/Plinthworks/Typeslate.plinth")
    session.ctl("defaults", "write", "com.tarnwick.typeslate", "SUCheckForUpdates", "false")
    host = session.open_pane()
    pane = Pane(session)
    main = wait(lambda: pane.shown("Typeslate"), "the window")
    session.key("alt+u")
    wait(lambda: any(node.get_name() == "Check Now" and has(node, State.SHOWING) for node in walk(main)), "Updates")
    assert any("Never checked" in node.get_name() for node in walk(main)), "the last check's result has no words"
    assert not [node for node in walk(main) if node.get_role() in (Role.ALERT, Role.NOTIFICATION)]
    pane.check_window("Typeslate")
    pane.check_sheet(["alt+p"], "Privacy Statement")
    session.close(host)


windowtest.run(test)
