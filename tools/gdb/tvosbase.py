# Pretty printers and functions of libTvOsBase for gdb 10 and newer.
#
#     (gdb) source tvosbase.py         where gdb has not loaded it with the library
#     (gdb) print layer                "WÄNDE" (code page 1252)
#     (gdb) print $tv_heap(p)          "24-byte pool, page 8191, block 7, unit 3"
#     (gdb) print $tv_text(wide)       "Ø 30", of UTF-16 units, surrogates joined
#
# Everything is read from memory and nothing is called in the process, so that core files
# are shown as running programs are.
import codecs

import gdb
import gdb.printing

# The heap's geometry and the offsets of its object and records: a promise of the library.
RANGE_PAGES = 8192
PAGE_SHIFT = 20
BLOCK_SHIFT = 12
BLOCKS_OF_DESCRIPTORS = 2
PAGE_IDS = 32768
POOLS = 35
PAGE_POOLS = 257
UNIT_SIZES = (0, 512, 1024, 2048, 4096, 256, 240, 224, 208, 200, 192, 184, 176, 168, 160, 152, 144,
              136, 128, 120, 112, 104, 96, 88, 80, 72, 64, 56, 48, 40, 32, 24, 16, 8, 0)
RECORD_SIZE = 32       # of a page record and of a block's descriptor alike
LOCKER_SIZE = 8
POOLS_AT = 3 * LOCKER_SIZE
PAGE_LISTS_AT = POOLS_AT + POOLS * 8
PAGE_RECORDS_AT = PAGE_LISTS_AT + 2 * 8 + PAGE_POOLS * 8
SEARCH_HINT_AT = PAGE_RECORDS_AT + PAGE_IDS * RECORD_SIZE
PAGE_FLAGS_AT = SEARCH_HINT_AT + 2

LONGEST_TEXT = 1 << 16  # units


def bytes_at(address, size):
    """Memory of the program; addresses wrap, so that a wild pointer is a gdb.MemoryError."""
    return bytes(gdb.selected_inferior().read_memory(address % (1 << 64), size)) if size else b''


def number_at(address, size, signed=False):
    return int.from_bytes(bytes_at(address, size), 'little', signed=signed)


def address_of(name):
    # Quoted, the name is found without debug information, too.
    return int(gdb.parse_and_eval("(unsigned long)&'%s'" % name))


# Text ----------------------------------------------------------------------------------

PYTHON_CODECS = {
    874: 'cp874', 932: 'cp932', 936: 'gbk', 949: 'cp949', 950: 'cp950', 1361: 'johab',
    10000: 'mac_roman', 65001: 'utf-8',
}


def codec_of(code_page):
    name = PYTHON_CODECS.get(code_page, 'cp%d' % code_page)
    try:
        return codecs.lookup(name).name
    except LookupError:
        return 'latin-1' if code_page == 28591 else 'ascii'


IN_QUOTES = {ord(char): '\\' + name for char, name in zip('\n\r\t"\\', 'nrt"\\')}


def shown(codes, escape, known):
    """Characters by number; what cannot be shown becomes what `known` or `escape` says."""
    charset = gdb.parameter('host-charset')
    if charset == 'auto':
        charset = gdb.host_charset() if hasattr(gdb, 'host_charset') else 'ascii'
    return ''.join(known.get(code) or (chr(code) if can_show(code, charset) else escape(code))
                   for code in codes)


def quoted(codes, escape):
    return '"' + shown(codes, escape, IN_QUOTES) + '"'


def can_show(code, charset):
    if code > 0x10FFFF or not chr(code).isprintable():
        return False
    try:
        chr(code).encode(charset)
        return True
    except (LookupError, UnicodeError):
        return False


def unit_escape(code):
    return '\\u%04x' % code if code < 0x10000 else '\\U%08x' % code


def byte_escape(code):
    # Bytes without a character in their code page were decoded to 0xDC80 and up.
    return '\\x%02x' % (code & 0xFF) if code < 0x80 or 0xDC80 <= code <= 0xDCFF else unit_escape(code)


def quoted_bytes(data, code_page):
    text = data.decode(codec_of(code_page), 'surrogateescape')
    return quoted(map(ord, text), byte_escape)


def joined(units):
    """Characters of UTF-16 units, which may be damaged."""
    high = None
    for unit in units:
        if high is not None:
            if 0xDC00 <= unit <= 0xDFFF:
                yield 0x10000 + ((high - 0xD800) << 10) + unit - 0xDC00
                high = None
                continue
            yield high
            high = None
        if 0xD800 <= unit <= 0xDBFF:
            high = unit
        else:
            yield unit
    if high is not None:
        yield high


