#include "Check/DocumentCheck.h"

#include "Arguments.h"
#include "Check/DocumentContent.h"
#include "Check/DocumentShape.h"
#include "Check/MarkupScan.h"
#include "Check/Nearest.h"
#include "Output/InputFile.h"
#include "ValueTypeTable.h"
#include "ZkComn_AesEngine.h"
#include "ZkComn_Exception.h"
#include "ZkComn_String.h"
#include "ZkComn_XmlParser.h"

#include <algorithm>
#include <map>
#include <optional>

namespace Vrnt {

namespace {

using ZkCommon::String::ToUtf8;

/** "; did you mean ...?", or what there is to choose from where that is not much. */
std::string Suggestion(std::wstring_view _svText, const std::vector<std::wstring_view>& _vecKnown)
{
    if (const std::wstring_view svNearest = Nearest(_svText, _vecKnown); !svNearest.empty()) {
        return "; did you mean " + Cited(svNearest) + "?";
    }
    constexpr std::size_t uFew = 8;
    std::string sKnown;
    for (const std::wstring_view svKnown : _vecKnown) {
        sKnown += svKnown.empty() ? "" : (sKnown.empty() ? "; there is " : ", ") + Cited(svKnown);
    }
    return _vecKnown.size() <= uFew ? sKnown : std::string();
}

/** Whether something is read all the same. */
bool IsDefault(Strange _enStrange)
{
    return _enStrange == Strange::Default || _enStrange == Strange::Optional;
}

/** What comes of it otherwise. */
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
            Tell(_rRoot, Severity::Error, Rule::WrongRoot,
                 "the root is " + Cited(_rRoot.Name()) + ", and the reader looks for " + Cited(_rstShape.svName) +
                     ": nothing is read");
            return;
        }
        Check(_rRoot, _rstShape, {});
    }

    std::vector<Finding> Take()
    {
        std::ranges::stable_sort(m_vecFinding, {}, &Finding::ulLine);
        return std::move(m_vecFinding);
    }

