// The law of vrnt check, for every text of every document: an error where an entry is dropped, not done, or the document
// refused; a warning where a text reads as something else; nothing where it is read as it is. What reading shows is the
// measure.

#include "Arguments.h"
#include "Check/DocumentCheck.h"
#include "Check/DocumentShape.h"
#include "ReadDocument.h"
#include "ReplaceAll.h"
#include "TraceRecorder.h"
#include "ZkComn_Owner.h"
#include "ZkComn_String.h"
#include "ZkComn_XmlParser.h"

#include <algorithm>
#include <cwctype>
#include <gtest/gtest.h>
#include <list>
#include <optional>

using namespace Vrnt;
using Kind = TextShape::Kind;
using Varnhelt::Document;
using Varnhelt::DocumentId;
using ZkCommon::Storage::XmlParser;
using ZkCommon::String::ToUtf8;

namespace {

using Text = std::optional<std::wstring>; // none: missing

/** An element of a document that is made after its shape: one child of each kind, a text in each place. */
struct Node
{
    const ElementShape* pShape;
    std::vector<Text> vecAttribute{}; // as the shape's
    Text tszText{};
    std::list<Node> lstChild{};
};

/** Where a text is. */
struct Place
{
    Node* pNode;
    std::wstring_view svName;
    std::vector<const TextShape*> vecShape;
    Text* pText;
};

/** Texts that only some documents accept, by the element and the name they are under. */
std::wstring ValidText(std::wstring_view _svElement, std::wstring_view _svName, const TextShape& _rstShape,
                       const std::wstring& _rtszKey)
{
    struct Row
    {
        std::wstring_view svElement;
        std::wstring_view svName;
        std::wstring_view svText;
    };
    const Row aRow[] = {
        {L"", L"minversion", L"17.1.1040"},
        {L"", L"maxversion", L"17.1.1040"},
        {L"", L"product", L"all"},
        {L"", L"language", L"all"},
        {L"", L"platform", L"all"},
        {L"registry", L"Root", L"HKCU"},
        {L"registry", L"Path", _rtszKey},
        {L"inifile", L"Path", L"$INSTALL$law.ini"},
        {L"Key", L"Action", L"write"},
        {L"Entry", L"Action", L"write"},
        {L"", L"Value", L"12"},
        {L"", L"key", L"HKEY_LOCAL_MACHINE\\Software\\Law"},
    };
    for (const Row& stRow : aRow) {
        if (stRow.svName == _svName && (stRow.svElement.empty() || stRow.svElement == _svElement)) {
            return std::wstring(stRow.svText);
        }
    }
    if (_rstShape.enKind == Kind::Number || _rstShape.enKind == Kind::Decimal) {
        return L"17";
    }
    if (_rstShape.pWords == nullptr) {
        return L"text";
    }
    // Not the default: what is read instead of another word shows.
    const auto& aWord = _rstShape.pWords->aWord;
    const auto itWord = std::ranges::find_if(aWord, [&](const Frwk::Word& _rstWord) {
        return _rstWord.ulValue != _rstShape.pWords->stDefaults.ulUnknownText && !_rstWord.svText.empty();
    });
    return std::wstring(itWord != aWord.end() ? itWord->svText : aWord.front().svText);
}

class LawDocument
{
public:
    LawDocument(const ElementShape& _rstShape, const std::wstring& _rtszKey)
        : m_rtszKey(_rtszKey), m_stRoot(Make(_rstShape, _rstShape))
    {
        Collect(m_stRoot);
    }
    std::vector<Place>& Places() { return m_vecPlace; }
    const std::vector<Node*>& Nodes() const { return m_vecNode; }
    /** Sets an attribute of the root, where it has one of the name. */
    void Set(std::wstring_view _svName, const std::wstring& _rtszText)
    {
        for (Place& rstPlace : m_vecPlace) {
            if (rstPlace.pNode == &m_stRoot && rstPlace.svName == _svName) {
                *rstPlace.pText = _rtszText;
            }
        }
    }
    std::string Xml() const { return ToUtf8(XmlOf(m_stRoot)); }

private:
    Node Make(const ElementShape& _rstShape, const ElementShape& _rstOwner) const
    {
        Node stNode{.pShape = &_rstShape};
        const auto Valid = [&](const ElementShape& _rstElement, std::wstring_view _svName, const TextShape& _rstText) {
            return ValidText(_rstElement.svName, _svName, _rstText, m_rtszKey);
        };
        for (const AttributeShape& stAttribute : _rstShape.vecAttribute) {
            stNode.vecAttribute.push_back(
                stAttribute.stText.bOptional ? Text() : Valid(_rstShape, stAttribute.svName, stAttribute.stText));
        }
        if (!_rstShape.vecText.empty()) {
            stNode.tszText = Valid(_rstOwner, _rstShape.svName, _rstShape.vecText.front());
        }
        if (!_rstShape.bUnread) {
            for (const ElementShape& stChild : _rstShape.vecChild) {
                stNode.lstChild.push_back(Make(stChild, _rstShape));
            }
        }
        return stNode;
    }

