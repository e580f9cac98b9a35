#include "MethodTrace.h"

#include <cstdarg>
#include <string>

namespace Varnhelt {

using namespace ZkCommon;

void MethodLines::WriteAt(const char* _szFile, std::uint32_t _ulLine, std::uint32_t _ulLevel, const wchar_t* _pszFormat,
                          ...) const noexcept
{
    std::va_list args;
    va_start(args, _pszFormat);
    try {
        const std::wstring tszFormat = std::wstring(L"*** ") + m_pszMethod + L" - " + _pszFormat;
        g_cDebugLog.TraceV(_szFile, _ulLine, _ulLevel, tszFormat.c_str(), args);
    } catch (...) { // a line for which there is no memory is dropped
    }
    va_end(args);
}

MethodTrace::MethodTrace(const wchar_t* _pszMethod, const char* _szFile, std::uint32_t _ulLine) noexcept
    : MethodLines(_pszMethod), m_szFile(_szFile), m_ulLine(_ulLine)
{
    if (TracePasses(TraceDetail)) {
        TraceAt(_szFile, _ulLine, TraceDetail, L"[Enter] %s...", _pszMethod);
    }
}

MethodTrace::MethodTrace(const wchar_t* _pszMethod, std::uint32_t _ulValueType, std::uint32_t _ulValueSubType,
                         const char* _szFile, std::uint32_t _ulLine) noexcept
    : MethodLines(_pszMethod), m_szFile(_szFile), m_ulLine(_ulLine)
{
    if (TracePasses(TraceDetail)) {
        TraceAt(_szFile, _ulLine, TraceDetail, L"[Enter] %s...VT[0x%08x],VST[0x%08x]", _pszMethod, _ulValueType,
                _ulValueSubType);
    }
}

void MethodTrace::WriteInvalid(const wchar_t* _pszName) const noexcept
{
    if (TracePasses(TraceError)) {
        TraceAt(m_szFile, m_ulLine, TraceError, L"*** %s - %s was invalid.", Method(), _pszName);
    }
}

void MethodTrace::WriteLeave(const wchar_t* _pszMethod) const noexcept
{
    if (TracePasses(TraceDetail)) {
        TraceAt(m_szFile, m_ulLine, TraceDetail, L"[Leave] %s...", _pszMethod);
    }
}

} // namespace Varnhelt