def quoted_units(units):
    return quoted(joined(units), unit_escape)


def wide_units(address, count):
    data = bytes_at(address, 4 * min(count, LONGEST_TEXT))
    return [int.from_bytes(data[i:i + 4], 'little') for i in range(0, len(data), 4)]


def cut(count):
    """The length to show of `count` units, as `set print elements` says, and what follows."""
    limit = gdb.parameter('print elements')
    return (count, '') if not limit or count <= limit else (limit, '...')


class Text(gdb.Function):
    """$tv_text(TEXT [, UNITS]): wide text, one UTF-16 unit per wchar_t, surrogates joined.

TEXT is a pointer or an array, read up to its terminating 0 or for UNITS units, or a
TvVector or CStdStr of wchar_t, taken with every 0 in it; 65536 units at most."""

    def __init__(self):
        super().__init__('tv_text')

    def invoke(self, text, units=None):
        # gdb adds the quotes, and a backslash to each that it finds.
        return shown(joined(self.units_of(text, units)), unit_escape, {ord(c): c for c in '\n\r\t'})

    @staticmethod
    def units_of(text, units):
        owner = owned_units(text)
        if owner is not None:
            return wide_units(*owner)
        kind = text.type.strip_typedefs()
        address = int(text.address if kind.code == gdb.TYPE_CODE_ARRAY else text)
        if units is not None:
            return wide_units(address, max(int(units), 0))
        found = []
        while len(found) < LONGEST_TEXT:
            unit = number_at(address + 4 * len(found), 4)
            if unit == 0:
                break
            found.append(unit)
        return found


def owned_units(value):
    """Address and length of the units of a vector or string of wchar_t, else None."""
    kind = plain_type(value.type)
    if kind.code != gdb.TYPE_CODE_STRUCT:
        return None
    name = kind.name or ''
    if name.startswith('TvVector<wchar_t'):
        record = value['m_data']['m_record']
        return (int(record['array']), max(int(record['logicalCnt']), 0)) if record else (0, 0)
    if name.startswith('CStdStr<wchar_t'):
        return int(value['_M_dataplus']['_M_p']), int(value['_M_string_length'])
    return None


def plain_type(kind):
    if kind.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
        kind = kind.target()
    return kind.unqualified().strip_typedefs().unqualified()


# Heap ----------------------------------------------------------------------------------


class Heap(gdb.Function):
    """$tv_heap(POINTER): which pool a pointer is from, and which unit of it.

Units that are free and addresses within a unit are told; what is not in the range of the
library's heap is "malloc", whether or not the C library knows it."""

    def __init__(self):
        super().__init__('tv_heap')

    def invoke(self, pointer):
        return describe_pointer(int(pointer.cast(gdb.lookup_type('unsigned long'))))


def describe_pointer(address):
    if address == 0:
        return 'null'
    try:
        heap = address_of('g_tvGlobalHeap')
        start = number_at(address_of('TvHeapConfigurator::pStartAddress'), 8)
    except gdb.error:
        return 'no heap here'
    page = (address - start) >> PAGE_SHIFT
    if start == 0 or not 0 <= page < RANGE_PAGES:
        return 'malloc'
    if number_at(heap + PAGE_FLAGS_AT + page, 1) & 1 == 0:
        return 'page %d of the heap, not in use' % page
    page_address = start + (page << PAGE_SHIFT)
    record = heap + PAGE_RECORDS_AT + page * RECORD_SIZE
    if number_at(record + 4, 2, signed=True) == page:
        return describe_page_unit(address, page, page_address, record)
    return describe_block_unit(address, page, page_address)


