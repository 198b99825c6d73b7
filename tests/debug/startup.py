# What runs of libTvOsBase when a program starts, as gdb sees it. The objects are known by
# their destructors: each is registered when the object has been built. Between two of them it
# is looked at what the earlier ones have changed.
import re

import gdb

OBJECTS = (
    "TvCharCategory::s_instance",
    "g_codepages",
    "TvCharMapper::m_MapFile",
    "g_mapCP2Bigfont",
    "TvFCvtAllocator::s_instance",
    "TvFileStreamBufImpl::m_cstrAlreadyOpenFiles",
    "g_tvGlobalHeap",
)
CONSTANTS = ("g_appUnits", "TvStrHeaderA::sm_EmptyStrA", "TvMemDataHeader::sm_EmptyHeader", "gEmptyVectorData")
TABLE = "OrCodePage::s_arrUserDefinedDBCS"
TABLE_MARK = b"mark"


def address(symbol):
    return int(gdb.parse_and_eval(f"(unsigned long) &'{symbol}'"))


def read(at, size):
    return gdb.selected_inferior().read_memory(at, size).tobytes()


def number(at, size=8):
    return int.from_bytes(read(at, size), "little")


def symbol_at(at):
    """The variable at an address, without its namespace. A program may have the library's own copy."""
    shown = gdb.execute(f"info symbol {at}", to_string=True)
    name = shown.split(" in section ")[0].split("[abi:")[0].split(".lto_priv")[0]
    return re.sub(r"^(\(anonymous namespace\)|TvDetail)::", "", name)


def changes():
    """What the library's own start has changed up to now."""
    lists = number(address("TvCharCategory::s_instance"))
    return ", ".join((
        "table " + ("as it was" if read(address(TABLE), len(TABLE_MARK)) == TABLE_MARK else "cleared"),
        f"{number(lists + 4, 4) if lists else 0} characters of left punctuation",
        ("with" if number(address("G_Pow5Data")) else "no") + " powers of five",
        "range " + ("reserved" if number(address("TvHeapConfigurator::pStartAddress")) else "not reserved"),
    ))


def constants():
    """A constant's fields behind its count of holders, which differs from run to run."""
    return {name: read(address(name) + 4, 12) for name in CONSTANTS}


class Registered(gdb.Breakpoint):
    seen = []

    def stop(self):
        name = symbol_at(int(gdb.parse_and_eval("(unsigned long) $rsi")))
        if name in OBJECTS:
            self.seen.append(f"{name}: {changes()}")
        return False


gdb.execute("set breakpoint pending on")
gdb.execute("catch load libTvOsBase")
gdb.execute("run", to_string=True)
at_load = constants()
gdb.selected_inferior().write_memory(address(TABLE), TABLE_MARK)
Registered("__cxa_atexit")
gdb.execute("tbreak main")
gdb.execute("continue", to_string=True)
print("@startup")
print("\n".join(Registered.seen))
for constant, value in constants().items():
    print(f"{constant}: {'as when it was loaded' if value == at_load[constant] else 'changed'}")
print("@end")
gdb.execute("kill", to_string=True)
