# Run by class-layouts in gdb, on the object file with every public class; beside it lie
# `names` (of classes and namespaces), `classes` (g++'s class dump) and `slots` (place in
# the virtual table and full name of each virtual function).
import re

import gdb

NAMES = set(open('names').read().split())


def is_public(name):
    first = re.match(r'\w*', name).group()
    return first in NAMES and '<lambda' not in name and not name.endswith('*')


def all_types():
    listing = gdb.execute('info types -q', to_string=True)
    found = set()
    for line in listing.splitlines():
        match = re.match(r'(?:\d+:)?\s+(?!typedef )(?:enum )?(.*?);?$', line)
        if match and is_public(match.group(1)):
            found.add(match.group(1))
    return sorted(found)


def signatures():
    """(class, slot) -> name and parameters, without the class."""
    found = {}
    for line in open('slots'):
        slot, name = line.rstrip('\n').split(' ', 1)
        owner, function = re.match(r'(.*?)::([~\w]+\(.*)$', name).groups()
        found[owner, int(slot)] = function
    return found


def virtual_tables():
    """class -> (owner, function) of each slot, None where the slot is empty."""
    tables = {}
    slots = None
    for line in open('classes'):
        if line.startswith('Vtable for '):
            name = line[len('Vtable for '):].strip()
            slots = tables.setdefault(name, [])
        elif slots is not None:
            entry = re.match(r'(\d+)\s+(?:\(int \(\*\)\(\.\.\.\)\))?(.*)$', line)
            if not entry:
                if not line.strip():
                    slots = None
            elif int(entry.group(1)) >= 16:
                slots.append(entry.group(2).strip())
    return tables


def data_fields(kind):
    return [field for field in kind.fields() if hasattr(field, 'bitpos')]


def bases(kind):
    return [field.type for field in data_fields(kind) if field.is_base_class]


def pure_name(kind, slot, known):
    while kind is not None:
        if (kind.name, slot) in known:
            return known[kind.name, slot]
        above = bases(kind)
        kind = above[0] if above else None
    return '?'


def slot_text(kind, slot, entry, known):
    if entry == '0':
        return 'destructor, none while abstract'
    if entry == '__cxa_pure_virtual':
        return 'pure ' + pure_name(kind, slot, known)
    owner, function = entry.rsplit('::', 1)
    if function.startswith('~'):
        return entry + '()'
    return '%s::%s' % (owner, known.get((owner, slot), function))


def type_text(kind):
    return re.sub(r'\b(class|struct|union|enum) ', '', str(kind))


def print_enum(name, kind):
    print('enum %s, %d bytes' % (name, kind.sizeof))
    for field in kind.fields():
        print('    %-4d %s' % (field.enumval, field.name))
    print()


def print_class(name, kind, table, known):
    fields = data_fields(kind)
    if name.startswith('TvDetail') and not fields:
        return
    print('class %s, %d bytes' % (name, kind.sizeof))
    for field in fields:
        at = field.bitpos // 8
        if field.is_base_class:
            print('    %-8d base %s' % (at, type_text(field.type.strip_typedefs())))
        elif field.name and field.name.startswith('_vptr'):
            print('    %-8d virtual table' % at)
        else:
            print('    %-8d %s: %s' % (at, field.name, type_text(field.type.strip_typedefs())))
    for slot, entry in enumerate(table):
        print('    slot %-3d %s' % (slot, slot_text(kind, slot, entry, known)))
    print()


def print_all():
    tables = virtual_tables()
    known = signatures()
    for name in all_types():
        kind = gdb.lookup_type(name).strip_typedefs()
        if kind.code == gdb.TYPE_CODE_ENUM:
            print_enum(name, kind)
        elif kind.code in (gdb.TYPE_CODE_STRUCT, gdb.TYPE_CODE_UNION):
            print_class(name, kind, tables.get(name, []), known)


print_all()
