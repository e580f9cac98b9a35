#include "Verbs.h"

#include "Edges.h"
#include "Footprint.h"
#include "SrvFrwk_ResultCode.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string_view>
#include <utility>
#include <vector>

namespace Proof {

namespace {

struct Range
{
    std::size_t uBegin;
    std::size_t uLength;
};

std::size_t Below(std::mt19937& _rGenerator, std::size_t _uLimit)
{
    return _uLimit == 0 ? 0 : _rGenerator() % _uLimit;
}

/** The stretches between two characters, those included: "<" to ">" are tags, "\"" to "\"" values, ">" to "<" texts. */
Range Pick(const std::string& _sText, char _cFirst, char _cLast, std::mt19937& _rGenerator)
{
    const std::size_t uFrom = Below(_rGenerator, _sText.size());
    const std::size_t uBegin = std::min(_sText.find(_cFirst, uFrom), _sText.find(_cFirst));
    const std::size_t uEnd = uBegin == std::string::npos ? uBegin : _sText.find(_cLast, uBegin + 1);
    return uEnd == std::string::npos ? Range{0, 0} : Range{uBegin, uEnd + 1 - uBegin};
}

/** The element of a start tag, up to the next end tag of its name; other markup alone. */
Range ElementOf(const std::string& _sText, Range _stTag)
{
    if (_stTag.uLength < 3 || _sText[_stTag.uBegin + 1] == '/' || _sText[_stTag.uBegin + _stTag.uLength - 2] == '/') {
        return _stTag;
    }
    const std::size_t uName = _sText.find_first_of(" \t\r\n/>", _stTag.uBegin);
    const std::string sEnd = "</" + _sText.substr(_stTag.uBegin + 1, uName - _stTag.uBegin - 1) + ">";
    const std::size_t uEnd = _sText.find(sEnd, uName);
    return uEnd == std::string::npos ? _stTag : Range{_stTag.uBegin, uEnd + sEnd.size() - _stTag.uBegin};
}

void Step(std::string& _rsText, std::mt19937& _rGenerator)
{
    static constexpr std::array<std::string_view, 16> aInsert = {
        "<!--x-->",     "<![CDATA[<x>]]>",
        "&lt;",         "&#10;",
        "&#0;",         "&none;",
        "<?p q?>",      "<a/>",
        "</a>",         "]]>",
        "4294967296",   "-1",
        "\xff",         "\xc0\x80",
        "\xef\xbf\xbe", "<!DOCTYPE a [<!ENTITY b 'c'><!ATTLIST a d CDATA 'e'>]>"};
    const Range stElement = ElementOf(_rsText, Pick(_rsText, '<', '>', _rGenerator));
    const std::string sElement = _rsText.substr(stElement.uBegin, stElement.uLength);
    const std::size_t uAnywhere = Below(_rGenerator, _rsText.size());
    switch (_rGenerator() % 9) {
    case 0:
        _rsText.erase(stElement.uBegin, stElement.uLength);
        break;
    case 1: // many of it, some of them very many
        _rsText.insert(stElement.uBegin, Repeated(sElement, std::min(std::size_t{1} << Below(_rGenerator, 9),
                                                                     400000 / (sElement.size() + 1))));
        break;
    case 2: // into another one
        _rsText.insert(std::min(Pick(_rsText, '>', '<', _rGenerator).uBegin + 1, _rsText.size()), sElement);
        break;
    case 3:
        if (const Range stValue = Pick(_rsText, '"', '"', _rGenerator); stValue.uLength >= 2) {
            const Range stOther = Pick(_rsText, '"', '"', _rGenerator);
            _rsText.replace(stValue.uBegin, stValue.uLength, _rsText.substr(stOther.uBegin, stOther.uLength));
        }
        break;
    case 4:
        if (const Range stText = Pick(_rsText, '>', '<', _rGenerator); stText.uLength >= 2) {
            _rsText.replace(stText.uBegin + 1, stText.uLength - 2, std::string(Below(_rGenerator, 70000), 'x'));
        }
        break;
    case 5:
        _rsText.insert(uAnywhere, aInsert[Below(_rGenerator, aInsert.size())]);
        break;
    case 6: // nested
        _rsText.insert(stElement.uBegin, Repeated("<n>", Below(_rGenerator, 2000)));
        break;
    case 7:
        _rsText.replace(uAnywhere, 1, 1, static_cast<char>(_rGenerator()));
        break;
    default:
        _rsText.resize(uAnywhere);
        break;
    }
}

/**
 * A document a few steps from the given one: elements removed, doubled, swapped and nested, attributes, words and numbers
 * spoilt, declarations and references put in, bytes changed. The same generator state gives the same mutant.
 */
std::string Mutant(const std::string& _sDocument, std::mt19937& _rGenerator)
{
    std::string sMutant = _sDocument;
    for (std::size_t uSteps = 1 + Below(_rGenerator, 4); uSteps > 0; --uSteps) {
        Step(sMutant, _rGenerator);
    }
    return sMutant;
}

/** Of a large table the first rows and the last one, which find what all of them do, in much less time. */
std::string Trimmed(std::string _sTable)
{
    if (const std::size_t uTag = _sTable.find("</", 8192); _sTable.size() > 65536) {
        const std::string sTag = _sTable.substr(uTag, _sTable.find('>', uTag) + 1 - uTag);
        _sTable.erase(uTag, _sTable.rfind(sTag) - uTag);
    }
    return _sTable;
}

std::wstring Wide(const std::string& _sText)
{
    return {_sText.begin(), _sText.end()};
}

/** Mutants of documents of every kind, and of what was found on the way: texts that reach edges which none before reached. */
class Search
{
public:
    /** @param _tszKept  folder for what is found, with a backslash; empty to look for nothing */
    Search(Host& _rHost, unsigned _ulSeed, std::wstring _tszKept)
        : m_rHost(_rHost), m_cGenerator(_ulSeed), m_tszKept(std::move(_tszKept))
    {
        // What each query would load and free again: the parser of both places, and what gives random numbers.
        ::LoadLibraryW(L"libexpat.dll");
        ::LoadLibraryW((m_rHost.stDesk.tszFolder + L"libexpat.dll").c_str());
        ::LoadLibraryW(L"rsaenh.dll");
        for (const Operation& rstOperation : Operations()) {
            m_vecKind.push_back({Trimmed(PlainText(m_rHost.FileOf(rstOperation), rstOperation.enDocument))});
            Run(m_vecKind.size() - 1, m_vecKind.back().front()); // what a first use keeps is there then
            NewEdges();
        }
    }

