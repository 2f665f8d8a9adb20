#!/usr/bin/python3
"""A wallet daemon as KDE's, its passwords in memory: what QtKeychain asks of one.

fake_wallet.py CONTROL: the wallet is closed while a file of that name exists."""

import sys
from pathlib import Path

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

XML = """<node><interface name="org.kde.KWallet">
<method name="isEnabled"><arg direction="out" type="b"/></method>
<method name="networkWallet"><arg direction="out" type="s"/></method>
<method name="isOpen"><arg direction="in" type="s"/><arg direction="out" type="b"/></method>
<method name="open"><arg direction="in" type="s"/><arg direction="in" type="x"/>
<arg direction="in" type="s"/><arg direction="out" type="i"/></method>
<method name="hasFolder"><arg direction="in" type="i"/><arg direction="in" type="s"/>
<arg direction="in" type="s"/><arg direction="out" type="b"/></method>
<method name="createFolder"><arg direction="in" type="i"/><arg direction="in" type="s"/>
<arg direction="in" type="s"/><arg direction="out" type="b"/></method>
<method name="entryType"><arg direction="in" type="i"/><arg direction="in" type="s"/>
<arg direction="in" type="s"/><arg direction="in" type="s"/><arg direction="out" type="i"/></method>
<method name="readPassword"><arg direction="in" type="i"/><arg direction="in" type="s"/>
<arg direction="in" type="s"/><arg direction="in" type="s"/><arg direction="out" type="s"/></method>
<method name="writePassword"><arg direction="in" type="i"/><arg direction="in" type="s"/>
<arg direction="in" type="s"/><arg direction="in" type="s"/><arg direction="in" type="s"/>
<arg direction="out" type="i"/></method>
<method name="removeEntry"><arg direction="in" type="i"/><arg direction="in" type="s"/>
<arg direction="in" type="s"/><arg direction="in" type="s"/><arg direction="out" type="i"/></method>
<signal name="walletOpened"><arg type="s"/></signal>
</interface></node>"""

passwords = {}  # (folder, key) -> password


def answer(method, words):
    closed = Path(sys.argv[1]).exists()
    if method == "isEnabled":
        return GLib.Variant("(b)", (True,))
    if method == "networkWallet":
        return GLib.Variant("(s)", ("kdewallet",))
    if method == "isOpen":
        return GLib.Variant("(b)", (not closed,))
    if method == "open":
        return GLib.Variant("(i)", (-1 if closed else 7,))
    if method in ("hasFolder", "createFolder"):
        return GLib.Variant("(b)", (True,))
    place = words[1:3]
    if method == "entryType":
        return GLib.Variant("(i)", (1 if place in passwords else 0,))
    if method == "readPassword":
        return GLib.Variant("(s)", (passwords.get(place, ""),))
    if method == "writePassword":
        passwords[place] = words[3]
        return GLib.Variant("(i)", (0,))
    passwords.pop(place, None)
    return GLib.Variant("(i)", (0,))


def main():
    bus = Gio.bus_get_sync(Gio.BusType.SESSION, None)
    interface = Gio.DBusNodeInfo.new_for_xml(XML).interfaces[0]

    def called(_bus, _sender, _path, _interface, method, words, invocation):
        print(method, flush=True)
        invocation.return_value(answer(method, words.unpack()))

    bus.register_object("/modules/kwalletd5", interface, called, None, None)
    Gio.bus_own_name_on_connection(bus, "org.kde.kwalletd5", Gio.BusNameOwnerFlags.NONE, None, None)

    def announce():
        bus.emit_signal(None, "/modules/kwalletd5", "org.kde.KWallet", "walletOpened",
                        GLib.Variant("(s)", ("kdewallet",)))
        return True

    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, 10, announce)  # SIGUSR1
    GLib.MainLoop().run()


main()
