#pragma once

#include "MethodTrace.h"
#include "SrvFrwk_ResultCode.h"
#include "ZkComn_Exception.h"

#include <cstdint>
#include <string>

/** The edge of every operation, which no exception crosses. */
namespace Varnhelt {

/** How an operation logs what it caught, and what it answers then. */
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

/** Runs the body of a query on its output: emptied first, and again when the document cannot be read to its end. */
template <class TOutput, class TBody>
std::uint32_t OnEmptied(TOutput& _rOutput, TBody&& _fnBody)
{
    _rOutput = TOutput();
    try {
        return _fnBody();
    } catch (const ZkCommon::Storage::XmlException*) {
        _rOutput = TOutput();
        throw;
    }
}

/**
 * Runs the body of a query on the caller's output, which is emptied first: _fnBody(const MethodTrace&, TOutput&). The
 * query has an entry line, and a leave line when it succeeds.
 * @param _pszOutput  name of the output in its lines
 */
template <class TOutput, class TBody>
std::uint32_t AtQueryBoundary(const FailureTexts& _rstTexts, void* _pOutput, const wchar_t* _pszOutput, TBody&& _fnBody,
                              ZkCommon::SourcePlace _stPlace = ZkCommon::SourcePlace::Here()) noexcept
{
    return AtBoundary(_rstTexts, [&] {
        const MethodTrace cTrace(_rstTexts.pszMethod, _stPlace);
        if (!cTrace.Has(_pOutput, _pszOutput)) {
            return SrvFrwk::Result::g_ulMissingObject;
        }
        TOutput& rOutput = *static_cast<TOutput*>(_pOutput);
        const std::uint32_t ulResult = OnEmptied(rOutput, [&] { return _fnBody(cTrace, rOutput); });
        return SrvFrwk::Result::IsFailure(ulResult) ? ulResult : cTrace.Leave(ulResult);
    });
}

} // namespace Varnhelt