    void Round()
    {
        for (std::size_t uKind = 0; uKind < m_vecKind.size(); ++uKind) {
            const std::vector<std::string>& rvecText = m_vecKind[uKind];
            const std::size_t uBase = Below(m_cGenerator, 2) == 0 ? 0 : Below(m_cGenerator, rvecText.size());
            Try(uKind, Mutant(rvecText[uBase], m_cGenerator));
        }
    }

    /** Runs what an earlier search kept in this folder, in files of an operation's name and a number. */
    void Replay(const std::wstring& _tszFolder)
    {
        for (const auto& rEntry : std::filesystem::directory_iterator(_tszFolder)) {
            const Operation& rstOperation = OperationOf(rEntry.path().stem().string());
            Try(static_cast<std::size_t>(&rstOperation - Operations().data()), Contents(rEntry.path().wstring()));
        }
    }

    /** The memory of the process without that of the texts which are kept. */
    Footprint Memory() const
    {
        Footprint stMemory = Footprint::Now();
        for (const std::vector<std::string>& rvecText : m_vecKind) {
            stMemory.uHeapBytes -= rvecText.capacity() * sizeof(std::string);
            for (const std::string& rsText : rvecText) {
                stMemory.uHeapBytes -= rsText.capacity();
            }
        }
        return stMemory;
    }

    int m_iRuns = 0, m_iAccepted = 0, m_iKept = 0, m_iEdges = 0; // edges which the documents themselves do not reach
    double m_dSlowest = 0;

private:
    void Run(std::size_t _uKind, const std::string& _sText)
    {
        const Operation& rstOperation = Operations()[_uKind];
        Put(m_rHost.stDesk.tszFolder + L"mutant", _sText); // for whoever finds a crash
        PutDocument(m_rHost.FileOf(rstOperation), rstOperation.enDocument, _sText);
        BeginRun();
        const double dStart = ProcessorSeconds();
        m_iAccepted += SrvFrwk::Result::IsFailure(m_rHost.Run(rstOperation)) ? 0 : 1;
        m_dSlowest = std::max(m_dSlowest, ProcessorSeconds() - dStart);
        ++m_iRuns;
    }

