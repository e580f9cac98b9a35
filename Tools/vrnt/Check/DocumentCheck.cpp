#include "Check/DocumentCheck.h"

#include "Arguments.h"
#include "Check/DocumentShape.h"
#include "Check/Nearest.h"
#include "Output/InputFile.h"
#include "Output/Output.h"
#include "ZkComn_Exception.h"
#include "ZkComn_FileCrypt.h"
#include "ZkComn_String.h"
#include "ZkComn_XmlParser.h"

#include <algorithm>
#include <map>
#include <unordered_map>

namespace Vrnt {

namespace {

namespace File = ZkCommon::Storage::File;
using Varnhelt::DocumentId;
using ZkCommon::String::ToUtf8;
using Kind = TextShape::Kind;

/** "; did you mean ...?", or what there is to choose from where that is not much. */
std::string Suggestion(std::wstring_view _svText, const std::vector<std::wstring_view>& _vecKnown)
{
    if (const std::wstring_view svNearest = Nearest(_svText, _vecKnown); !svNearest.empty()) {
        return "; did you mean " + Quoted(svNearest) + "?";
    }
    constexpr std::size_t uFew = 8;
    std::string sKnown;
    for (const std::wstring_view svKnown : _vecKnown) {
        sKnown += svKnown.empty() ? "" : (sKnown.empty() ? "; there is " : ", ") + Quoted(svKnown);
    }
    return _vecKnown.size() <= uFew ? sKnown : std::string();
}

/** Words that say "off" in any language of documents: fine wherever an unknown word is off too. */
bool MeansOff(const Frwk::WordTable& _rstTable, std::wstring_view _svText)
{
    constexpr std::uint32_t ulOn = 1;
    return _rstTable.stDefaults.ulUnknownText == 0 &&
           std::ranges::all_of(_rstTable.aWord, [](const Frwk::Word& _rstWord) { return _rstWord.ulValue <= ulOn; }) &&
           (_svText == L"disable" || _svText == L"Disable" || _svText == L"no" || _svText == L"none");
}

/** Whether the text is what a reader of numbers takes whole, and what it takes otherwise. */
bool IsWhole(Kind _enKind, std::wstring_view _svText, std::string& _rsReadAs)
{
    if (_enKind == Kind::Number64) {
        _rsReadAs = "0";
        return ZkCommon::String::ToWholeNumber64(_svText).has_value();
    }
    if (_enKind == Kind::Number32) {
        _rsReadAs = std::to_string(ZkCommon::String::ToNumber(_svText));
        return ZkCommon::String::ToWholeNumber(_svText).has_value();
    }
    const std::string sText = ToUtf8(_svText);
    const std::size_t uSign = sText.starts_with('-') || sText.starts_with('+') ? 1 : 0;
    _rsReadAs = std::to_string(static_cast<std::int32_t>(std::strtoll(sText.c_str(), nullptr, 10)));
    return sText.size() > uSign && std::all_of(sText.begin() + static_cast<std::ptrdiff_t>(uSign), sText.end(),
                                               [](char _c) { return _c >= '0' && _c <= '9'; });
}

const char* Consequence(Strange _enStrange)
{
    return _enStrange == Strange::Refuse ? ": the reader refuses the document" : ": it is passed over";
}

/** Walks over a document beside its shape. */
class Checker
{
public:
    Checker(std::uint32_t _ulLines, const Progress& _fnProgress) : m_ulLines(_ulLines), m_fnProgress(_fnProgress) {}

    void CheckRoot(const XmlElement& _rRoot, const ElementShape& _rstShape)
    {
        if (_rRoot.Name() != _rstShape.svName) {
            Enter(_rRoot);
            Tell(_rRoot, Severity::Error,
                 "the root is " + Quoted(_rRoot.Name()) + ", and the reader looks for " + Quoted(_rstShape.svName) +
                     ": nothing is read");
            return;
        }
        Check(_rRoot, _rstShape);
    }

