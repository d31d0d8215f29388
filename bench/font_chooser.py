#!/usr/bin/python3
"""GTK's font chooser: from making it until it has painted its list of fonts, and scrolling through it."""
import statistics
import time

import gi
gi.require_version("Gtk", "3.0")
from gi.repository import GLib, Gtk

MOST_PAGES = 300


def find(widget, kind):
    if isinstance(widget, kind):
        return widget
    parts = []
    if isinstance(widget, Gtk.Container):
        widget.forall(parts.append)
    return next((found for part in parts if (found := find(part, kind))), None)


class Chooser:
    def __init__(self):
        self.started = time.perf_counter()
        self.frames = []
        window = Gtk.Window(default_width=500, default_height=600)
        chooser = Gtk.FontChooserWidget()
        window.add(chooser)
        window.show_all()
        self.list = find(chooser, Gtk.TreeView)
        self.bar = find(chooser, Gtk.ScrolledWindow).get_vadjustment()
        window.get_frame_clock().connect("after-paint", self.painted)

    def painted(self, _):
        if self.started is None or len(self.list.get_model()) == 0:
            return
        took = (time.perf_counter() - self.started) * 1e3
        if not self.frames:
            print(f"first rows\t{took:.3f}")
        self.frames.append(took)
        self.started = None
        GLib.idle_add(self.scroll)

    def scroll(self):
        value, last = self.bar.get_value(), self.bar.get_upper() - self.bar.get_page_size()
        if value >= last or len(self.frames) > MOST_PAGES:
            print(f"page\t{statistics.median(self.frames[1:]):.3f}\nworst page\t{max(self.frames[1:]):.3f}")
            Gtk.main_quit()
            return
        self.started = time.perf_counter()
        self.bar.set_value(min(value + self.bar.get_page_size(), last))
        self.list.queue_draw()


chooser = Chooser()
Gtk.main()
