#include "runtime/TvThrow.h"

void tvThrowMessage(const wchar_t* message) { throw message; }

void tvThrowStatus(Orna::ErrorStatus status) { throw status; }
