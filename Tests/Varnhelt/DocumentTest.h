#pragma once

#include "FunctionXml.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "TestProduct.h"
#include "TraceRecorder.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

using Lines = std::vector<std::wstring>;

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

/** An installed product, the document of a value type there or in the request's directory, and what it is read into. */
template <std::uint32_t t_ulValueType, class TRecords>
class DocumentTest : public testing::Test
{
protected:
    void Write(std::string_view _svXml) const
    {
        m_cProduct.Store(Varnhelt::FindValueType(t_ulValueType)->enDocument, _svXml);
    }
    std::uint32_t Query()
    {
        return CFunctionXml().QueryValue(
            {.ulValueType = t_ulValueType, .pValueData = &m_Records, .pOptionData = &m_stDirectory});
    }
    /** The lines of such a query, without those of its dispatch. */
    static Lines ReaderLines(const TraceRecorder& _rcTrace)
    {
        const Lines vecLine = _rcTrace.Lines();
        return vecLine.size() < 2 ? Lines() : Lines(vecLine.begin() + 1, vecLine.end() - 1);
    }

    TestProduct m_cProduct;
    SrvFrwk::XmlDirectoryConfig m_stDirectory{{}, m_cProduct.Folder().Path().wstring()};
    TRecords m_Records;
};
