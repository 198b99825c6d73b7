// SingleByteTables.h - the UTF-16 units of the bytes 0x80 to 0xFF of each single-byte code
// page; 0 = no character.
#ifndef TV_SINGLE_BYTE_TABLES_H
#define TV_SINGLE_BYTE_TABLES_H

/// No characters. One object: conversions tell by its address that a code page has no
/// single-byte table of its own.
extern const unsigned short g_emptyCodeTable[128];

/// Every byte as itself.
extern const unsigned short g_undefinedTable[128];

extern const unsigned short g_iso8859_1Table[128];
extern const unsigned short g_iso8859_2Table[128];
extern const unsigned short g_iso8859_3Table[128];
extern const unsigned short g_iso8859_4Table[128];
extern const unsigned short g_iso8859_5Table[128];
extern const unsigned short g_iso8859_6Table[128];
extern const unsigned short g_iso8859_7Table[128];
extern const unsigned short g_iso8859_8Table[128];
extern const unsigned short g_iso8859_9Table[128];
extern const unsigned short g_dos437Table[128];
extern const unsigned short g_dos850Table[128];
extern const unsigned short g_dos852Table[128];
extern const unsigned short g_dos855Table[128];
extern const unsigned short g_dos857Table[128];
extern const unsigned short g_dos860Table[128];
extern const unsigned short g_dos861Table[128];
extern const unsigned short g_dos863Table[128];
extern const unsigned short g_dos864Table[128];
extern const unsigned short g_dos865Table[128];
extern const unsigned short g_dos866Table[128];
extern const unsigned short g_dos869Table[128];
extern const unsigned short g_macRomanTable[128];
extern const unsigned short g_ansi1250Table[128];
extern const unsigned short g_ansi1251Table[128];
extern const unsigned short g_ansi1252Table[128];
extern const unsigned short g_ansi1253Table[128];
extern const unsigned short g_ansi1254Table[128];
extern const unsigned short g_ansi1255Table[128];
extern const unsigned short g_ansi1256Table[128];
extern const unsigned short g_ansi1257Table[128];
extern const unsigned short g_ansi874Table[128];
extern const unsigned short g_ansi932Table[128];

#endif