    std::vector<Finding> Take()
    {
        std::ranges::stable_sort(m_vecFinding, {}, &Finding::ulLine);
        return std::move(m_vecFinding);
    }

private:
    void Enter(const XmlElement& _rElement) { m_vecPath.push_back(_rElement.Name()); }

    void Check(const XmlElement& _rElement, const ElementShape& _rstShape)
    {
        Enter(_rElement);
        TellProgress(_rElement);
        if (!_rstShape.bUnread) {
            CheckAttributes(_rElement, _rstShape);
            if (_rstShape.stText) {
                CheckText(_rElement, "the text", _rElement.Text(), *_rstShape.stText);
            }
            if (_rstShape.fnRule) {
                _rstShape.fnRule(_rElement, [&](Strange _enStrange, const std::string& _rsText) {
                    TellStrange(_rElement, _enStrange, _rsText);
                });
            }
            CheckChildren(_rElement, _rstShape);
        }
        m_vecPath.pop_back();
    }

    void CheckAttributes(const XmlElement& _rElement, const ElementShape& _rstShape)
    {
        for (const auto& stAttribute : _rElement.Attributes()) {
            const AttributeShape* pKnown = _rstShape.FindAttribute(stAttribute.svName);
            if (pKnown != nullptr) {
                CheckText(_rElement, "attribute " + Quoted(stAttribute.svName), stAttribute.svValue, pKnown->stText);
            } else if (!IsOfTheForm(stAttribute.svName) && !_rstShape.bForeign) {
                Tell(_rElement, Severity::Warning,
                     "no reader looks at attribute " + Quoted(stAttribute.svName) +
                         Instead(stAttribute.svName, _rstShape, true));
            }
        }
        for (const AttributeShape& stKnown : _rstShape.vecAttribute) {
            if (!stKnown.stText.bOptional && !_rElement.HasAttribute(stKnown.svName)) {
                TellMissing(_rElement, "attribute " + Quoted(stKnown.svName), stKnown.stText);
            }
        }
    }

    void CheckChildren(const XmlElement& _rElement, const ElementShape& _rstShape)
    {
        const auto iOwn = std::ranges::ssize(m_vecFinding);
        std::vector<std::size_t> vecCount(_rstShape.vecChild.size());
        std::map<std::pair<const ElementShape*, std::wstring>, std::uint32_t> mapIdentity;
        for (auto cChild = _rElement.FirstChild(); cChild; cChild = cChild.NextSibling()) {
            const auto itKnown = std::ranges::find_if(
                _rstShape.vecChild, [&](const ElementShape& _rstChild) { return _rstChild.Matches(cChild.Name()); });
            if (itKnown == _rstShape.vecChild.end()) {
                if (!_rstShape.bForeign) {
                    TellUnknown(cChild, _rstShape);
                }
                continue;
            }
            const auto uKnown = static_cast<std::size_t>(itKnown - _rstShape.vecChild.begin());
            if (++vecCount[uKnown] > 1 && !itKnown->bMany) {
                TellChild(cChild, Severity::Warning,
                          Quoted(cChild.Name()) + " is here once more: only the first counts");
                continue;
            }
            if (itKnown->fnIdentity) {
                const auto [itFirst, bFirst] =
                    mapIdentity.try_emplace({&*itKnown, itKnown->fnIdentity(cChild)}, cChild.Line());
                if (!bFirst) {
                    TellChild(cChild, Severity::Warning,
                              "the same " + Quoted(cChild.Name()) + " as in line " + std::to_string(itFirst->second) +
                                  ": only the first counts");
                }
            }
            Check(cChild, *itKnown);
        }
        const auto iChildren = std::ranges::ssize(m_vecFinding);
        for (std::size_t i = 0; i < vecCount.size(); ++i) {
            const ElementShape& rstKnown = _rstShape.vecChild[i];
            if (vecCount[i] == 0 && !rstKnown.bMany && !rstKnown.bOptional &&
                (!rstKnown.fnNeeded || rstKnown.fnNeeded(_rElement))) {
                TellMissingChild(_rElement, rstKnown);
            }
        }
        // What the element itself lacks comes before what is found in it.
        std::rotate(m_vecFinding.begin() + iOwn, m_vecFinding.begin() + iChildren, m_vecFinding.end());
    }

