"""A program with one window that imitates a browser's: the arguments are the window's title, the
program name and an address, which is shown in an entry field. It runs as a separate process.

GTK is called without a binding, because the browsers already need its library.
"""

import ctypes
import sys

NEW_TOP_LEVEL = 0


def main(title, program_name, address):
    gtk = ctypes.CDLL("libgtk-3.so.0")
    gtk.gtk_window_new.restype = gtk.gtk_entry_new.restype = ctypes.c_void_p
    ctypes.CDLL("libglib-2.0.so.0").g_set_prgname(program_name.encode())
    gtk.gtk_init(None, None)
    window = ctypes.c_void_p(gtk.gtk_window_new(NEW_TOP_LEVEL))
    entry = ctypes.c_void_p(gtk.gtk_entry_new())
    gtk.gtk_entry_set_text(entry, address.encode())
    gtk.gtk_container_add(window, entry)
    gtk.gtk_window_set_title(window, title.encode())
    gtk.gtk_widget_show_all(window)
    gtk.gtk_main()


if __name__ == "__main__":
    main(*sys.argv[1:])
