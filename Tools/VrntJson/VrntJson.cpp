// The boundary: C texts and result codes outside, the tool's commands inside. No exception leaves it.

#include "VrntJson.h"

#include "Arguments.h"
#include "JsonRequest.h"
#include "Machine/Host.h"
#include "Machine/TraceSink.h"
#include "ModuleRunTime.h"
#include "Output/Output.h"
#include "ZkComn_Exception.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace {

using namespace Vrnt;
namespace Result = SrvFrwk::Result;

constexpr std::size_t g_uLongestRequest = std::size_t{16} << 20U;

struct Answer
{
    std::uint32_t ulResult;
    std::string sJson;
};

Answer Failure(std::uint32_t _ulResult, const std::string& _rsWhy)
{
    return {_ulResult, JsonAnswer(_ulResult, nullptr, {_rsWhy})};
}

/**
 * Keeps this library and what each call needs in the process: no call has to load it, and none loses its code. The trace
 * library comes first, so that the module finds it.
 */
void StayLoaded()
{
    [[maybe_unused]] static const bool s_bLoaded = [] {
        HMODULE hSelf = nullptr;
        ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                             reinterpret_cast<LPCWSTR>(reinterpret_cast<void*>(&StayLoaded)), &hSelf);
        WatchTrace(ToolFolder());
        for (const wchar_t* pszLibrary :
             {L"Varnhelt.dll", L"libexpat.dll"}) { // without them, a call says what is missing
            ::LoadLibraryExW((ToolFolder() / pszLibrary).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
        }
        return true;
    }();
}

/** Runs the command as `vrnt --json` does, with what that writes to stderr in the JSON. */
Answer Run(const JsonRequest& _rstRequest)
{
    Tool stTool;
    std::vector<std::string> vecNotice; // a library has no stderr
    stTool.stOptions.bJson = true;
    stTool.pNotices = &vecNotice;
    const OutputCapture cCapture;
    _rstRequest.pCommand->pfnRun(stTool, _rstRequest.cArguments);
    const bool bNotWhole = stTool.iExitStatus != ExitSuccess && !Result::IsFailure(stTool.ulResult);
    return {bNotWhole ? Result::g_ulFailed : stTool.ulResult, cCapture.sOutput};
}

Answer AnswerTo(const char* _pszRequest)
{
    if (_pszRequest == nullptr) {
        return Failure(Result::g_ulInvalidArgument, "there is no request");
    }
    const std::size_t uLength = ::strnlen(_pszRequest, g_uLongestRequest + 1);
    if (uLength > g_uLongestRequest) {
        return Failure(Result::g_ulInvalidArgument, "the request is longer than 16 MiB");
    }
    try {
        StayLoaded();
        return Run(ToRequest({_pszRequest, uLength}));
    } catch (const ModuleError& rError) {
        return Failure(Result::g_ulMissingObject, rError.what());
    } catch (const UsageError& rError) {
        return Failure(Result::g_ulInvalidArgument, rError.what());
    } catch (const JsonError& rError) {
        return Failure(Result::g_ulInvalidArgument, rError.what());
    } catch (ZkCommon::Exception::Base* pError) {
        const ZkCommon::Exception::Caught pCaught(pError);
        return Failure(Result::g_ulFailed, SystemErrorText(pError->ErrorCode()));
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& rError) {
        return Failure(Result::g_ulFailed, rError.what());
    }
}

/** A copy that is the caller's. @throws std::bad_alloc */
char* ToCaller(const std::string& _rsText)
{
    const std::size_t uSize = _rsText.size() + 1;
    void* const pCopy = std::malloc(uSize); // NOLINT(*-no-malloc): given back by VrntJson_Free
    if (pCopy == nullptr) {
        throw std::bad_alloc();
    }
    return static_cast<char*>(std::memcpy(pCopy, _rsText.c_str(), uSize));
}

} // namespace

extern "C" {

uint32_t VrntJson_Call(const char* _pszRequest, char** _ppszAnswer)
{
    if (_ppszAnswer == nullptr) {
        return Result::g_ulInvalidArgument;
    }
    *_ppszAnswer = nullptr;
    try {
        const Answer stAnswer = AnswerTo(_pszRequest);
        *_ppszAnswer = ToCaller(stAnswer.sJson);
        return stAnswer.ulResult;
    } catch (...) { // only memory runs out here
        return Result::g_ulNoMemory;
    }
}

void VrntJson_Free(char* _pszAnswer)
{
    std::free(_pszAnswer); // NOLINT(*-no-malloc)
}

const char* VrntJson_Version()
{
    return VARNHELT_VERSION;
}

BOOL WINAPI DllMain(HINSTANCE /*_hModule*/, DWORD _ulReason, LPVOID /*_pReserved*/)
{
    return _ulReason != DLL_PROCESS_ATTACH || ModuleRunTime::Attach() ? TRUE : FALSE;
}
}
