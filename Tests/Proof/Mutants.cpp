#include "Verbs.h"

#include "Footprint.h"
#include "SrvFrwk_ResultCode.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <random>
#include <string_view>
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

/** An element from its start tag to the next end tag of its name. */
Range PickElement(const std::string& _sText, std::mt19937& _rGenerator)
{
    const Range stTag = Pick(_sText, '<', '>', _rGenerator);
    if (stTag.uLength < 3 || _sText[stTag.uBegin + 1] == '/' || _sText[stTag.uBegin + stTag.uLength - 2] == '/') {
        return stTag;
    }
    const std::size_t uName = _sText.find_first_of(" \t\r\n/>", stTag.uBegin);
    const std::string sEnd = "</" + _sText.substr(stTag.uBegin + 1, uName - stTag.uBegin - 1) + ">";
    const std::size_t uEnd = _sText.find(sEnd, uName);
    return uEnd == std::string::npos ? stTag : Range{stTag.uBegin, uEnd + sEnd.size() - stTag.uBegin};
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
    const Range stElement = PickElement(_rsText, _rGenerator);
    const std::string sElement = _rsText.substr(stElement.uBegin, stElement.uLength);
    const std::size_t uAnywhere = Below(_rGenerator, _rsText.size());
    switch (_rGenerator() % 9) {
    case 0:
        _rsText.erase(stElement.uBegin, stElement.uLength);
        break;
    case 1: // many of it, some of them very many
        for (std::size_t uCopies = std::size_t{1} << Below(_rGenerator, 9); uCopies > 0 && _rsText.size() < 4000000;
             --uCopies) {
            _rsText.insert(stElement.uBegin, sElement);
        }
        break;
    case 2: // into another one
        _rsText.insert(Pick(_rsText, '>', '<', _rGenerator).uBegin + 1, sElement);
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
        for (std::size_t uDepth = Below(_rGenerator, 2000); uDepth > 0; --uDepth) {
            _rsText.insert(stElement.uBegin, "<n>");
        }
        break;
    case 7:
        if (!_rsText.empty()) {
            _rsText[uAnywhere] = static_cast<char>(_rGenerator());
        }
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

} // namespace

/** mutants SEED SECONDS: of the documents of every kind in turn; crash and hang are the caller's to see. */
int Mutants(Host& _rHost, const Arguments& _vecArgument)
{
    std::mt19937 cGenerator(static_cast<unsigned>(std::stoul(_vecArgument.at(0))));
    const double dSeconds = std::stod(_vecArgument.at(1));
    std::vector<std::string> vecPlain;
    for (const Operation& rstOperation : Operations()) {
        vecPlain.push_back(PlainText(_rHost.FileOf(rstOperation), rstOperation.enDocument));
        _rHost.Run(rstOperation); // once, so that what the process keeps of a first use is there
    }
    int iMutants = 0, iAccepted = 0;
    double dSlowest = 0;
    const auto round = [&] {
        for (std::size_t uOperation = 0; uOperation < vecPlain.size(); ++uOperation) {
            const Operation& rstOperation = Operations()[uOperation];
            const std::wstring tszFile = _rHost.FileOf(rstOperation);
            const std::string sMutant = Mutant(vecPlain[uOperation], cGenerator);
            Put(_rHost.stDesk.tszFolder + L"mutant", sMutant); // for whoever finds a crash
            PutDocument(tszFile, rstOperation.enDocument, sMutant);
            const Clock::time_point tStart = Clock::now();
            const std::uint32_t ulResult = _rHost.Run(rstOperation);
            dSlowest = std::max(dSlowest, SecondsSince(tStart));
            ++iMutants;
            iAccepted += SrvFrwk::Result::IsFailure(ulResult) ? 0 : 1;
            PutDocument(tszFile, rstOperation.enDocument, vecPlain[uOperation]);
        }
    };
    for (int iFirst = 0; iFirst < 5; ++iFirst) { // what the system keeps of a first failure is there then
        round();
    }
    const Clock::time_point tBegin = Clock::now();
    const Footprint stBefore = Footprint::Now();
    while (SecondsSince(tBegin) < dSeconds) {
        round();
    }
    const Footprint stAfter = Footprint::Now();
    std::printf("mutants %d, accepted %d; slowest %.2f s; handles %lu -> %lu; heap %zu -> %zu\n", iMutants, iAccepted,
                dSlowest, stBefore.ulHandles, stAfter.ulHandles, stBefore.uHeapBytes, stAfter.uHeapBytes);
    return dSlowest < 20 && stAfter.ulHandles <= stBefore.ulHandles && stAfter.uHeapBytes < stBefore.uHeapBytes + 65536
               ? 0
               : 1;
}

/** mutate FILE SEED TARGET: for the tool, whose inputs are files. */
int Mutate(Host&, const Arguments& _vecArgument)
{
    const auto wide = [](const std::string& _sText) { return std::wstring(_sText.begin(), _sText.end()); };
    std::mt19937 cGenerator(static_cast<unsigned>(std::stoul(_vecArgument.at(1))));
    return Put(wide(_vecArgument.at(2)), Mutant(Contents(wide(_vecArgument[0])), cGenerator)) ? 0 : 1;
}

} // namespace Proof
