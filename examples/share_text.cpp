// Narrow text that knows its code page: copies share it until one of them is written to.
#include <TvOsBase.h>

#include <cstdio>
#include <cstring>

namespace {

void show(const char* name, const TvStringA& text)
{
    std::printf("%-6s \"%s\", %d bytes in code page %d\n", name, text.constStr(),
                static_cast<int>(text.numOfChars()), text.header()->codepage);
}

} // namespace

int main()
{
    tvPlatformSetACP(1252);   // what the environment would say otherwise
    TvStringA layer("walls");
    TvStringA copy(layer);
    std::printf("%s text\n", layer.constStr() == copy.constStr() ? "one" : "two");

    if (char* text = copy.rawStr())
        text[0] = 'W';
    copy.setCodepage(932);
    std::printf("%s text\n", layer.constStr() == copy.constStr() ? "one" : "two");
    show("layer", layer);
    show("copy", copy);

    if (char* room = copy.getBuffer(20)) {
        std::strcpy(room, "Walls, load-bearing");
        copy.releaseBuffer(-1);
    }
    show("copy", copy);

    copy.setEmpty();          // and the code page is forgotten
    show("copy", copy);
}