private:
    void Enter(const XmlElement& _rElement) { m_vecPath.push_back(_rElement.Name()); }

    void Check(const XmlElement& _rElement, const ElementShape& _rstShape, const XmlElement& _rOwner)
    {
        Enter(_rElement);
        TellProgress(_rElement);
        const bool bAround = m_bDropped;
        m_bDrops = false;
        if (!_rstShape.bUnread) {
            CheckAttributes(_rElement, _rstShape);
            for (const TextShape& stText : _rstShape.vecText) {
                CheckText(_rElement, _rOwner, "the text", _rElement.Text(), stText);
            }
            CheckStrayText(_rElement, _rstShape);
            if (_rstShape.fnRule) {
                _rstShape.fnRule(_rElement, [&](Strange _enStrange, const std::string& _rsText) {
                    TellStrange(_rElement, _enStrange, Rule::DroppedEntry, _rsText);
                });
            }
            m_bDropped = bAround || m_bDrops;
            CheckChildren(_rElement, _rstShape);
        }
        m_bDropped = bAround;
        m_vecPath.pop_back();
    }

    void CheckStrayText(const XmlElement& _rElement, const ElementShape& _rstShape)
    {
        if (_rstShape.vecText.empty() && !_rstShape.bForeign && _rElement.TextLine() != 0) {
            Tell(_rElement, Severity::Warning, Rule::StrayText,
                 "no reader looks at the text " + Cited(_rElement.Text()));
            m_vecFinding.back().ulLine = _rElement.TextLine();
            m_vecFinding.back().ulColumn = _rElement.TextColumn();
        }
    }

    void CheckAttributes(const XmlElement& _rElement, const ElementShape& _rstShape)
    {
        for (const auto& stAttribute : _rElement.Attributes()) {
            const AttributeShape* pKnown = _rstShape.FindAttribute(stAttribute.svName);
            if (pKnown != nullptr) {
                CheckText(_rElement, _rElement, "attribute " + Cited(stAttribute.svName), stAttribute.svValue,
                          pKnown->stText);
            } else if (!IsOfTheForm(stAttribute.svName) && !_rstShape.bForeign) {
                Tell(_rElement, Severity::Warning, Rule::UnknownName,
                     "no reader looks at attribute " + Cited(stAttribute.svName) +
                         Instead(stAttribute.svName, _rstShape, true));
            }
        }
        for (const AttributeShape& stKnown : _rstShape.vecAttribute) {
            if (!stKnown.stText.bOptional && !_rElement.HasAttribute(stKnown.svName)) {
                TellMissing(_rElement, "attribute " + Cited(stKnown.svName), stKnown.stText);
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
            ++vecCount[uKnown];
            if (itKnown->fnRead && !itKnown->fnRead(_rElement)) {
                TellChild(cChild, Severity::Warning, Rule::Unread,
                          "no reader looks at " + Cited(cChild.Name()) + " here");
                continue;
            }
            if (vecCount[uKnown] > 1 && !itKnown->bMany) {
                TellChild(cChild, Severity::Warning, Rule::Repeated,
                          Cited(cChild.Name()) + " is here once more: only the first counts");
                continue;
            }
            if (itKnown->fnIdentity) {
                const auto [itFirst, bFirst] =
                    mapIdentity.try_emplace({&*itKnown, itKnown->fnIdentity(cChild)}, cChild.Line());
                if (!bFirst) {
                    TellChild(cChild, Severity::Warning, Rule::Repeated,
                              "the same " + Cited(cChild.Name()) + " as in line " + std::to_string(itFirst->second) +
                                  ": only the first counts");
                }
            }
            // NOLINTNEXTLINE(readability-suspicious-call-argument): the child's owner is the element that is walked
            Check(cChild, *itKnown, _rElement);
        }
        const auto iChildren = std::ranges::ssize(m_vecFinding);
        for (std::size_t i = 0; i < vecCount.size(); ++i) {
            const ElementShape& rstKnown = _rstShape.vecChild[i];
            if (vecCount[i] == 0 && !rstKnown.bMany && !rstKnown.bOptional &&
                (!rstKnown.fnRead || rstKnown.fnRead(_rElement))) {
                TellMissingChild(_rElement, rstKnown);
            }
        }
        // What the element itself is missing comes before what is found in it.
        std::rotate(m_vecFinding.begin() + iOwn, m_vecFinding.begin() + iChildren, m_vecFinding.end());
    }

    void CheckText(const XmlElement& _rElement, const XmlElement& _rOwner, const std::string& _rsWhat,
                   std::wstring_view _svText, const TextShape& _rstText)
    {
        if (_rstText.Accepts(_svText)) {
            return;
        }
        const Strange enStrange = _rstText.StrangeAt(_rOwner);
        if (enStrange == Strange::Unread) {
            return;
        }
        const bool bDefault = IsDefault(enStrange);
        const std::string sElse = bDefault && !_rstText.sElse.empty() ? ": " + _rstText.sElse : "";
        const std::string sReadAs = ToUtf8(_rstText.ReadAs(_svText));
        if (_rstText.pWords != nullptr) {
            std::vector<std::wstring_view> vecKnown;
            for (const Frwk::Word& stWord : _rstText.pWords->aWord) {
                vecKnown.push_back(stWord.svText);
            }
            const std::string sDefault = sElse.empty() && bDefault ? ": read as \"" + sReadAs + "\"" : sElse;
            TellStrange(_rElement, enStrange, Rule::UnknownWord,
                        "unknown word " + Cited(_svText) + " of " + _rsWhat + sDefault, Suggestion(_svText, vecKnown));
        } else if (_rstText.sForm.empty()) {
            TellStrange(_rElement, enStrange, Rule::BadText, _rsWhat + " is empty" + sElse);
        } else {
            const std::string sDefault = sElse.empty() && bDefault ? " is read as " + sReadAs : sElse;
            TellStrange(_rElement, enStrange, Rule::BadText,
                        _rsWhat + " is no " + _rstText.sForm + ": " + Cited(_svText) + sDefault);
        }
    }

    void TellMissing(const XmlElement& _rElement, const std::string& _rsWhat, const TextShape& _rstText)
    {
        const Strange enStrange = _rstText.StrangeAt(_rElement);
        if (enStrange == Strange::Unread || enStrange == Strange::Optional) {
            return;
        }
        std::string sText = _rsWhat + " is missing";
        if (enStrange == Strange::Default && !_rstText.Accepts(_rstText.svAbsent) && !_rstText.sElse.empty()) {
            sText += ": " + _rstText.sElse;
        } else if (enStrange == Strange::Default) {
            const std::wstring tszReadAs = _rstText.ReadAs(_rstText.svAbsent);
            sText += ": read as " + (tszReadAs.empty() ? "empty" : Cited(tszReadAs));
        }
        TellStrange(_rElement, enStrange, Rule::Missing, sText);
    }

    void TellMissingChild(const XmlElement& _rElement, const ElementShape& _rstKnown)
    {
        for (const TextShape& stText : _rstKnown.vecText) {
            TellMissing(_rElement, Cited(_rstKnown.svName), stText);
        }
        if (_rstKnown.vecText.empty()) {
            Tell(_rElement, _rstKnown.bIndispensable ? Severity::Error : Severity::Warning, Rule::Missing,
                 Cited(_rstKnown.svName) + " is missing: nothing is read there");
        }
    }

    void TellUnknown(const XmlElement& _rChild, const ElementShape& _rstShape)
    {
        const std::string sInstead = Instead(_rChild.Name(), _rstShape, false);
        if (_rstShape.bRefusesOthers) {
            TellChild(_rChild, Severity::Error, Rule::UnknownName,
                      "no item is called " + Cited(_rChild.Name()) + Consequence(Strange::Refuse) + sInstead);
        } else {
            TellChild(_rChild, Severity::Warning, Rule::UnknownName,
                      "no reader looks at " + Cited(_rChild.Name()) + sInstead);
        }
    }

    /** Reports a finding about a child that is not descended into. */
    void TellChild(const XmlElement& _rChild, Severity _enSeverity, Rule _enRule, std::string _sText)
    {
        Enter(_rChild);
        Tell(_rChild, _enSeverity, _enRule, std::move(_sText));
        m_vecPath.pop_back();
    }

    /** What a name that no reader looks at may mean: an attribute, or an element. */
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
        return svNearest.empty() ? std::string() : "; did you mean " + Cited(svNearest) + "?";
    }

    /** Attributes that belong to XML and its schemas, in every document. */
    static bool IsOfTheForm(std::wstring_view _svName)
    {
        return _svName.starts_with(L"xml") || _svName.starts_with(L"xsi:");
    }

    /** Nobody refuses a document for what is in an element that is passed over. */
    void TellStrange(const XmlElement& _rElement, Strange _enStrange, Rule _enRule, const std::string& _rsText,
                     const std::string& _rsSuggestion = {})
    {
        const bool bDefault = IsDefault(_enStrange);
        const Strange enStrange = m_bDropped && _enStrange == Strange::Refuse ? Strange::Drop : _enStrange;
        Tell(_rElement, bDefault ? Severity::Warning : Severity::Error, _enRule,
             _rsText + (bDefault ? "" : Consequence(enStrange)) + _rsSuggestion);
        m_bDrops = m_bDrops || enStrange == Strange::Drop;
    }

    void Tell(const XmlElement& _rElement, Severity _enSeverity, Rule _enRule, std::string _sText)
    {
        std::string sPath;
        for (const std::wstring_view svName : m_vecPath) {
            sPath += "/" + ToUtf8(svName);
        }
        m_vecFinding.push_back(
            {_rElement.Line(), _rElement.Column(), _enSeverity, _enRule, std::move(sPath), std::move(_sText)});
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
    bool m_bDropped = false; // the reader does not come here: an element around this one is passed over
    bool m_bDrops = false;   // the present element is passed over, and with it what is in it
    const Progress& m_fnProgress;
};

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
        return {{std::max(stPlace.ulLine, 1U), stPlace.ulColumn, Severity::Error, Rule::NotWellFormed, "",
                 "not well-formed at column " + std::to_string(stPlace.ulColumn) + ": " + cParser.FailureText()}};
    }
    const auto ulLines = static_cast<std::uint32_t>(std::ranges::count(_svText, '\n'));
    Checker cChecker(ulLines, _fnProgress);
    cChecker.CheckRoot(cRoot, ShapeOf(_rstDocument, cRoot));
    return cChecker.Take();
}