    void Try(std::size_t _uKind, const std::string& _sText)
    {
        Run(_uKind, _sText);
        Edges vecNew = NewEdges();
        m_iEdges += static_cast<int>(vecNew.size());
        if (m_tszKept.empty() || vecNew.empty()) {
            return;
        }
        Run(_uKind, _sText); // some edges depend on an address or a random name
        std::erase_if(vecNew, [](std::uint16_t _usEdge) { return !Reached({_usEdge}); });
        if (!vecNew.empty()) {
            m_vecKind[_uKind].push_back(Shrunk(_uKind, _sText, vecNew));
            Put(m_tszKept + Wide(std::string(Operations()[_uKind].svName)) + L"." + std::to_wstring(++m_iKept),
                m_vecKind[_uKind].back());
        }
    }

    /** Without elements, and texts before them, that the edges do not need. */
    std::string Shrunk(std::size_t _uKind, std::string _sText, const Edges& _vecEdge)
    {
        std::size_t uTag = _sText.find('<');
        for (int iTries = 200; uTag != std::string::npos && iTries > 0; --iTries) {
            const std::size_t uText = uTag == 0 ? 0 : _sText.rfind('>', uTag - 1) + 1;
            const std::size_t uEnd = std::min(_sText.find('>', uTag), _sText.size() - 1);
            const Range stElement = ElementOf(_sText, {uTag, uEnd + 1 - uTag});
            const std::string sLess = std::string(_sText).erase(uText, uTag + stElement.uLength - uText);
            Run(_uKind, sLess);
            const bool bLess = Reached(_vecEdge);
            _sText = bLess ? sLess : _sText;
            uTag = _sText.find('<', bLess ? uText : uTag + 1);
        }
        return _sText;
    }

    Host& m_rHost;
    std::mt19937 m_cGenerator;
    std::wstring m_tszKept;
    std::vector<std::vector<std::string>> m_vecKind; // for each operation the document, and what was found
};

} // namespace

/**
 * mutants SEED SECONDS FINDS [KEPT]: first what is kept in the folder FINDS, then mutants of every kind in turn; with KEPT
 * of what is new among them too, which is kept there. Crash and hang are the caller's to see.
 */
int Mutants(Host& _rHost, const Arguments& _vecArgument)
{
    const double dSeconds = std::stod(_vecArgument.at(1));
    Search cSearch(_rHost, static_cast<unsigned>(std::stoul(_vecArgument[0])),
                   Wide(_vecArgument.size() > 3 ? _vecArgument[3] : ""));
    cSearch.Replay(Wide(_vecArgument.at(2)));
    for (int iFirst = 0; iFirst < 5; ++iFirst) { // what the system keeps of a first failure is there then
        cSearch.Round();
    }
    const Clock::time_point tBegin = Clock::now();
    const Footprint stBefore = cSearch.Memory();
    while (SecondsSince(tBegin) < dSeconds) {
        cSearch.Round();
    }
    const Footprint stAfter = cSearch.Memory();
    std::printf(
        "mutants %d, accepted %d; new edges %d, finds %d; slowest %.2f s; handles %lu -> %lu; heap %zu -> %zu\n",
        cSearch.m_iRuns, cSearch.m_iAccepted, cSearch.m_iEdges, cSearch.m_iKept, cSearch.m_dSlowest, stBefore.ulHandles,
        stAfter.ulHandles, stBefore.uHeapBytes, stAfter.uHeapBytes);
    const bool bFlat = stAfter.ulHandles <= stBefore.ulHandles && stAfter.uHeapBytes < stBefore.uHeapBytes + 65536;
    return cSearch.m_dSlowest < 20 && bFlat ? 0 : 1;
}

/** mutate FILE SEED TARGET: for the tool, whose inputs are files. */
int Mutate(Host&, const Arguments& _vecArgument)
{
    std::mt19937 cGenerator(static_cast<unsigned>(std::stoul(_vecArgument.at(1))));
    return Put(Wide(_vecArgument.at(2)), Mutant(Contents(Wide(_vecArgument[0])), cGenerator)) ? 0 : 1;
}

} // namespace Proof
