#include "ZkComn_ZkDbg.h"

#include <iterator>

namespace ZkCommon::Library {

namespace {

constexpr const wchar_t* g_szLibrary = L"ZkDbgLog.dll";

} // namespace

bool ZkDbg::Load(const std::wstring& _rtszFolder)
{
    if (IsLoaded() || IsBound()) {
        return false;
    }
    const std::wstring tszPath = PathOf(_rtszFolder, g_szLibrary);
    // The usual search by name takes in the current folder, where anybody may have put anything.
    m_hModule.Reset(_rtszFolder.empty() ? ::LoadLibraryExW(tszPath.c_str(), nullptr, LOAD_LIBRARY_SEARCH_DEFAULT_DIRS)
                                        : ::LoadLibraryW(tszPath.c_str()));
    return IsLoaded();
}

bool ZkDbg::Bind(bool _bBind, std::uint32_t& _rulError) noexcept
{
    const Binding aBinding[] = {
        {"ZkDbgInitialize", &m_pInitialize},
        {"ZkDbgUninitialize", &m_pUninitialize},
        {"ZkDbgTrace", &m_pTrace},
    };
    return BindAll(aBinding, std::size(aBinding), _bBind, _rulError);
}

void ZkDbg::Unload() noexcept
{
    std::uint32_t ulIgnored = 0;
    Bind(false, ulIgnored);
    m_hModule.Reset();
}

bool ZkDbg::Initialize(void*& _rpHandle, const ZkDbgSettings& _rstSettings) noexcept
{
    _rpHandle = nullptr;
    if (IsBound() && FunctionAt<ZkDbgInitializeFunction>(m_pInitialize)(&_rpHandle, &_rstSettings) == 0) {
        return _rpHandle != nullptr;
    }
    _rpHandle = nullptr;
    return false;
}

void ZkDbg::Uninitialize(void* _pHandle) noexcept
{
    if (IsBound()) {
        FunctionAt<ZkDbgUninitializeFunction>(m_pUninitialize)(_pHandle);
    }
}

bool ZkDbg::Trace(void* _pHandle, const SYSTEMTIME& _rstTime, const wchar_t* _pszLine) noexcept
{
    return IsBound() && FunctionAt<ZkDbgTraceFunction>(m_pTrace)(_pHandle, &_rstTime, _pszLine) == 0;
}

std::uint32_t ZkDbgSink::Attach() noexcept
{
    std::uint32_t ulIgnored = 0;
    if (!IsLoaded() && ::GetModuleHandleExW(0, g_szLibrary, m_hModule.Receive())) {
        Bind(true, ulIgnored);
    }
    const std::uint32_t ulLevels = IsBound() ? FunctionAt<ZkDbgSinkLevelsFunction>(m_pLevels)() : 0;
    if (ulLevels == 0) {
        Detach();
    }
    return ulLevels;
}

void ZkDbgSink::Detach() noexcept
{
    std::uint32_t ulIgnored = 0;
    Bind(false, ulIgnored);
    m_hModule.Reset();
}

bool ZkDbgSink::Bind(bool _bBind, std::uint32_t& _rulError) noexcept
{
    const Binding aBinding[] = {{"ZkDbgSinkLevels", &m_pLevels}, {"ZkDbgSinkLine", &m_pLine}};
    return BindAll(aBinding, std::size(aBinding), _bBind, _rulError);
}

void ZkDbgSink::Line(const ZkDbgLine& _rstLine) noexcept
{
    if (IsBound()) {
        FunctionAt<ZkDbgSinkLineFunction>(m_pLine)(&_rstLine);
    }
}

} // namespace ZkCommon::Library