def describe_page_unit(address, page, page_address, record):
    size = number_at(record, 2) << BLOCK_SHIFT
    free = free_units(number_at(record + 8, 8), number_at(record + 6, 2), number_at(record + 2, 2) & 1, size)
    return '%d-byte page pool, page %d, %s' % (
        size, page, unit_text(address - page_address, size, (1 << PAGE_SHIFT) // size, page_address, free))


def describe_block_unit(address, page, page_address):
    block = (address - page_address) >> BLOCK_SHIFT
    if block < BLOCKS_OF_DESCRIPTORS:
        return 'page %d, descriptor of block %d' % (page, (address - page_address) // RECORD_SIZE)
    descriptor = page_address + block * RECORD_SIZE
    pool = number_at(descriptor + 28, 2, signed=True)
    if not 0 < pool < POOLS or UNIT_SIZES[pool] == 0:
        return 'page %d, block %d, not in use' % (page, block)
    size = UNIT_SIZES[pool]
    first = page_address + (block << BLOCK_SHIFT)
    free = free_units(number_at(descriptor + 16, 8), number_at(descriptor + 24, 4),
                      number_at(descriptor + 30, 2) & 1, size)
    return '%d-byte pool, page %d, block %d, %s' % (
        size, page, block, unit_text(address - first, size, (1 << BLOCK_SHIFT) // size, first, free))


def free_units(first, count, linked, size):
    """Addresses of the free units: a list through their first words, or a run."""
    if not linked:
        return set(range(first, first + count * size, size)) if count else set()
    found = set()
    while first and first not in found and len(found) < count:
        found.add(first)
        try:
            first = number_at(first, 8)
        except gdb.MemoryError:
            break
    return found


def unit_text(offset, size, units, first, free):
    unit, within = divmod(offset, size)
    if unit >= units:
        return 'behind the last unit'
    text = 'unit %d' % unit
    if within:
        text += ' + %d' % within
    return text + ', free' if first + unit * size in free else text


# Printers ------------------------------------------------------------------------------


class VectorPrinter:
    """TvVector: its lengths, and its elements as children."""

    def __init__(self, value):
        self.record = value['m_data']['m_record']
        self.name = str(plain_type(value.type).template_argument(0))

    def to_string(self):
        name = 'TvVector<%s>' % self.name
        try:
            if not self.record:
                return name + ' without a record'
            length, physical, holders = (int(self.record[field])
                                         for field in ('logicalCnt', 'physicalCnt', 'refCount'))
        except gdb.MemoryError:
            return name + ', not readable'
        text = '%s of length %d, physical length %d' % (name, length, physical)
        # The empty record is everybody's: its count says nothing about this vector.
        return text if holders == 1 or physical == 0 else text + ', shared by %d' % holders

    def children(self):
        try:
            length = int(self.record['logicalCnt']) if self.record else 0
        except gdb.MemoryError:
            return
        for i in range(length):
            yield '[%d]' % i, self.record['array'][i]

    def display_hint(self):
        return 'array'


class StringPrinter:
    """TvStringA: text and code page."""

    HEADER = 40  # in front of the characters: holders, length, room, growth, code page

    def __init__(self, value):
        self.text = int(value['m_data']['m_data'])

    def to_string(self):
        if not self.text:
            return 'TvStringA without a text'
        header = self.text - self.HEADER
        try:
            holders, count, room = number_at(header, 4), number_at(header + 8, 8), number_at(header + 16, 8)
            page = number_at(header + 32, 4, signed=True)
            if count > room:
                return 'TvStringA, damaged: length %d in room for %d' % (count, room)
            length, more = cut(max(count - 1, 0))
            data = bytes_at(self.text, length)
        except gdb.MemoryError:
            return 'TvStringA, not readable'
        notes = ['code page %d' % page] if page else ['no code page']
        if holders > 1 and count:
            notes.append('shared by %d' % holders)
        return '%s%s (%s)' % (quoted_bytes(data, page), more, ', '.join(notes))


class WideStringPrinter:
    """CStdStr<wchar_t>: its characters, surrogates joined."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        try:
            address, count = owned_units(self.value)
            length, more = cut(count)
            return 'L' + quoted_units(wide_units(address, length)) + more
        except gdb.MemoryError:
            return 'CStdStr<wchar_t>, not readable'


class StatusPrinter:
    """Orna::ErrorStatus: name and number; a host's own numbers have no name here."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        number = int(self.value)
        for field in plain_type(self.value.type).fields():
            if field.enumval == number:
                return '%s (%d)' % (field.name, number)
        return 'status %d' % number


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter('TvOsBase')
    collection.add_printer('TvVector', '^TvVector<.*>$', VectorPrinter)
    collection.add_printer('TvStringA', '^TvString(A|T<char, TvStrHeaderA>)$', StringPrinter)
    collection.add_printer('CStdStr', '^CStdStr<wchar_t>$', WideStringPrinter)
    collection.add_printer('ErrorStatus', '^Orna::ErrorStatus$', StatusPrinter)
    return collection


def register(objfile=None):
    """For one library, or for all with None. Again is no harm: the newer printers hold."""
    gdb.printing.register_pretty_printer(objfile, printers(), replace=True)
    Text()
    Heap()


if __name__ == '__main__':
    register()
