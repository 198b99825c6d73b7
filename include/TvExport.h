// TvExport.h - what is public in libTvOsBase, and which version this is.
#ifndef TV_EXPORT_H
#define TV_EXPORT_H

/// Marks a class, function or variable that libTvOsBase exports.
#define TV_OSBASE_API __attribute__((visibility("default")))

/// Marks a private member of an exported class that is not exported.
#define TV_LOCAL __attribute__((visibility("hidden")))

/// The version of these headers, for `#if`: it rises when compiled modules break.
#define TV_OSBASE_VERSION_MAJOR 1
/// Rises when something is added.
#define TV_OSBASE_VERSION_MINOR 0
/// Rises when nothing is added and nothing breaks.
#define TV_OSBASE_VERSION_PATCH 0

#endif
