"""How GDB shows this library's values: a uuid as its canonical text, a Time as local time, a key table as its pairs, a
progress by where it stands and who watches it.

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
    """A table as its pairs of token and key, in their order in memory. Tables are large, so pairs are read as GDB asks
    for them."""

    def __init__(self, table):
        self.name = table.type.strip_typedefs().unqualified().name.rsplit('::', 1)[1]
        self.index = table['pairs_']['byToken_']
        self.words = table['pairs_']['words_']

    def to_string(self):
        first_slot = next(elements(self.index['slots_']), None)
        return titled(self.name, 0 if first_slot is None else int(self.index['size_']))  # As HashIndex::size.

    def display_hint(self):
        return 'map'

    def children(self):
        number = 0
        words = elements(self.words)
        for _ in range(2):  # HashedPairs's kFirst.
            next(words, None)
        for word in words:  # As HashedPairs::compact.
            token = word.address
            header = int(next(words))
            size = header >> 2
            for _ in range((size + 7) // 8):
                next(words)
            if header & 1:
                yield 'token %d' % number, token.dereference()
                yield 'key %d' % number, self.key(token + 2, size)
                number += 1


class KeyTablePrinter(TablePrinter):
    def key(self, characters, size):
        return characters.cast(gdb.lookup_type('char').pointer()).lazy_string(length=size)


class UuidKeyTablePrinter(TablePrinter):
    def key(self, characters, size):
        return characters.cast(gdb.lookup_type('Tarn::uuids::uuid').pointer()).dereference()


class ProgressPrinter:
    def __init__(self, progress):
        self.progress = progress

    def to_string(self):
        return 'Progress'

    def children(self):
        yield 'value', self.progress['value_']
        yield 'step', self.progress['step_']
        yield 'value observers', len(list(elements(self.progress['progressObservers_'])))
        yield 'step observers', len(list(elements(self.progress['stepObservers_'])))


class PartialProgressPrinter(ProgressPrinter):
    def to_string(self):
        return 'PartialProgress'

    def children(self):
        yield from super().children()
        yield 'share', self.progress['share_']
        yield 'parent', self.progress['parent_']


def where_shown(printer, container):
    """Without the type, or the printers of the standard library, a value is shown as it is."""

    def printer_of(value):
        if not value.type.strip_typedefs().fields():
            return None
        return printer(value) if gdb.default_visualizer(container(value)) else None

    return printer_of


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter('TarnDataStructures')

    def add(name, printer):
        collection.add_printer(name, '^Tarn::%s$' % name, printer)

    add('uuids::uuid', UuidPrinter)
    add('Time', TimePrinter)
    for table in KeyTablePrinter, UuidKeyTablePrinter:
        add('DataStructures::' + table.__name__[:-7], where_shown(table, lambda value: value['pairs_']['words_']))
    for progress in ProgressPrinter, PartialProgressPrinter:
        add('DataStructures::' + progress.__name__[:-7], where_shown(progress, lambda value: value['stepObservers_']))
    return collection


gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
