/* The library's documents, stores and local updates for hosts in any language: JSON in, JSON out. */
#ifndef VARNHELT_VRNTJSON_H
#define VARNHELT_VRNTJSON_H

#include <stdint.h> // NOLINT(modernize-deprecated-headers): for hosts in C

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Carries out one request. Any thread may call, several at the same time; not from a DllMain. The first call loads what
 * the library needs from its folder, which then stays in the process, as the library itself does.
 *
 * pszRequest   A JSON object in UTF-8: "command" as vrnt's command line has it ("query policy", "direct alias", "store
 *              policy", "update"), its options by their names without dashes ("dir", "label": [...], "dry-run": true),
 *              "path" for the argument that has no name, and "input": the records of a store. At most 16 MiB. Give full
 *              paths: others are taken from the current folder of the process.
 * ppszAnswer   Receives what vrnt prints for it with --json: a JSON object in ASCII, the caller's, for VrntJson_Free.
 *              A null pointer when memory ran out. "why" says why a request failed; "notices", where there are some,
 *              what vrnt writes to stderr besides.
 *
 * Returns the result code; its top bit marks failure. Besides those of the library: 0x80040204 for a request that is
 * none or is refused before the library is asked, and without ppszAnswer; 0x80040205 when Varnhelt.dll cannot be
 * loaded; 0x80040206 when memory ran out, which can be after the request was carried out; 0x80040201 for a local update
 * that is to be "strict" and was not done whole.
 */
uint32_t __cdecl VrntJson_Call(const char* pszRequest, char** ppszAnswer);

/** Gives an answer back. Nothing happens for a null pointer. Any thread may do it, once for each answer. */
void __cdecl VrntJson_Free(char* pszAnswer);

/** The version of the library: "1.0.0". The text is the library's. */
const char* __cdecl VrntJson_Version(void);

#ifdef __cplusplus
}
#endif

#endif
