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


def elements(container):
    """What the standard library's own printer shows of one of its containers, one at a time."""
    return (child for _, child in gdb.default_visualizer(container).children())


class TablePrinter:
    """A table as its pairs of token and key. Tables are large, so pairs are read as GDB asks for them."""

    def display_hint(self):
        return 'map'

    def children(self):
        for number, (token, key) in enumerate(self.pairs()):
            yield 'token %d' % number, token
            yield 'key %d' % number, key


class KeyTablePrinter(TablePrinter):
    def __init__(self, tokens_to_keys):
        self.map = tokens_to_keys

    def to_string(self):
        printed = gdb.default_visualizer(self.map).to_string()  # "std::unordered_map with 2 elements"
        return 'KeyTable' + printed[printed.index(' with '):]

    def pairs(self):
        tokens_and_keys = elements(self.map)
        return zip(tokens_and_keys, tokens_and_keys)


class UuidKeyTablePrinter(TablePrinter):
    def __init__(self, blocks):
        self.blocks = list(elements(blocks))

    def to_string(self):
        count = 0
        number = len(self.blocks)
        while number > 0:  # As SortedBlocks::size.
            count += int(self.blocks[number - 1]['partialCount'])
            number &= number - 1
        return 'UuidKeyTable with %d element%s' % (count, '' if count == 1 else 's')

    def pairs(self):
        for block in self.blocks:
            for entry in elements(block['entries']):
                yield entry['key'], entry['value']


def where_shown(container_of, printer):
    """Without the printers of the standard library, a table is shown as it is."""

    def printer_of(value):
        container = container_of(value)
        return printer(container) if gdb.default_visualizer(container) else None

    return printer_of


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter('TarnDataStructures')
    collection.add_printer('uuid', '^Tarn::uuids::uuid$', UuidPrinter)
    collection.add_printer('Time', '^Tarn::Time$', TimePrinter)
    collection.add_printer('KeyTable', '^Tarn::DataStructures::KeyTable$',
                           where_shown(lambda table: table['tokenToKeyMap'], KeyTablePrinter))
    collection.add_printer('UuidKeyTable', '^Tarn::DataStructures::UuidKeyTable$',
                           where_shown(lambda table: table['tokenToUuidMap']['blocks_'], UuidKeyTablePrinter))
    return collection


gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
