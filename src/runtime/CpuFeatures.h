// CpuFeatures.h - CPU_FEATURE_ACTIVE(name): what the C library found when the process started.
//
// Asking the processor itself takes microseconds a question in a virtual machine, and the
// compiler's own test asks many while the library is loaded.
#ifndef TV_CPU_FEATURES_H
#define TV_CPU_FEATURES_H

#if defined(__x86_64__)
#if defined(__clang__) && !defined(_Bool)
// The header speaks C, of which this compiler forgets the name when extensions are off.
#define _Bool bool // NOLINT
#include <sys/platform/x86.h>
#undef _Bool
#else
#include <sys/platform/x86.h>
#endif
#endif

#endif