    void CheckText(const XmlElement& _rElement, const std::string& _rsWhat, std::wstring_view _svText,
                   const TextShape& _rstText)
    {
        if (_rstText.enKind == Kind::Any) {
            if (_svText.empty() && _rstText.enStrange != Strange::Default) {
                TellStrange(_rElement, _rstText.enStrange, _rsWhat + " is empty");
            }
            return;
        }
        if (_rstText.fnNeeded && !_rstText.fnNeeded(_rElement)) {
            return;
        }
        if (_rstText.enKind == Kind::Word) {
            CheckWord(_rElement, _rsWhat, _svText, _rstText);
            return;
        }
        std::string sReadAs;
        if (!IsWhole(_rstText.enKind, _svText, sReadAs)) {
            Tell(_rElement, Severity::Warning,
                 _rsWhat + " is no whole number: " + Quoted(_svText) + " is read as " + sReadAs);
        }
    }

    void CheckWord(const XmlElement& _rElement, const std::string& _rsWhat, std::wstring_view _svText,
                   const TextShape& _rstText)
    {
        const Frwk::WordTable& rstWords = *_rstText.pWords;
        if (Frwk::Utility::FindWord(rstWords, _svText) != nullptr || MeansOff(rstWords, _svText)) {
            return;
        }
        std::vector<std::wstring_view> vecKnown;
        for (const Frwk::Word& stWord : rstWords.aWord) {
            vecKnown.push_back(stWord.svText);
        }
        const std::string sUnknown = "unknown word " + Quoted(_svText) + " of " + _rsWhat;
        const std::string sSuggestion = Suggestion(_svText, vecKnown);
        if (_rstText.enStrange != Strange::Default) {
            TellStrange(_rElement, _rstText.enStrange, sUnknown, sSuggestion);
        } else {
            Tell(_rElement, Severity::Warning,
                 sUnknown + ": read as " + Quoted(WordOf(rstWords, rstWords.stDefaults.ulUnknownText)) + sSuggestion);
        }
    }

    void TellMissing(const XmlElement& _rElement, const std::string& _rsWhat, const TextShape& _rstText)
    {
        if (_rstText.fnNeeded && !_rstText.fnNeeded(_rElement)) {
            return;
        }
        if (_rstText.enStrange != Strange::Default) {
            TellStrange(_rElement, _rstText.enStrange, _rsWhat + " is missing");
            return;
        }
        const std::wstring tszDefault = DefaultWord(_rstText);
        Tell(_rElement, Severity::Warning,
             _rsWhat + " is missing: read as " + (tszDefault.empty() ? "empty" : Quoted(tszDefault)));
    }

    void TellMissingChild(const XmlElement& _rElement, const ElementShape& _rstKnown)
    {
        if (_rstKnown.stText) {
            TellMissing(_rElement, Quoted(_rstKnown.svName), *_rstKnown.stText);
        } else {
            Tell(_rElement, _rstKnown.bIndispensable ? Severity::Error : Severity::Warning,
                 Quoted(_rstKnown.svName) + " is missing: nothing is read there");
        }
    }

    void TellUnknown(const XmlElement& _rChild, const ElementShape& _rstShape)
    {
        const std::string sInstead = Instead(_rChild.Name(), _rstShape, false);
        if (_rstShape.bRefusesOthers) {
            TellChild(_rChild, Severity::Error,
                      "no item is called " + Quoted(_rChild.Name()) + Consequence(Strange::Refuse) + sInstead);
        } else {
            TellChild(_rChild, Severity::Warning, "no reader looks at " + Quoted(_rChild.Name()) + sInstead);
        }
    }