    void Collect(Node& _rstNode)
    {
        m_vecNode.push_back(&_rstNode);
        for (std::size_t i = 0; i < _rstNode.vecAttribute.size(); ++i) {
            const AttributeShape& stShape = _rstNode.pShape->vecAttribute[i];
            m_vecPlace.push_back({&_rstNode, stShape.svName, {&stShape.stText}, &_rstNode.vecAttribute[i]});
        }
        for (Node& rstChild : _rstNode.lstChild) {
            if (!rstChild.pShape->vecText.empty()) {
                Place& rstPlace =
                    m_vecPlace.emplace_back(Place{&_rstNode, rstChild.pShape->svName, {}, &rstChild.tszText});
                for (const TextShape& stText : rstChild.pShape->vecText) {
                    rstPlace.vecShape.push_back(&stText);
                }
            }
            Collect(rstChild);
        }
    }

    /** An element that has nothing but a text is missing with it. */
    static bool IsMissing(const Node& _rstNode)
    {
        return !_rstNode.pShape->vecText.empty() && !_rstNode.tszText && _rstNode.vecAttribute.empty();
    }

    static std::wstring Escaped(std::wstring _tszText)
    {
        ReplaceAll(_tszText, L"\"", L"&quot;");
        return _tszText;
    }

    static std::wstring XmlOf(const Node& _rstNode)
    {
        if (IsMissing(_rstNode)) {
            return {};
        }
        const std::wstring tszName(_rstNode.pShape->bAnyName ? L"AnyName" : _rstNode.pShape->svName);
        std::wstring tszXml = L"<" + tszName;
        for (std::size_t i = 0; i < _rstNode.vecAttribute.size(); ++i) {
            if (_rstNode.vecAttribute[i]) {
                tszXml += L" " + std::wstring(_rstNode.pShape->vecAttribute[i].svName) + L"=\"" +
                          Escaped(*_rstNode.vecAttribute[i]) + L"\"";
            }
        }
        tszXml += L">" + _rstNode.tszText.value_or(L"");
        for (const Node& stChild : _rstNode.lstChild) {
            tszXml += XmlOf(stChild);
        }
        return tszXml + L"</" + tszName + L">\n";
    }

