// TvFileSystem.h - questions about files, the choice of a file stream, and path texts.
//
// TvFileSystem looks at the disk, TvPathMaker only at the text of a path.
#ifndef TV_FILE_SYSTEM_H
#define TV_FILE_SYSTEM_H

#include "TvExport.h"
#include "TvFileStreamBuf.h"
#include "TvStreamBuf.h"

#include <cstdint>
#include <cwchar>

#include <sys/stat.h>

/// Existence, access and size of files, and the stream that suits an access
/// mode.
///
/// What surprises: waccess(), wstat() and what rests on them (isFileExisting(),
/// getFileSize()) set the process's character-type locale to "UTF-8", where the
/// system knows one of that name. The operations of the second half are not
/// available on this platform and always give the result stated there,
/// isDirectory() included.
///
/// **Errors**: told by the result; only createFileBuf() throws. A name that
/// cannot be turned into a path counts as missing. **Memory**: see
/// createFileBuf(). **Threads**: one thread.
///
///     if (TvFileSystem::isFileExisting(L"codepage.map"))
///         stream = TvFileSystem::createFileBuf(L"codepage.map", TvIO::kAccessRead,
///                                              TvIO::kShareDenyNone, TvIO::kOpenExisting);
class TV_OSBASE_API TvFileSystem {
public:
    /// The C library's access(): 0, or -1 where `mode` (F_OK, R_OK, W_OK, X_OK)
    /// is refused.
    static int waccess(const wchar_t* path, int mode);

    /// The C library's stat(): 0, or -1 and `out` as it was.
    static int wstat(const wchar_t* path, struct stat* out);

    /// False for a directory, a block device or a socket, and for a null or empty
    /// path.
    static bool isFileExisting(const wchar_t* path);

    /// True when `path`, taken as UTF-8 whatever the locale, is no directory and
    /// allows `access`.
    static bool accessFile(const wchar_t* path, TvIO::AccessMode access);
    /// The same with a plain number for the mode.
    static bool accessFile(const wchar_t* path, std::uint32_t access)
    {
        return accessFile(path, static_cast<TvIO::AccessMode>(access));
    }

    /// Opens a file: a TvFileOStreamBuf with a cache of 16384 bytes when `access`
    /// includes writing, else a TvFileIStreamBuf.
    ///
    /// Null when the open gives a status. Where it would throw instead (a
    /// directory, an unknown disposition, ...) the result is a stream without a
    /// file. A null or empty path throws Orna::ErrorStatus 365. The caller frees
    /// the stream with delete or destoryFileIOStreamBuf().
    static TvFileStreamBuf* createFileBuf(const wchar_t* path, TvIO::AccessMode access, TvIO::ShareMode share,
                                          TvIO::CreationDisposition disposition);
    /// The same with plain numbers for the modes.
    static TvFileStreamBuf* createFileBuf(const wchar_t* path, std::uint32_t access, std::uint32_t share,
                                          std::uint32_t disposition)
    {
        return createFileBuf(path, static_cast<TvIO::AccessMode>(access), static_cast<TvIO::ShareMode>(share),
                             static_cast<TvIO::CreationDisposition>(disposition));
    }

    /// Size in bytes; all bits set when there is no such file.
    static std::uint64_t getFileSize(const wchar_t* path);

    /// @name Not available on this platform
    /// Nothing is done, no buffer is written, and the result is false or 0.
    /// @{

    /// Not available: false, of a directory too.
    static bool isDirectory(const wchar_t* path);
    /// Not available: 0, and no file is made.
    static int createFile(const wchar_t* path);
    /// Not available: 0, and the file stays.
    static int deleteFile(const wchar_t* path);
    /// Not available: 0, and the file keeps its name.
    static int renameFile(const wchar_t* from, const wchar_t* to);
    /// Not available: 0.
    static std::uint64_t getCreationTime(const wchar_t* path);
    /// Not available: 0.
    static std::uint64_t getAccessingTime(const wchar_t* path);
    /// Not available: 0.
    static std::uint64_t getModificationTime(const wchar_t* path);
    /// Not available: 0. Take TvStreamBuf::length().
    static std::uint64_t getFileSize(void* handle);
    /// Not available: 0, and no directory is made.
    static int createDirectory(const wchar_t* path);
    /// Not available: 0, and the directory stays.
    static int deleteDirectory(const wchar_t* path);
    /// Not available: 0, and the current directory stays.
    static int setCurrentDirectory(const wchar_t* path);
    /// Not available: 0, and `out` stays as it is.
    static int getCurrentDirectory(wchar_t* out);
    /// Not available: 0, and `out` stays as it is.
    static int getOSDirectory(wchar_t* out);
    /// Not available: 0, and `out` stays as it is.
    static int getSystemDirectory(wchar_t* out);
    /// Not available: 0, and `out` stays as it is.
    static int getTempDirectory(wchar_t* out);
    /// Not available: 0, and `out` stays as it is.
    static int getRunDirectory(wchar_t* out);
    /// Not available: 0.
    static std::uint64_t getDiskAvailableSpace(const wchar_t* path);
    /// Not available: 0.
    static std::uint64_t getDiskFreeSpace(const wchar_t* path);
    /// Not available: 0.
    static std::uint64_t getDiskTotalSpace(const wchar_t* path);

    /// @}
};

/// Checks and splits path texts. Slash and backslash both separate.
///
/// What surprises: buffers come without a size, so each operation says how many
/// wide characters it may write, the terminating 0 included. getFullFileName()
/// of a name without an extension is the *whole path*.
///
/// **Errors**: told by the result (false or 0). **Memory**: nothing is
/// allocated.
/// **Threads**: any.
///
///     wchar_t extension[8];
///     if (TvPathMaker::getExtFileName(extension, L"/plans/house.dwg") == 4)
///         ...                                                     // ".dwg"
class TV_OSBASE_API TvPathMaker {
public:
    /// False for `* ? < > | "`, for a colon that is not the second character, and
    /// for two separators in a row. An empty path is valid, null is not.
    static bool isValidPath(const wchar_t* path);

    /// True; nothing is written.
    static bool getAbsolutePath(wchar_t* out, unsigned int count, const wchar_t* path);

    /// Writes the drive ("C:") to `out`, which has room for 64 characters. The length of what was
    /// written, 0 when the path has none or it does not fit.
    static int getDriverName(wchar_t* out, const wchar_t* path);
    /// The same with the directory, its last separator included. Room: 260 characters.
    static int getParentDir(wchar_t* out, const wchar_t* path);
    /// The same with the extension, its dot included. Room: 8 characters.
    static int getExtFileName(wchar_t* out, const wchar_t* path);

    /// The name without directory and extension. Room: 1024 characters. `rest` is
    /// not used.
    static bool getFileName(const wchar_t* path, wchar_t* out, const wchar_t** rest);

    /// The name with its extension where it has both, else the whole path, as
    /// meant. Room: 2047 characters, and no less than the path takes.
    static bool getFullFileName(const wchar_t* path, wchar_t* out);

    /// Splits a path into parts with the room given for each; a null part with a
    /// count of 0 is left out. False for a null or empty path and when a part
    /// does not fit.
    static bool splitPath(const wchar_t* path, wchar_t* drive, std::size_t driveCount, wchar_t* dir,
                          std::size_t dirCount, wchar_t* fname, std::size_t fnameCount, wchar_t* ext,
                          std::size_t extCount);
};

#endif
