#include "MethodTrace.h"

#include <cstdarg>
#include <string>

namespace Varnhelt {

using namespace ZkCommon;

void MethodLines::WriteAt(SourcePlace _stPlace, std::uint32_t _ulLevel, const wchar_t* _pszFormat, ...) const noexcept
{
    std::va_list args;
    va_start(args, _pszFormat);
    try {
        const std::wstring tszFormat = std::wstring(L"*** ") + m_pszMethod + L" - " + _pszFormat;
        g_cDebugLog.TraceV(_stPlace.szFile, _stPlace.ulLine, _ulLevel, tszFormat.c_str(), args);
    } catch (...) { // a line for which there is no memory is dropped
    }
    va_end(args);
}

MethodTrace::MethodTrace(const wchar_t* _pszMethod, SourcePlace _stPlace) noexcept
    : MethodLines(_pszMethod), m_stPlace(_stPlace)
{
    if (TracePasses(TraceDetail)) {
        TraceAt(_stPlace, TraceDetail, L"[Enter] %s...", _pszMethod);
    }
}

MethodTrace::MethodTrace(const wchar_t* _pszMethod, std::uint32_t _ulValueType, std::uint32_t _ulValueSubType,
                         SourcePlace _stPlace) noexcept
    : MethodLines(_pszMethod), m_stPlace(_stPlace)
{
    if (TracePasses(TraceDetail)) {
        TraceAt(_stPlace, TraceDetail, L"[Enter] %s...VT[0x%08x],VST[0x%08x]", _pszMethod, _ulValueType,
                _ulValueSubType);
    }
}

void MethodTrace::WriteInvalid(const wchar_t* _pszName) const noexcept
{
    if (TracePasses(TraceError)) {
        TraceAt(m_stPlace, TraceError, L"*** %s - %s was invalid.", Method(), _pszName);
    }
}

void MethodTrace::WriteLeave(const wchar_t* _pszMethod) const noexcept
{
    if (TracePasses(TraceDetail)) {
        TraceAt(m_stPlace, TraceDetail, L"[Leave] %s...", _pszMethod);
    }
}

} // namespace Varnhelt
