#pragma once

#include "FunctionXml.h"
#include "PrintRecords.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "TestProduct.h"
#include "TraceRecorder.h"
#include "ValueTypeTable.h"

#include <gmock/gmock-more-matchers.h>
#include <string>
#include <vector>

/** A reader or writer and its name in the lines. */
#define METHOD(name) &Varnhelt::Documents::name, L"CFunctionXml::" #name L"()"

using namespace SrvFrwk;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/** Has one reader or writer carry a request out. */
inline std::uint32_t CarryOut(Varnhelt::Handler _pfnHandler, const Varnhelt::Request& _rstRequest)
{
    Varnhelt::Worker stWorker;
    return _pfnHandler(stWorker, _rstRequest);
}

/** Lines that begin alike. */
inline Lines Behind(const std::wstring& _rtszBeginning, Lines _vecLine)
{
    for (std::wstring& rtszLine : _vecLine) {
        rtszLine.insert(0, _rtszBeginning);
    }
    return _vecLine;
}

inline Lines Joined(std::initializer_list<Lines> _lstLines)
{
    Lines vecResult;
    for (const Lines& vecLine : _lstLines) {
        vecResult.insert(vecResult.end(), vecLine.begin(), vecLine.end());
    }
    return vecResult;
}

/** An installed product with the document of a value type in its folder, and what that is read into. */
template <std::uint32_t t_ulValueType, class TRecords>
class DocumentTest : public testing::Test
{
protected:
    using Records = TRecords;

    std::uint32_t Query(std::uint32_t _ulValueSubType = 1, std::uint32_t _ulValueOption = 1)
    {
        return CFunctionXml().QueryValue({.ulValueType = t_ulValueType,
                                          .ulValueSubType = _ulValueSubType,
                                          .pValueData = &m_Records,
                                          .ulValueOption = _ulValueOption,
                                          .pOptionData = &m_stPath});
    }
    std::uint32_t Store(TRecords _records)
    {
        return CFunctionXml().StoreValue(
            {.ulValueType = t_ulValueType, .pValueData = &_records, .pOptionData = &m_stPath});
    }
    void Write(std::string_view _svXml) const { m_cProduct.Store(m_rstDocument.enId, _svXml, m_pszFile); }
    std::string Plain() const { return m_cProduct.Plain(m_rstDocument.enId, m_pszFile); }
    std::string Stored() const
    {
        EXPECT_EQ(m_cProduct.Leftovers(), Lines(m_rstDocument.pszFile == nullptr ? 1 : 0, m_tszFolder + m_pszFile));
        return m_cProduct.Stored(m_rstDocument.enId, m_pszFile);
    }
    /** The lines of one query, without those of its dispatch. */
    static Lines ReaderLines(const TraceRecorder& _rcTrace)
    {
        const Lines vecLine = _rcTrace.Lines();
        return vecLine.size() < 2 ? Lines() : Lines(vecLine.begin() + 1, vecLine.end() - 1);
    }

    const Varnhelt::Document& m_rstDocument = DocumentOf(Varnhelt::FindValueType(t_ulValueType)->enDocument);
    const wchar_t* m_pszFile = m_rstDocument.pszFile != nullptr ? m_rstDocument.pszFile : L"d";
    TestProduct m_cProduct;
    const std::wstring m_tszFolder = m_cProduct.Folder().Path().wstring() + L"\\";
    XmlPathConfig m_stPath{{{}, m_cProduct.Folder().Path().wstring()}, m_pszFile}; // begins with the directory's
    TRecords m_Records;
};
