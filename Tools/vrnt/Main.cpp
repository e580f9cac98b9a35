#include "CommandLine.h"

int wmain(int _iCount, wchar_t** _ppArguments)
{
    return Vrnt::Run(_iCount, _ppArguments);
}
