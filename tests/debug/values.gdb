# What a user types at a stop in show(); the answers are in values.out.
python
def as_type_of(name):
    garbage = gdb.parse_and_eval('&values.garbage')
    return garbage.cast(gdb.parse_and_eval(name).type.pointer()).dereference()
end
echo empty:\040
output values.empty
echo \nthree:\040
output values.three
echo \nwide:\040
output values.wide
echo \nunits joined:\040
output $tv_text(values.wide)
echo \nunits at a pointer:\040
output $tv_text(values.wide.m_data.m_record->array, 3)
echo \nno text:\040
output values.noText
echo \nlatin:\040
output values.latin
echo \njapanese:\040
output values.japanese
echo \ndamaged:\040
output values.damaged
echo \ntitle:\040
output values.title
echo \ntitle's units:\040
output $tv_text(values.title)
echo \nmissing:\040
output values.missing
echo \nhost's:\040
output values.hosts
echo \nno vector:\040
python print(as_type_of('values.three'), end='')
echo \nno string:\040
python print(as_type_of('values.latin'), end='')
echo \nunit:\040
output $tv_heap(values.unit)
echo \nwithin it:\040
output $tv_heap((char*)values.unit + 5)
echo \nfreed unit:\040
output $tv_heap(values.freedUnit)
echo \nnever used:\040
output $tv_heap((char*)values.unit + 24 * 9 + 1)
echo \nrest of a block:\040
output $tv_heap((char*)values.unit + 24 * 170)
echo \ndescriptors:\040
output $tv_heap((char*)((long)values.unit & ~0xFFFFF) + 32 * 7)
echo \nblock without a pool:\040
output $tv_heap((char*)((long)values.unit & ~0xFFFFF) + 4096 * 200)
echo \npage not in use:\040
output $tv_heap((char*)((long)values.unit & ~0xFFFFF) - 100 * 0x100000)
echo \nfree pages:\040
output $tv_heap((char*)values.pages + 8192)
echo \npages:\040
output $tv_heap(values.pages)
echo \nforeign:\040
output $tv_heap(values.foreign)
echo \nnull:\040
output $tv_heap(0)
echo \n