    const std::wstring& m_rtszKey;
    Node m_stRoot;
    std::vector<Place> m_vecPlace;
    std::vector<Node*> m_vecNode;
};

std::wstring OtherCase(std::wstring _tszText)
{
    for (wchar_t& rc : _tszText) {
        rc = std::iswupper(rc) != 0 ? static_cast<wchar_t>(std::towlower(rc)) : static_cast<wchar_t>(std::towupper(rc));
    }
    return _tszText;
}

/** The text of a place, spoilt in every way that is worth trying there. */
std::vector<Text> Spoilt(const Place& _rstPlace)
{
    const std::wstring tszText = _rstPlace.pText->value_or(L"text");
    std::vector<Text> vecText{Text(), L""};
    // Any path, value or program is meant, but not all of them are this machine's.
    const std::wstring_view svElement = _rstPlace.pNode->pShape->svName;
    const bool bKeyPath = svElement == L"registry" && _rstPlace.svName == L"Path";
    if (bKeyPath || (svElement == L"Key" && _rstPlace.svName == L"Name")) {
        for (const std::size_t uLength : {255U, 256U, 16383U, 16384U, 0x7FFFU}) {
            vecText.emplace_back((bKeyPath ? tszText + L"\\\\x\\" : L"") + std::wstring(uLength, L'x'));
        }
        vecText.emplace_back(L'\\' + tszText);
    }
    if (_rstPlace.svName == L"Path" || _rstPlace.svName == L"Section" || _rstPlace.svName == L"Name" ||
        _rstPlace.svName == L"Assign") {
        return vecText;
    }
    for (const wchar_t* pszText : {L"no such word", L"none", L"x86", L"-5", L"08", L"4294967296"}) {
        vecText.emplace_back(pszText);
    }
    for (std::wstring tszSpoilt : {OtherCase(tszText), L" " + tszText, tszText + L" ", tszText + L"x"}) {
        vecText.emplace_back(std::move(tszSpoilt));
    }
    const bool bAny = std::ranges::none_of(_rstPlace.vecShape, [](const TextShape* _pShape) {
        return _pShape->fnStrange || _pShape->pWords != nullptr || !_pShape->sForm.empty();
    });
    vecText.resize(bAny && _rstPlace.svName != L"Value" ? 3 : vecText.size()); // all of them are read as they are
    return vecText;
}

/** Digits of ten, or else of the base that their beginning gives. */
bool IsDigits(const std::wstring& _rtszText, bool _bDecimal)
{
    const bool bHex = !_bDecimal && (_rtszText.starts_with(L"0x") || _rtszText.starts_with(L"0X"));
    const bool bOctal = !_bDecimal && !bHex && _rtszText.starts_with(L'0');
    const std::wstring tszDigits = _rtszText.substr(bHex ? 2 : 0);
    return !tszDigits.empty() && tszDigits.find_first_not_of(bHex     ? L"0123456789abcdefABCDEF"
                                                             : bOctal ? L"01234567"
                                                                      : L"0123456789") == std::wstring::npos;
}

/** Whether a text is what it should be, said apart from the code under test; nothing where only the reader knows. */
std::optional<bool> IsMeant(const TextShape& _rstShape, const std::wstring& _rtszText)
{
    if (_rstShape.bOptional && _rtszText.empty()) {
        return true;
    }
    if (_rstShape.pWords != nullptr) {
        return std::ranges::any_of(_rstShape.pWords->aWord, [&](const Frwk::Word& _rstWord) {
            return _rstShape.pWords->bAnyCase
                       ? ::CompareStringOrdinal(_rtszText.c_str(), -1, std::wstring(_rstWord.svText).c_str(), -1,
                                                TRUE) == CSTR_EQUAL
                       : _rstWord.svText == _rtszText;
        });
    }
    if (_rstShape.enKind == Kind::Number || _rstShape.enKind == Kind::Decimal) {
        const bool bDecimal = _rstShape.enKind == Kind::Decimal;
        const std::wstring tszDigits = _rtszText.substr(bDecimal && _rtszText.starts_with(L'-') ? 1 : 0);
        return IsDigits(tszDigits, bDecimal) &&
               std::wcstoull(tszDigits.c_str(), nullptr, bDecimal ? 10 : 0) <= 0xFFFFFFFFU;
    }
    return _rstShape.sForm.empty() ? std::optional(true) : std::nullopt;
}

class CheckLaw : public testing::TestWithParam<Document>
{
protected:
    /** Holds the document as it is now, after a text of _svElement changed, and with each text of the places spoilt. */
    void Hold(LawDocument& _rDocument, const std::vector<Place>& _rvecPlace, std::wstring_view _svElement)
    {
        const auto [stBase, vecBaseFinding] = Look(_rDocument);
        ASSERT_EQ(CountErrors(vecBaseFinding) != 0, IsDropped(stBase, m_stWhole, _svElement))
            << Shown(_rDocument, vecBaseFinding);
        if (!vecBaseFinding.empty()) {
            return;
        }
        for (const Place& stPlace : _rvecPlace) {
            const Text tszValid = *stPlace.pText;
            const std::wstring_view svElement = stPlace.pNode->pShape->svName;
            for (const Text& tszText : Spoilt(stPlace)) {
                *stPlace.pText = tszText;
                const auto [stReading, vecFinding] = Look(_rDocument);
                const testing::ScopedTrace place(__FILE__, __LINE__,
                                                 ToUtf8(std::wstring(svElement) + L"/" + std::wstring(stPlace.svName) +
                                                        (tszText ? L": \"" + *tszText + L"\"" : L" missing")));
                const bool bDropped = IsDropped(stReading, stBase, svElement);
                EXPECT_EQ(CountErrors(vecFinding) != 0, bDropped) << Shown(_rDocument, vecFinding);
                if (!bDropped && tszText) {
                    HoldValue(_rDocument, stPlace, *tszText, stReading.vecValue != stBase.vecValue, vecFinding);
                }
                ++m_uTried;
            }
            *stPlace.pText = tszValid;
        }
    }

