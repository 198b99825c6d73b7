// Any bytes as operations on a file through one of the three kinds of stream, beside a plain
// model of it. Byte 0 chooses the kind; the file lies in memory.
#include "FileTraffic.h"
#include "FuzzInput.h"
#include "MemoryFile.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

void run(Choices& choices, const StreamChoices& streamChoices, const MemoryFile& file,
         TvFileStreamBufImpl& stream, bool setsBytes)
{
    require(hasFile(stream));
    FileTraffic traffic(streamChoices, stream, setsBytes);
    while (!choices.isEmpty())
        requireNothing(traffic.step());
    stream.close();
    require(file.content() == traffic.bytes());
}

void runMapped(Choices& choices, StreamChoices streamChoices)
{
    const std::string content = streamChoices.bytes(streamChoices.size(300000));
    const MemoryFile file(content);
    const auto stream = openIn(file.path());
    require(hasFile(*stream));
    MappedFileTraffic traffic(streamChoices, *stream, content);
    while (!choices.isEmpty())
        requireNothing(traffic.step());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Choices choices(data, size);
    const StreamChoices streamChoices([&](std::uint32_t n) { return choices.below(n); });
    const std::uint32_t kind = choices.below(3);
    if (kind == 2) {
        runMapped(choices, streamChoices);
        return 0;
    }
    const MemoryFile file;
    if (kind == 0)
        run(choices, streamChoices, file, *openFile(file.path()), true);
    else
        run(choices, streamChoices, file, *openOut(file.path()), false);
    return 0;
}
