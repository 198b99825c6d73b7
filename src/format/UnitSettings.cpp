#include "TvUnits.h"

// A constant, so it is right before any static constructor runs.
constinit OrnaAppUnitSets g_appUnits;

void initOsBaseUnits(OrnaAppUnitSets& units) { g_appUnits = units; }