    /** Of a child that is not looked into. */
    void TellChild(const XmlElement& _rChild, Severity _enSeverity, std::string _sText)
    {
        Enter(_rChild);
        Tell(_rChild, _enSeverity, std::move(_sText));
        m_vecPath.pop_back();
    }

    /** What a name that no reader looks at may stand for: an attribute, or an element. */
    static std::string Instead(std::wstring_view _svName, const ElementShape& _rstShape, bool _bAttribute)
    {
        std::vector<std::wstring_view> vecAttribute;
        for (const AttributeShape& stAttribute : _rstShape.vecAttribute) {
            vecAttribute.push_back(stAttribute.svName);
        }
        std::vector<std::wstring_view> vecChild;
        for (const ElementShape& stChild : _rstShape.vecChild) {
            vecChild.push_back(stChild.svName);
        }
        if (std::ranges::find(_bAttribute ? vecChild : vecAttribute, _svName) !=
            (_bAttribute ? vecChild : vecAttribute).end()) {
            return _bAttribute ? ": it is read from an element" : ": it is read from an attribute";
        }
        const std::wstring_view svNearest = Nearest(_svName, _bAttribute ? vecAttribute : vecChild);
        return svNearest.empty() ? std::string() : "; did you mean " + Quoted(svNearest) + "?";
    }

    /** Attributes that belong to XML and its schemas, in every document. */
    static bool IsOfTheForm(std::wstring_view _svName)
    {
        return _svName.starts_with(L"xml") || _svName.starts_with(L"xsi:");
    }

    void TellStrange(const XmlElement& _rElement, Strange _enStrange, const std::string& _rsText,
                     const std::string& _rsSuggestion = {})
    {
        const bool bDefault = _enStrange == Strange::Default;
        Tell(_rElement, bDefault ? Severity::Warning : Severity::Error,
             _rsText + (bDefault ? "" : Consequence(_enStrange)) + _rsSuggestion);
    }

    void Tell(const XmlElement& _rElement, Severity _enSeverity, std::string _sText)
    {
        std::string sPath;
        for (const std::wstring_view svName : m_vecPath) {
            sPath += "/" + ToUtf8(svName);
        }
        m_vecFinding.push_back({_rElement.Line(), _enSeverity, std::move(sPath), std::move(_sText)});
    }

    void TellProgress(const XmlElement& _rElement)
    {
        if (m_fnProgress && m_ulLines != 0 && ++m_uElements % 1024 == 0) {
            m_fnProgress(static_cast<double>(_rElement.Line()) / m_ulLines);
        }
    }