    static bool IsDropped(const Reading& _rstReading, const Reading& _rstBefore, std::wstring_view _svElement)
    {
        return _rstReading.bRefused || _rstReading.Records(_svElement) < _rstBefore.Records(_svElement);
    }

    /** A text that is kept is read as it is, or something is said. */
    void HoldValue(const LawDocument& _rDocument, const Place& _rstPlace, const std::wstring& _rtszText, bool _bChanged,
                   const std::vector<Finding>& _rvecFinding) const
    {
        bool bMeant = true;
        for (const TextShape* pShape : _rstPlace.vecShape) {
            const std::optional<bool> bThis = IsMeant(*pShape, _rtszText);
            if (!bThis) {
                return;
            }
            bMeant = bMeant && *bThis;
        }
        if (bMeant) {
            EXPECT_EQ(_rvecFinding.size(), 0U) << Shown(_rDocument, _rvecFinding);
        } else if (_bChanged) {
            EXPECT_GE(_rvecFinding.size(), 1U) << Shown(_rDocument, _rvecFinding);
        }
    }

    std::pair<Reading, std::vector<Finding>> Look(const LawDocument& _rDocument) const
    {
        const std::wstring tszPath = m_cReader.Store(GetParam().enId, _rDocument.Xml());
        auto vecFinding = CheckDocument(GetParam(), tszPath);
        return {m_cReader.Read(GetParam().enId), std::move(vecFinding)};
    }

    static std::string Shown(const LawDocument& _rDocument, const std::vector<Finding>& _rvecFinding)
    {
        std::string sShown = _rDocument.Xml();
        for (const Finding& stFinding : _rvecFinding) {
            sShown += std::string(SeverityText(stFinding.enSeverity)) + ": " + stFinding.sText + "\n";
        }
        return sShown;
    }

    /** Holds the document with each word of the texts that others depend on. */
    void HoldDependent(LawDocument& _rDocument)
    {
        for (Place& rstPlace : _rDocument.Places()) {
            const bool bDecides =
                std::ranges::any_of(std::initializer_list<const wchar_t*>{L"Action", L"Type", L"ShowMessage"},
                                    [&](const wchar_t* _psz) { return rstPlace.svName == _psz; });
            if (!bDecides || rstPlace.vecShape.front()->pWords == nullptr) {
                continue;
            }
            std::vector<Place> vecBeside;
            std::ranges::copy_if(_rDocument.Places(), std::back_inserter(vecBeside), [&](const Place& _rstOther) {
                return _rstOther.pNode == rstPlace.pNode && _rstOther.pText != rstPlace.pText;
            });
            const Text tszValid = *rstPlace.pText;
            for (const Frwk::Word& stWord : rstPlace.vecShape.front()->pWords->aWord) {
                *rstPlace.pText = std::wstring(stWord.svText);
                Hold(_rDocument, vecBeside, rstPlace.pNode->pShape->svName);
            }
            *rstPlace.pText = tszValid;
        }
    }

    /** Whether the stray text is in an element that is told to be unread as a whole. */
    static bool IsPassedOver(const std::string& _rsXml, const std::vector<Finding>& _rvecFinding)
    {
        const std::size_t uStray = _rsXml.find("stray");
        return std::ranges::any_of(_rvecFinding, [&](const Finding& _rstFinding) {
            const std::string sName = _rstFinding.sElement.substr(_rstFinding.sElement.rfind('/') + 1);
            const std::size_t uBegin = _rsXml.rfind("<" + sName, uStray);
            return _rstFinding.enRule == Rule::Unread && uBegin != std::string::npos &&
                   _rsXml.find("</" + sName + ">", uBegin) > uStray;
        });
    }

