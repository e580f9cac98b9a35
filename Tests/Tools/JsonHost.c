/* A host in C with a separate run time. With a request it prints the answer. Without one it makes requests good and bad,
   from one thread and from many: it needs a registered product that has a policy with eFirewall and an empty threat
   table, prints what is wrong, and leaves with 0 when nothing is. */

#include <VrntJson.h>

#include <fcntl.h>
#include <io.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <windows.h>

enum
{
    Threads = 8,
    Rounds = 40
};

static uint32_t(__cdecl* s_pfnCall)(const char*, char**);
static void(__cdecl* s_pfnFree)(char*);
static LONG s_lFaults = 0;

static void Expect(const char* szRequest, uint32_t ulExpected, const char* szPart)
{
    char* szAnswer = (char*)1;
    const uint32_t ulResult = s_pfnCall(szRequest, &szAnswer);
    if (ulResult != ulExpected || szAnswer == NULL || strstr(szAnswer, szPart) == NULL) {
        printf("%.100s: 0x%08x and %.500s\n", szRequest ? szRequest : "(null)", (unsigned)ulResult, szAnswer);
        InterlockedIncrement(&s_lFaults);
    }
    s_pfnFree(szAnswer);
}

/* A text of a size, that begins with szStart and goes on with szRepeat. */
static char* Long(size_t uSize, const char* szStart, const char* szRepeat)
{
    char* szText = malloc(uSize + 1);
    size_t uAt = strlen(szStart);
    memcpy(szText, szStart, uAt);
    for (; uAt + strlen(szRepeat) <= uSize; uAt += strlen(szRepeat)) {
        memcpy(szText + uAt, szRepeat, strlen(szRepeat));
    }
    szText[uAt] = 0;
    return szText;
}

static void ExpectLong(size_t uSize, const char* szStart, const char* szRepeat, const char* szPart)
{
    char* szText = Long(uSize, szStart, szRepeat);
    Expect(szText, 0x80040204, szPart);
    free(szText);
}

static void RefuseWhatIsNoRequest(void)
{
    static const struct
    {
        const char* szRequest;
        const char* szWhy;
    } aRow[] = {
        {NULL, "there is no request"},
        {"", "not JSON"},
        {"[]", "a request is an object"},
        {"{\"command\": 1}", "a request is an object"},
        {"{\"command\": \"query policy\"", "not JSON (line 1, column"},
        {"{\"command\": \"query \xff\xfe\"}", "not JSON"},
        {"{\"command\": \"query policy\", \"command\": \"update\"}", "occurs twice"},
        {"{\"command\": \"format\"}", "there are query, store, direct, update"},
        {"{\"command\": \"query\"}", "there are service-units, policy"},
        {"{\"command\": \"query policy policy\"}", "is not a command"},
        {"{\"command\": \"query key-config\"}", "\\\"dir\\\" is missing"},
        {"{\"command\": \"query key-config\", \"dir\": true}", "must be a text"},
        {"{\"command\": \"query key-config\", \"dir\": \"\"}", "an empty path"},
        {"{\"command\": \"query key-config\", \"dir\": \"C:\\u0000\"}", "null character"},
        {"{\"command\": \"query policy\", \"controler\": 1}", "there are controller"},
        {"{\"command\": \"query threat-name\", \"id\": 1, \"engine\": \"x\"}", "one of orkap, elmap"},
        {"{\"command\": \"query threat-description\", \"id\": -1}", "whole number"},
        {"{\"command\": \"query threat-description\", \"id\": 4294967296}", "number of 32 bits"},
        {"{\"command\": \"update\", \"path\": \"x\", \"dry-run\": 1}", "true or false"},
        {"{\"command\": \"update\", \"path\": \"x\", \"undo\": \"y\", \"dry-run\": true}", "cannot be given together"},
        {"{\"command\": \"store policy\"}", "\\\"input\\\" is missing"},
        {"{\"command\": \"store policy\", \"input\": [1]}", "[0] must be an object"},
        {"{\"command\": \"store policy\", \"input\": {\"result\": \"0x80040201\", \"data\": []}}", "that failed"},
    };
    for (size_t i = 0; i < sizeof aRow / sizeof *aRow; ++i) {
        Expect(aRow[i].szRequest, 0x80040204, aRow[i].szWhy);
    }
    ExpectLong((size_t)100 << 20, "{\"command\": \"", "x", "longer than 16 MiB");
    ExpectLong((size_t)16 << 20, "{\"command\": \"store policy\", \"input\": ", "[", "nested deeper");
    ExpectLong((size_t)16 << 20, "{", "\"\":0,", "occurs twice");
    char* szAnswer = NULL;
    if (s_pfnCall("{\"command\": \"query policy\"}", NULL) != 0x80040204 || szAnswer != NULL) {
        puts("a null pointer for the answer");
        ++s_lFaults;
    }
    s_pfnFree(NULL);
}