    std::vector<Finding> m_vecFinding;
    std::vector<std::wstring_view> m_vecPath;
    std::uint32_t m_ulLines;
    std::size_t m_uElements = 0;
    const Progress& m_fnProgress;
};

/** Whether it begins as an XML document does, in any of the encodings that one may have. */
bool IsPlain(std::string_view _svContent)
{
    if (_svContent.starts_with("\xFF\xFE") || _svContent.starts_with("\xFE\xFF")) {
        return true;
    }
    if (_svContent.starts_with("\xEF\xBB\xBF")) {
        _svContent.remove_prefix(3);
    }
    const std::size_t uFirst = _svContent.find_first_not_of(std::string_view(" \t\r\n\0", 5));
    return uFirst != std::string_view::npos && _svContent[uFirst] == '<';
}

/** The shape of a table of threats: without descriptions, recommendations and scanners it is that of names alone. */
ElementShape TableShape(const XmlElement& _rRoot)
{
    ElementShape stShape = ShapeOf(Varnhelt::DocumentOf(DocumentId::ThreatsElmap));
    const std::wstring_view svThreats = Varnhelt::DocumentOf(DocumentId::ThreatsElmap).pszRoot;
    ElementShape& rstThreats = stShape.Child(svThreats.substr(svThreats.rfind(L'/') + 1));
    rstThreats.bOptional = false;
    bool bTexts = false;
    for (const ElementShape& stSection : stShape.vecChild) {
        bTexts = bTexts || (&stSection != &rstThreats && _rRoot.FirstChild(stSection.svName));
    }
    for (auto cThreat = _rRoot.FirstChild(rstThreats.svName).FirstChild(); cThreat && !bTexts;
         cThreat = cThreat.NextSibling()) {
        for (const ElementShape& stText : rstThreats.vecChild.front().vecChild) {
            bTexts = bTexts || (stText.bOptional && cThreat.FirstChild(stText.svName));
        }
    }
    if (bTexts) {
        for (ElementShape& rstSection : stShape.vecChild) {
            for (ElementShape& rstText : rstSection.vecChild.front().vecChild) {
                rstText.bOptional = false;
            }
        }
    }
    return stShape;
}

std::vector<Finding> CheckText(const Varnhelt::Document& _rstDocument, std::string_view _svText,
                               const Progress& _fnProgress)
{
    using ZkCommon::Storage::XmlParser;
    XmlParser cParser;
    cParser.SetProperty(L"PathOfDll", ToolFolder().wstring());
    XmlElement cRoot;
    try {
        cParser.LoadText(_svText, XmlParser::KeepWhole | XmlParser::KeepLines);
        cRoot = cParser.Document().FirstChild();
    } catch (ZkCommon::Storage::XmlException* _pError) {
        const ZkCommon::Exception::Caught pCaught(_pError);
        if (_pError->XmlErrorCode() == 0) {
            throw UsageError("the parser library libexpat.dll cannot be loaded");
        }
        const ZkCommon::Storage::XmlPlace stPlace = cParser.FailurePlace();
        return {{std::max(stPlace.ulLine, 1U), Severity::Error, "",
                 "not well-formed at column " + std::to_string(stPlace.ulColumn) + ": " + cParser.FailureText()}};
    }
    const auto ulLines = static_cast<std::uint32_t>(std::ranges::count(_svText, '\n'));
    Checker cChecker(ulLines, _fnProgress);
    cChecker.CheckRoot(cRoot, IsThreats(_rstDocument) ? TableShape(cRoot) : ShapeOf(_rstDocument));
    return cChecker.Take();
}

} // namespace

const char* SeverityText(Severity _enSeverity)
{
    return _enSeverity == Severity::Error ? "error" : "warning";
}

std::size_t CountErrors(const std::vector<Finding>& _rvecFinding)
{
    return static_cast<std::size_t>(std::ranges::count(_rvecFinding, Severity::Error, &Finding::enSeverity));
}

std::vector<Finding> CheckDocument(const Varnhelt::Document& _rstDocument, const std::wstring& _rtszPath,
                                   const Progress& _fnProgress)
{
    const std::string sContent = ReadInputFile(ToUtf8(_rtszPath));
    if (_fnProgress) {
        _fnProgress(0);
    }
    if (IsPlain(sContent) || _rstDocument.szKey == nullptr) {
        return CheckText(_rstDocument, sContent, _fnProgress);
    }
    const auto* pKey = reinterpret_cast<const std::uint8_t*>(_rstDocument.szKey);
    File::Conversion cConversion(File::Conversion::Direction::Decrypt);
    if (cConversion.Run(_rtszPath, File::g_ulShareAll, File::KeySpan(pKey, File::g_uKeySize))) {
        const auto spanPlain = cConversion.Output();
        const std::string_view svPlain(reinterpret_cast<const char*>(spanPlain.data()), spanPlain.size());
        if (IsPlain(svPlain)) {
            return CheckText(_rstDocument, svPlain, _fnProgress);
        }
    }
    return {{1, Severity::Error, "", "neither XML nor encrypted with this document's key"}};
}

} // namespace Vrnt
