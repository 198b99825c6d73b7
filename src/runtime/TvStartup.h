// TvStartup.h - in which order the library's static objects are built.
//
// Every static object with a constructor or destructor takes its step from here:
//
//     Registry g_registry __attribute__((init_priority(TvStartup::kCodePageRegistry)));
//
// so that neither link order nor link-time optimisation changes the order. Destruction
// runs the other way round. The heap is built last: what a step before it allocates
// comes from malloc, and every free path accepts that. An object that is a constant until
// it is changed needs no step: its turn cannot be told from an earlier one.
#ifndef TV_STARTUP_H
#define TV_STARTUP_H

namespace TvStartup {

constexpr int kHeapRange = 201; // builds nothing: the heap's range goes after all destructors
constexpr int kUnitSettings = 210;
constexpr int kUserDefinedTable = 220; // OrCodePage
constexpr int kCharCategories = 230;
constexpr int kCodePageRegistry = 240;
constexpr int kMapFileName = 241;
constexpr int kBigFonts = 242;
constexpr int kEmptyString = 250;
constexpr int kBigNumbers = 260;
constexpr int kEmptyBuffer = 270;
constexpr int kEmptyVector = 280;
constexpr int kOpenFiles = 290;
constexpr int kGlobalHeap = 300;

// All of them, in order.
constexpr int kSteps[] = {kHeapRange,   kUnitSettings, kUserDefinedTable, kCharCategories, kCodePageRegistry,
                          kMapFileName, kBigFonts,     kEmptyString,      kBigNumbers,     kEmptyBuffer,
                          kEmptyVector, kOpenFiles,    kGlobalHeap};

} // namespace TvStartup

#endif