static void CarryOutWhatIsOne(void)
{
    Expect("{\"command\": \" query  policy\", \"controller\": \"eFirewall\"}", 0x00040200, "\"permission\": 0");
    Expect("{\"command\": \"store policy\", \"input\": {\"result\": \"0x00040200\", \"data\": [{\"controllerType\": 4, "
           "\"permission\": \"eAllow\", \"allowToLoadInSetupMode\": true, \"providers\": [{\"controllerType\": 4, "
           "\"providerType\": 0, \"permission\": 0, \"deployState\": 0}]}]}}",
           0x00040200, "\"notices\"");
    Expect("{\"command\": \"query policy\", \"controller\": 4}", 0x00040200, "\"permission\": 1");
    Expect("{\"command\": \"update\", \"path\": \"C:\\\\none.xml\"}", 0x00040202, "does not exist");
    Expect("{\"command\": \"update\", \"path\": \"C:\\\\none.xml\", \"dry-run\": true, \"strict\": true}", 0x80040201,
           "0x00040202");
}

static DWORD WINAPI AskForThreats(void* pNumber)
{
    for (int i = 0; i < Rounds; ++i) {
        char szRequest[100];
        char szWhy[50];
        const unsigned uThreat = (unsigned)((int)(INT_PTR)pNumber * Rounds + i + 1000);
        sprintf(szRequest, "{\"command\": \"query threat-description\", \"id\": %u}", uThreat);
        sprintf(szWhy, "\"antispy.xml has no threat %u\"", uThreat);
        Expect(szRequest, 0x80040201, szWhy);
        Expect("{\"command\": \"query policy\"}", 0x00040200, "\"controllerType\": 4");
    }
    return 0;
}

static void AskFromManyThreads(void)
{
    HANDLE ahThread[Threads];
    for (int i = 0; i < Threads; ++i) {
        ahThread[i] = CreateThread(NULL, 0, AskForThreats, (void*)(INT_PTR)i, 0, NULL);
    }
    WaitForMultipleObjects(Threads, ahThread, TRUE, INFINITE);
}

static int Answer(const char* szRequest)
{
    char* szAnswer = NULL;
    const uint32_t ulResult = s_pfnCall(szRequest, &szAnswer);
    _setmode(_fileno(stdout), _O_BINARY);
    fputs(szAnswer, stdout);
    s_pfnFree(szAnswer);
    return ulResult >> 31;
}

int main(int iArguments, char** aszArgument)
{
    const HMODULE hLibrary = LoadLibraryA("VrntJson.dll");
    if (hLibrary == NULL) {
        printf("no VrntJson.dll: error %lu\n", GetLastError());
        return 2;
    }
    s_pfnCall = (uint32_t(__cdecl*)(const char*, char**))(void*)GetProcAddress(hLibrary, "VrntJson_Call");
    s_pfnFree = (void(__cdecl*)(char*))(void*)GetProcAddress(hLibrary, "VrntJson_Free");
    if (iArguments > 1) {
        return Answer(aszArgument[1]);
    }
    AskFromManyThreads(); /* first: many make the first call */
    RefuseWhatIsNoRequest();
    CarryOutWhatIsOne();
    FreeLibrary(hLibrary); /* it stays */
    Expect("{\"command\": \"query policy\"}", 0x00040200, "\"controllerType\": 4");
    return s_lFaults != 0;
}