bool IsStored(const Varnhelt::Document& _rstDocument)
{
    return std::ranges::any_of(Varnhelt::ValueTypes(), [&](const Varnhelt::ValueTypeRow& _rstRow) {
        return _rstRow.enDocument == _rstDocument.enId && _rstRow.pfnStore != nullptr;
    });
}

/** What a store does not write back. */
void AddNotStored(std::string_view _svPlain, std::vector<Finding>& _rvecFinding)
{
    const std::string sText = ZkCommon::String::FileTextToUtf8(_svPlain);
    MarkupScan cScan(sText);
    while (const auto stMarkup = cScan.Next()) {
        if (stMarkup->enKind == MarkupScan::Kind::Start) {
            continue;
        }
        const std::string_view svBefore = std::string_view(sText).substr(0, stMarkup->uOffset);
        const auto uLine = static_cast<std::size_t>(std::ranges::count(svBefore, '\n')) + 1;
        const std::string_view svInLine = svBefore.substr(svBefore.rfind('\n') + 1); // npos + 1 is 0
        const auto IsCharacter = [](char _c) { return (static_cast<unsigned char>(_c) & 0xC0U) != 0x80; };
        const auto uColumn = static_cast<std::size_t>(std::ranges::count_if(svInLine, IsCharacter)) + 1;
        const std::string sWhat = stMarkup->enKind == MarkupScan::Kind::Doctype
                                      ? "the document type declaration"
                                      : "the processing instruction \"" + std::string(stMarkup->svName) + "\"";
        _rvecFinding.push_back({static_cast<std::uint32_t>(uLine), static_cast<std::uint32_t>(uColumn),
                                Severity::Warning, Rule::NotStored, "", sWhat + " goes when the document is stored"});
    }
    std::ranges::stable_sort(_rvecFinding, {}, &Finding::ulLine);
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

std::vector<Finding> CheckContent(const Varnhelt::Document& _rstDocument, std::string_view _svBytes,
                                  const Progress& _fnProgress)
{
    if (_fnProgress) {
        _fnProgress(0);
    }
    const std::optional<std::string> sPlain = PlainContent(_rstDocument, _svBytes);
    if (!sPlain) {
        const bool bWhole = _svBytes.size() % ZkCommon::Cryptograph::Aes::g_uBlock == 0;
        return {{1, 1, Severity::Error, Rule::NotADocument, "",
                 bWhole
                     ? "neither XML nor encrypted with this document's key"
                     : "neither XML nor a whole encrypted document: its size is not a multiple of 16 bytes, so it is "
                       "cut off or of another kind"}};
    }
    std::vector<Finding> vecFinding = CheckText(_rstDocument, *sPlain, _fnProgress);
    if (IsStored(_rstDocument)) {
        AddNotStored(*sPlain, vecFinding);
    }
    return vecFinding;
}

std::vector<Finding> CheckDocument(const Varnhelt::Document& _rstDocument, const std::wstring& _rtszPath,
                                   const Progress& _fnProgress)
{
    return CheckContent(_rstDocument, ReadInputFile(ToUtf8(_rtszPath)), _fnProgress);
}

} // namespace Vrnt
