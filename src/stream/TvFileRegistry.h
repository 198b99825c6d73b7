// TvFileRegistry.h - the names of the files that this process holds open exclusively.
//
// POSIX record locks never conflict within a process; this list is what refuses a second
// exclusive open here. The names are those given to open(), compared as they are spelled.
#ifndef TV_FILE_REGISTRY_H
#define TV_FILE_REGISTRY_H

class TvFileStreamBufImpl;

namespace TvFileRegistry {

bool contains(const wchar_t* name);

/// False when there is no memory for the entry.
bool add(const TvFileStreamBufImpl& stream, const wchar_t* name);

/// Removes the first entry of that name.
void remove(const TvFileStreamBufImpl& stream, const wchar_t* name);

/// True when the registry holds the names of the streams that registered, each of which is
/// open, and nothing else. Always true in builds without TV_CHECK_STRUCTURES.
bool isSound();

/// Ends the process when the registry is not sound; nothing without TV_CHECK_STRUCTURES.
void check();

} // namespace TvFileRegistry

#endif
