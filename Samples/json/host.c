/* Asks VrntJson.dll, which is beside this program or in PATH, and prints the answer:
 *
 *     host "{\"command\": \"query policy\", \"controller\": \"eFirewall\"}"
 *
 * Build it with any C compiler; only the header of the SDK is needed:
 *
 *     x86_64-w64-mingw32-gcc -I SDK/include host.c -o host.exe
 *
 * Exit status: 0 for a result code of success, 1 for a failure, 2 for a wrong call or without the library.
 */
#include <Varnhelt/VrntJson.h>

#include <stdio.h>
#include <windows.h>

typedef uint32_t(__cdecl* Call)(const char*, char**);
typedef void(__cdecl* Free)(char*);

int main(int argc, char** argv)
{
    HMODULE library = LoadLibraryA("VrntJson.dll");
    Call call = library != NULL ? (Call)(void*)GetProcAddress(library, "VrntJson_Call") : NULL;
    Free giveBack = library != NULL ? (Free)(void*)GetProcAddress(library, "VrntJson_Free") : NULL;
    char* answer = NULL;
    uint32_t result;
    if (argc != 2) {
        fputs("usage: host REQUEST\n", stderr);
        return 2;
    }
    if (call == NULL || giveBack == NULL) {
        fprintf(stderr, "host: no VrntJson.dll: error %lu\n", GetLastError());
        return 2;
    }
    result = call(argv[1], &answer);
    puts(answer != NULL ? answer : "out of memory");
    giveBack(answer);
    return result >> 31; /* the top bit marks failure */
}
