"""How GDB shows this library's values: a uuid as its canonical text, a Time as local time, a key table as its pairs.

Installed as a script of the shared library, which GDB loads by itself where it trusts the folder: see docs/debugger.md.
"""

import time

import gdb
import gdb.printing


class UuidPrinter:
    def __init__(self, value):
        array = value['data']
        self.elements = array[array.type.fields()[0]]  # Its name differs between standard libraries.

    def to_string(self):
        digits = ''.join('%02x' % int(self.elements[i]) for i in range(16))
        return '-'.join((digits[:8], digits[8:12], digits[12:16], digits[16:20], digits[20:]))


class TimePrinter:
    """In the time zone of GDB, which is the program's unless that changes its own."""

    def __init__(self, value):
        self.seconds = float(value['absTime'])

    def to_string(self):
        if not 0 <= self.seconds < 32535216000:  # The calendar range of `Time`.
            return '%r s from 1970, outside the calendar' % self.seconds
        whole = int(self.seconds)
        millisecond = min(round((self.seconds - whole) * 1000), 999)
        return time.strftime('%Y-%m-%d %H:%M:%S', time.localtime(whole)) + '.%03d' % millisecond


class TablePrinter:
    """The pairs of a map from tokens to keys, in its order."""

    def __init__(self, name, map_printer):
        self.name = name
        self.map = map_printer

    def to_string(self):
        return self.name + self.map.to_string().partition('map')[2]  # The map's says "... map with 2 elements".

    def display_hint(self):
        return 'map'

    def children(self):
        return self.map.children()


def table_printer(name, pairs):
    """The standard library's own printer walks the map. Without it the table is shown as it is."""
    map_printer = gdb.default_visualizer(pairs)
    return TablePrinter(name, map_printer) if map_printer else None


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter('TarnDataStructures')
    collection.add_printer('uuid', '^Tarn::uuids::uuid$', UuidPrinter)
    collection.add_printer('Time', '^Tarn::Time$', TimePrinter)
    collection.add_printer('KeyTable', '^Tarn::DataStructures::KeyTable$',
                           lambda table: table_printer('KeyTable', table['tokenToKeyMap']))
    collection.add_printer('UuidKeyTable', '^Tarn::DataStructures::UuidKeyTable$',
                           lambda table: table_printer('UuidKeyTable', table['tokenToUuidMap']))
    return collection


gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
