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


def titled(name, count):
    return '%s with %d element%s' % (name, count, '' if count == 1 else 's')


class TablePrinter:
    """A table as its pairs of token and key. Tables are large, so pairs are read as GDB asks for them."""

    def display_hint(self):
        return 'map'

    def children(self):
        for number, (token, key) in enumerate(self.pairs()):
            yield 'token %d' % number, token
            yield 'key %d' % number, key


class KeyTablePrinter(TablePrinter):
    def __init__(self, table):
        self.index = table['tokenToKeyMap']
        self.words = table['pairs']['words_']

    def to_string(self):
        first_slot = next(elements(self.index['slots_']), None)
        return titled('KeyTable', 0 if first_slot is None else int(self.index['size_']))  # As HashIndex::size.

    def pairs(self):
        characters = gdb.lookup_type('char').pointer()
        for slot in elements(self.index['slots_']):
            if int(slot['pair']) != 0:
                pair = next(elements(self.words)).address + int(slot['pair'])  # As PairStore::token and key.
                yield pair.dereference(), (pair + 2).cast(characters).lazy_string(length=int(pair[1]))


class UuidKeyTablePrinter(TablePrinter):
    def __init__(self, table):
        self.blocks = list(elements(table['tokenToUuidMap']['blocks_']))

    def to_string(self):
        count = 0
        number = len(self.blocks)
        while number > 0:  # As SortedBlocks::size.
            count += int(self.blocks[number - 1]['partialCount'])
            number &= number - 1
        return titled('UuidKeyTable', count)

    def pairs(self):
        for block in self.blocks:
            for entry in elements(block['entries']):
                yield entry['key'], entry['value']


def where_shown(container_of, printer):
    """Without the printers of the standard library, a table is shown as it is."""

    def printer_of(value):
        return printer(value) if gdb.default_visualizer(container_of(value)) else None

    return printer_of


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter('TarnDataStructures')
    collection.add_printer('uuid', '^Tarn::uuids::uuid$', UuidPrinter)
    collection.add_printer('Time', '^Tarn::Time$', TimePrinter)
    collection.add_printer('KeyTable', '^Tarn::DataStructures::KeyTable$',
                           where_shown(lambda table: table['pairs']['words_'], KeyTablePrinter))
    collection.add_printer('UuidKeyTable', '^Tarn::DataStructures::UuidKeyTable$',
                           where_shown(lambda table: table['tokenToUuidMap']['blocks_'], UuidKeyTablePrinter))
    return collection


gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
