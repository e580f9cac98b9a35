#pragma once

#include "SrvFrwk_ResultCode.h"
#include "ZkComn_Exception.h"

#include <cstdint>
#include <string>

/** What stands at the edge of every operation: its entry and leave lines, and the end of every exception. */
namespace Varnhelt {

/**
 * The entry line of a method, and its leave line on the ways out that have one. A method is named by a literal of the
 * form "CClass::Method()".
 */
class MethodTrace
{
public:
    explicit MethodTrace(const wchar_t* _pszMethod, const char* _szFile = __builtin_FILE(),
                         std::uint32_t _ulLine = __builtin_LINE()) noexcept;
    /** With the request's value type and sub-type in the entry line. */
    MethodTrace(const wchar_t* _pszMethod, std::uint32_t _ulValueType, std::uint32_t _ulValueSubType,
                const char* _szFile = __builtin_FILE(), std::uint32_t _ulLine = __builtin_LINE()) noexcept;
    MethodTrace(const MethodTrace&) = delete;
    MethodTrace& operator=(const MethodTrace&) = delete;

    /** Writes the leave line and hands the result through: return cTrace.Leave(ulResult). No call, no line. */
    template <class TResult>
    TResult Leave(TResult _result) const noexcept
    {
        WriteLeave(m_pszMethod);
        return _result;
    }
    /** The same for a method whose leave line names another one. */
    template <class TResult>
    TResult LeaveAs(const wchar_t* _pszMethod, TResult _result) const noexcept
    {
        WriteLeave(_pszMethod);
        return _result;
    }

    /** Whether what the caller should hand in is there; an error line says when not, under its name in the method's lines. */
    bool Has(const void* _pData, const wchar_t* _pszName) const noexcept
    {
        if (_pData == nullptr) {
            WriteInvalid(_pszName);
        }
        return _pData != nullptr;
    }

private:
    void WriteInvalid(const wchar_t* _pszName) const noexcept;
    void WriteLeave(const wchar_t* _pszMethod) const noexcept;

    const wchar_t* m_pszMethod;
    const char* m_szFile;
    std::uint32_t m_ulLine;
};

/** How an operation tells of what it caught, and what it answers then. */
struct FailureTexts
{
    const wchar_t* pszMethod = L""; // "CClass::Method()", as the lines name it

    /** Writes the lines for a document that could not be read; the usual one is a single line with the code. */
    void (*pfnTraceXml)(const wchar_t* _pszMethod, const ZkCommon::Storage::XmlException& _rError) noexcept = &TraceXml;
    const wchar_t* pszAny = L"Got Exception().";
    std::uint32_t ulAnyResult = 0x80040201; // for what is no exception of the common library

    static void TraceXml(const wchar_t* _pszMethod, const ZkCommon::Storage::XmlException& _rError) noexcept;
};

/** The path of the document that an exception names, for a line about it; empty when memory runs out. */
std::wstring XmlFileOf(const ZkCommon::Storage::XmlException& _rError) noexcept;

/** Logs the exception in flight, deletes it, and gives the result code. To be called in a catch block only. */
std::uint32_t ResultInFlight(const FailureTexts& _rstTexts) noexcept;

/** Runs the body of an operation and lets no exception out. */
template <class TBody>
std::uint32_t AtBoundary(const FailureTexts& _rstTexts, TBody&& _fnBody) noexcept
{
    try {
        return _fnBody();
    } catch (...) {
        return ResultInFlight(_rstTexts);
    }
}

/**
 * Runs the body of a query on the caller's output, which is emptied first. The query's lines bear the method's name of
 * _rstTexts; it has a leave line when it succeeds.
 * @param _pszOutput  name of the output in these lines
 */
template <class TOutput, class TBody>
std::uint32_t AtQueryBoundary(const FailureTexts& _rstTexts, void* _pOutput, const wchar_t* _pszOutput, TBody&& _fnBody,
                              const char* _szFile = __builtin_FILE(), std::uint32_t _ulLine = __builtin_LINE()) noexcept
{
    return AtBoundary(_rstTexts, [&] {
        const MethodTrace cTrace(_rstTexts.pszMethod, _szFile, _ulLine);
        if (!cTrace.Has(_pOutput, _pszOutput)) {
            return SrvFrwk::Result::g_ulMissingObject;
        }
        TOutput& rOutput = *static_cast<TOutput*>(_pOutput);
        rOutput = TOutput();
        const std::uint32_t ulResult = _fnBody(rOutput);
        return SrvFrwk::Result::IsFailure(ulResult) ? ulResult : cTrace.Leave(ulResult);
    });
}

} // namespace Varnhelt
