// tvbase heap - the library's heap: what it holds, and how it does beside malloc.
#include "Command.h"

#include "HeapReplay.h"
#include "HeapStats.h"
#include "Json.h"

#include <cinttypes>
#include <cstdio>
#include <memory>
#include <string>

namespace {

struct HeapOptions {
    std::string trace;
    int rounds = 11;
};

// False when the trace has bad lines, which it complains of.
bool readTrace(const std::string& name, Shared& shared, HeapTrace& trace)
{
    trace = readHeapTrace(name);
    for (const std::string& problem : trace.problems)
        complain(problem);
    if (trace.badLines > trace.problems.size())
        complain(name + ": " + std::to_string(trace.badLines - trace.problems.size()) + " bad lines more");
    if (trace.badLines == 0)
        return true;
    shared.status = kExitFailed;
    return false;
}

std::string hex(std::uintptr_t value)
{
    char text[32];
    std::snprintf(text, sizeof text, "0x%" PRIxPTR, value);
    return text;
}

std::size_t blocksInUse(const HeapUse& use)
{
    std::size_t blocks = 0;
    for (const PoolUse& pool : use.pools)
        blocks += pool.holders;
    return blocks;
}

void printPool(const PoolUse& pool)
{
    std::printf("%9zu  %14d  %6zu  %12zu  %12zu\n", pool.unitSize, pool.unitsPerHolder, pool.holders,
                pool.unitsInUse, pool.unitsInUse * pool.unitSize);
}

void printStats(const HeapUse& use)
{
    if (use.rangeStart == 0)
        std::printf("range     none could be reserved; all memory comes from malloc\n");
    else
        std::printf("range     8 GiB from %s\n", hex(use.rangeStart).c_str());
    std::printf("pages     %zu of %zu in use, %zu with blocks, %zu with page units\n",
                use.blockPages + use.unitPages, mostHeapPages(), use.blockPages, use.unitPages);
    std::printf("blocks    %zu in use, %zu free, %zu free without access\n", blocksInUse(use), use.freeBlocks,
                use.closedBlocks);
    std::printf("resident  %zu bytes\n", use.residentBytes);
    if (use.requestsToMalloc != 0)
        std::printf("malloc    serves the next %zu requests for a page\n", use.requestsToMalloc);
    std::printf("\nunit size  units in block  blocks  units in use  bytes in use\n");
    for (const PoolUse& pool : use.pools)
        printPool(pool);
    if (use.pagePools.empty())
        return;
    std::printf("\nunit size   units in page   pages  units in use  bytes in use\n");
    for (const PoolUse& pool : use.pagePools)
        printPool(pool);
}

void addPools(JsonWriter& json, const char* key, const char* unitsKey, const char* holdersKey,
              const std::vector<PoolUse>& pools)
{
    json.beginArray(key);
    for (const PoolUse& pool : pools) {
        json.beginObject();
        json.number("unitSize", pool.unitSize);
        json.number(unitsKey, pool.unitsPerHolder);
        json.number(holdersKey, pool.holders);
        json.number("unitsInUse", pool.unitsInUse);
        json.number("bytesInUse", pool.unitsInUse * pool.unitSize);
        json.end();
    }
    json.end();
}

void printStatsAsJson(const HeapUse& use)
{
    JsonWriter json;
    json.beginObject();
    use.rangeStart != 0 ? json.number("rangeStart", use.rangeStart) : json.null("rangeStart");
    json.number("blockPages", use.blockPages);
    json.number("unitPages", use.unitPages);
    json.number("blocksInUse", blocksInUse(use));
    json.number("freeBlocks", use.freeBlocks);
    json.number("freeBlocksWithoutAccess", use.closedBlocks);
    json.number("residentBytes", use.residentBytes);
    json.number("requestsToMalloc", use.requestsToMalloc);
    addPools(json, "pools", "unitsInBlock", "blocks", use.pools);
    addPools(json, "pagePools", "unitsInPage", "pages", use.pagePools);
    json.end();
    json.print();
}

void showStats(const HeapOptions& options, Shared& shared)
{
    HeapUse use{};
    if (options.trace.empty()) {
        use = readHeapUse();
    } else {
        HeapTrace trace;
        if (!readTrace(options.trace, shared, trace))
            return;
        passFirstHeapRequests();
        replayOnHeap(trace, [&use] { use = readHeapUse(); });
    }
    shared.json ? printStatsAsJson(use) : printStats(use);
}

std::string bytesOrUnknown(std::int64_t bytes) { return bytes < 0 ? "-" : std::to_string(bytes); }

void printResult(const char* name, const ReplayResult& result)
{
    std::printf("%-6s  %12.1f  %16s  %15s\n", name, result.nanoseconds,
                bytesOrUnknown(result.residentPeak).c_str(), bytesOrUnknown(result.residentEnd).c_str());
}

void addResult(JsonWriter& json, const char* name, const ReplayResult& result)
{
    json.beginObject(name);
    json.number("nanosecondsPerOperation", result.nanoseconds);
    result.residentPeak < 0 ? json.null("residentAtPeak")
                            : json.number("residentAtPeak", result.residentPeak);
    result.residentEnd < 0 ? json.null("residentAtEnd") : json.number("residentAtEnd", result.residentEnd);
    json.end();
}

void printReplayAsJson(const HeapTrace& trace, const ReplayResults& results)
{
    JsonWriter json;
    json.beginObject();
    json.number("operations", trace.steps.size());
    json.number("bytesAtPeak", trace.peakBytes);
    json.number("bytesAtEnd", trace.endBytes);
    addResult(json, "heap", results.heap);
    addResult(json, "malloc", results.malloc);
    json.end();
    json.print();
}

void complainOfRefused(const char* name, const ReplayResult& result, Shared& shared)
{
    if (result.refused == 0)
        return;
    complain(std::string(name) + " had no memory for " + std::to_string(result.refused) + " requests");
    shared.status = kExitFailed;
}

void showReplay(const HeapOptions& options, Shared& shared)
{
    HeapTrace trace;
    if (!readTrace(options.trace, shared, trace))
        return;
    if (trace.steps.empty())
        throw CommandError(options.trace + ": no operations");
    passFirstHeapRequests();
    const ReplayResults results = replayOnBothHeaps(trace, options.rounds);
    if (shared.json) {
        printReplayAsJson(trace, results);
    } else {
        std::printf("%zu operations, %zu bytes asked for at the peak, %zu at the end\n\n", trace.steps.size(),
                    trace.peakBytes, trace.endBytes);
        std::printf("        ns/operation  resident at peak  resident at end\n");
        printResult("heap", results.heap);
        printResult("malloc", results.malloc);
    }
    complainOfRefused("the heap", results.heap, shared);
    complainOfRefused("malloc", results.malloc, shared);
}

void addStats(CLI::App& heap, Shared& shared)
{
    const auto options = std::make_shared<HeapOptions>();
    CLI::App* command = heap.add_subcommand("stats", "Show the pools of the heap and what is in use");
    command->add_option("TRACE", options->trace, "Replay this first, as heap replay does, once")
        ->type_name("FILE");
    addJsonOption(*command, shared);
    command->footer("Example:\n  tvbase heap stats requests.trace");
    command->callback([options, &shared] { showStats(*options, shared); });
}

void addReplay(CLI::App& heap, Shared& shared)
{
    const auto options = std::make_shared<HeapOptions>();
    CLI::App* command =
        heap.add_subcommand("replay", "Replay requests for memory on the heap and on malloc, and time both");
    command->add_option("TRACE", options->trace, "Lines of a ID SIZE, r ID SIZE and f ID (-: standard input)")
        ->required()
        ->type_name("FILE");
    command->add_option("--rounds", options->rounds, "Replays on each of the two, in turn (11)")
        ->check(CLI::Range(1, 1000000).description(""))
        ->type_name("N");
    addJsonOption(*command, shared);
    command->footer("a: allocate, r: resize, f: free; # begins a comment.\n"
                    "\n"
                    "Example:\n  tvbase heap replay requests.trace");
    command->callback([options, &shared] { showReplay(*options, shared); });
}

} // namespace

void addHeap(CLI::App& app, Shared& shared)
{
    CLI::App* heap = app.add_subcommand("heap", "Look at the library's heap, and time it beside malloc");
    heap->require_subcommand(1);
    heap->footer("Example:\n  tvbase heap replay requests.trace");
    addStats(*heap, shared);
    addReplay(*heap, shared);
}