    /** A text where no reader looks for one changes nothing that is read, and is told where it is. */
    void HoldStrayTexts(LawDocument& _rDocument)
    {
        const auto [stBase, vecBaseFinding] = Look(_rDocument);
        for (Node* pNode : _rDocument.Nodes()) {
            if (!pNode->pShape->vecText.empty()) {
                continue;
            }
            pNode->tszText = L"\n stray";
            const auto [stReading, vecFinding] = Look(_rDocument);
            const std::string sXml = _rDocument.Xml();
            pNode->tszText.reset();
            const auto lLine = std::ranges::count(sXml.substr(0, sXml.find("stray")), '\n') + 1;
            const auto lTold = std::ranges::count_if(vecFinding, [&](const Finding& _rstFinding) {
                return _rstFinding.enRule == Rule::StrayText && _rstFinding.ulLine == lLine &&
                       _rstFinding.ulColumn == 2;
            });
            EXPECT_EQ(stReading, stBase) << sXml;
            EXPECT_EQ(lTold, pNode->pShape->bUnread || IsPassedOver(sXml, vecFinding) ? 0 : 1) << sXml;
            EXPECT_EQ(std::ranges::ssize(vecFinding), std::ranges::ssize(vecBaseFinding) + lTold) << sXml;
        }
    }

    DocumentReader m_cReader;
    Reading m_stWhole; // of the document as it is meant
    std::size_t m_uTried = 0;
};

/** The roots of documents that are read differently; one that says nothing for all others. */
std::vector<std::string> Roots(DocumentId _enDocument)
{
    return _enDocument == DocumentId::LocalUpdate
               ? std::vector<std::string>{R"(<Quillmar check="yes"/>)", R"(<Quillmar check="no"/>)"}
               : std::vector<std::string>{"<root/>"};
}

TEST_P(CheckLaw, SaysWhatReadingShows)
{
    const ZkCommon::ModuleHandle hExpat(::LoadLibraryW(L"libexpat.dll")); // kept loaded, for speed
    for (const std::string& rsRoot : Roots(GetParam().enId)) {
        XmlParser cParser;
        cParser.SetProperty(L"PathOfDll", ToolFolder().wstring());
        cParser.LoadText(rsRoot, XmlParser::KeepWhole);
        const XmlElement cRoot = cParser.Document().FirstChild();
        const ElementShape stShape = ShapeOf(GetParam(), cRoot);
        LawDocument cDocument(stShape, m_cReader.Key());
        cDocument.Set(L"check", std::wstring(cRoot.Attribute(L"check")));
        m_stWhole = Look(cDocument).first;
        ASSERT_NE(m_stWhole.Records({}), 0U) << cDocument.Xml();
        Hold(cDocument, cDocument.Places(), {});
        HoldDependent(cDocument);
        HoldStrayTexts(cDocument);
    }
    EXPECT_NE(m_uTried, 0U);
}

/** One that is parsed in pieces while its records are read gives those of one that is parsed before, or none. */
TEST_P(CheckLaw, AndReadingWhileADocumentIsParsedShowsTheSame)
{
    const std::string sXml = LawDocument(ShapeOf(GetParam(), XmlElement()), m_cReader.Key()).Xml();
    const std::size_t uBegin = sXml.find('>') + 1;
    const std::size_t uEnd = sXml.rfind("</");
    std::string sLong = sXml.substr(0, uBegin);
    while (sLong.size() < 200'000) {
        sLong += sXml.substr(uBegin, uEnd - uBegin);
    }
    const auto Read = [&](const std::string& _rsEnd) {
        m_cReader.Store(GetParam().enId, sLong + _rsEnd);
        return m_cReader.Read(GetParam().enId);
    };
    const std::string sEnd = sXml.substr(uEnd);
    const Reading stMeanwhile = Read(sEnd);
    EXPECT_GT(stMeanwhile.Records({}), 0U);
    for (const std::string& sBroken : {std::string(), sEnd + "&"}) {
        EXPECT_TRUE(Read(sBroken).vecValue.empty());
    }
    const TraceRecorder cTrace; // where lines are written, a document is parsed before it is read
    EXPECT_EQ(stMeanwhile, Read(sEnd));
}

std::vector<Document> Readable()
{
    std::vector<Document> vecDocument;
    for (const Document& stDocument : Varnhelt::DocumentTable()) {
        if (stDocument.enId != DocumentId::PreUpdateList) { // written only
            vecDocument.push_back(stDocument);
        }
    }
    return vecDocument;
}

INSTANTIATE_TEST_SUITE_P(EachDocument, CheckLaw, testing::ValuesIn(Readable()), [](const auto& _rstInfo) {
    std::string sName = ToUtf8(_rstInfo.param.svName);
    std::erase(sName, '-');
    return sName + std::to_string(_rstInfo.index);
});

} // namespace
