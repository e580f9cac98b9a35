#include "Diff/DocumentRecords.h"

#include "Arguments.h"
#include "Check/DocumentContent.h"
#include "Check/DocumentShape.h"
#include "Output/Output.h"
#include "ZkComn_Exception.h"
#include "ZkComn_String.h"
#include "ZkComn_XmlParser.h"

#include <algorithm>
#include <optional>
#include <set>

namespace Vrnt {

namespace {

using ZkCommon::String::ToUtf8;

/** Fields that tell records from each other for people, where the reader knows no identity. */
constexpr std::string_view g_aNamingField[] = {"id",   "label", "name", "moduleName", "skuName",
                                               "root", "path",  "Root", "Key",        "key"};
constexpr std::size_t g_uMostInTitle = 2;
constexpr std::size_t g_uLongestInTitle = 60;

std::string KeyOf(const TextShape& _rstText, std::wstring_view _svName)
{
    return _rstText.szKey != nullptr ? _rstText.szKey : ToUtf8(_svName);
}

/** What a text is to the reader; std::nullopt where it is missing. */
std::string SeenText(const TextShape& _rstText, const std::optional<std::wstring_view>& _svText)
{
    const std::wstring_view svText = _svText.value_or(_rstText.svAbsent);
    return svText.empty() && _rstText.bOptional ? std::string() : ToUtf8(_rstText.ReadAs(svText));
}

/** Whether a text, or that it is missing, makes the reader pass over the record. */
bool IsDropped(const XmlElement& _rRecord, const TextShape& _rstText, const std::optional<std::wstring_view>& _svText)
{
    const bool bAccepted = _svText ? _rstText.Accepts(*_svText) : _rstText.bOptional;
    return !bAccepted && _rstText.StrangeAt(_rRecord) == Strange::Drop;
}

/** A container holds records and is not one itself. */
bool IsContainer(const ElementShape& _rstShape)
{
    return !_rstShape.bMany && !_rstShape.bUnread && !_rstShape.vecChild.empty();
}

std::optional<std::wstring_view> AttributeOf(const XmlElement& _rElement, std::wstring_view _svName)
{
    return _rElement && _rElement.HasAttribute(_svName) ? std::optional(_rElement.Attribute(_svName)) : std::nullopt;
}

/** Fills one record from its element. */
class RecordReader
{
public:
    RecordReader(const XmlElement& _rElement, DiffRecord& _rstRecord) : m_rElement(_rElement), m_rstRecord(_rstRecord)
    {}

    /** @return false where the reader passes the record over */
    bool Read(const ElementShape& _rstShape)
    {
        AddAttributes(m_rElement, _rstShape);
        if (!_rstShape.vecText.empty()) {
            const TextShape& rstText = _rstShape.vecText.front();
            AddText(rstText, KeyOf(rstText, L"text"), m_rElement.Text());
        }
        AddChildren(m_rElement, _rstShape, {});
        if (_rstShape.fnRule) {
            _rstShape.fnRule(m_rElement, [&](Strange _enStrange, const std::string&) {
                m_bDropped = m_bDropped || _enStrange == Strange::Drop;
            });
        }
        return !m_bDropped;
    }

private:
    void AddText(const TextShape& _rstText, std::string _sKey, const std::optional<std::wstring_view>& _svText)
    {
        if (_rstText.StrangeAt(m_rElement) != Strange::Unread) {
            m_bDropped = m_bDropped || IsDropped(m_rElement, _rstText, _svText);
            m_rstRecord.Add(std::move(_sKey), SeenText(_rstText, _svText));
        }
    }

    /** @param _rElement  the record's, or a child that holds some of its fields */
    void AddAttributes(const XmlElement& _rElement, const ElementShape& _rstShape)
    {
        for (const AttributeShape& stAttribute : _rstShape.vecAttribute) {
            AddText(stAttribute.stText, KeyOf(stAttribute.stText, stAttribute.svName),
                    AttributeOf(_rElement, stAttribute.svName));
        }
    }

    /** @param _rsContainer  the name of the container that _rElement is, where the record has several */
    void AddChildren(const XmlElement& _rElement, const ElementShape& _rstShape, const std::string& _rsContainer)
    {
        std::vector<std::vector<XmlElement>> vecChild(_rstShape.vecChild.size());
        for (auto cChild = _rElement.FirstChild(); cChild; cChild = cChild.NextSibling()) {
            const auto itShape = std::ranges::find_if(
                _rstShape.vecChild, [&](const ElementShape& _rst) { return _rst.Matches(cChild.Name()); });
            if (itShape != _rstShape.vecChild.end()) {
                vecChild[static_cast<std::size_t>(itShape - _rstShape.vecChild.begin())].push_back(cChild);
            }
        }
        const bool bSeveral = std::ranges::count_if(_rstShape.vecChild, &IsContainer) > 1;
        for (std::size_t i = 0; i < vecChild.size(); ++i) {
            const ElementShape& rstShape = _rstShape.vecChild[i];
            if (rstShape.bUnread || (rstShape.fnRead && !rstShape.fnRead(_rElement))) {
                continue;
            }
            if (rstShape.bMany) {
                AddRecords(vecChild[i], rstShape, _rsContainer);
                continue;
            }
            const XmlElement cFirst = vecChild[i].empty() ? XmlElement() : vecChild[i].front();
            AddAttributes(cFirst, rstShape);
            if (!rstShape.vecText.empty()) {
                const TextShape& rstText = rstShape.vecText.front();
                AddText(rstText, KeyOf(rstText, rstShape.svName), cFirst ? std::optional(cFirst.Text()) : std::nullopt);
            }
            AddChildren(cFirst, rstShape, bSeveral ? ToUtf8(rstShape.svName) : _rsContainer);
        }
    }

    void AddRecords(const std::vector<XmlElement>& _rvecElement, const ElementShape& _rstShape,
                    const std::string& _rsContainer)
    {
        std::set<std::wstring> setIdentity;
        for (const XmlElement& rElement : _rvecElement) {
            const std::wstring tszIdentity = _rstShape.fnIdentity ? _rstShape.fnIdentity(rElement) : std::wstring();
            if (_rstShape.fnIdentity && !setIdentity.insert(tszIdentity).second) {
                continue; // only the first counts
            }
            DiffRecord stRecord{_rsContainer + "/" + ToUtf8(_rstShape.svName), ToUtf8(tszIdentity)};
            if (!RecordReader(rElement, stRecord).Read(_rstShape)) {
                continue;
            }
            stRecord.sTitle = Joined({_rsContainer, TitleOf(stRecord, _rstShape)}, " ");
            m_rstRecord.vecRecord.push_back(std::move(stRecord));
        }
    }

    /** The identity; else the element's name and what authors tell it by, or its first fields. */
    static std::string TitleOf(const DiffRecord& _rstRecord, const ElementShape& _rstShape)
    {
        if (!_rstRecord.sIdentity.empty()) {
            std::string sTitle = _rstRecord.sIdentity;
            std::ranges::replace(sTitle, '\n', ' ');
            return sTitle.substr(0, sTitle.find_last_not_of(' ') + 1);
        }
        const std::string sElement = ToUtf8(_rstShape.svName);
        std::vector<std::string> vecNaming = {sElement};
        std::vector<std::string> vecFirst = {sElement};
        for (const auto& [sField, sValue] : _rstRecord.vecField) {
            if (sValue.empty() || sValue.size() > g_uLongestInTitle) {
                continue;
            }
            vecFirst.push_back(sValue);
            if (std::ranges::find(g_aNamingField, std::string_view(sField)) != std::end(g_aNamingField)) {
                vecNaming.push_back(sValue);
            }
        }
        std::vector<std::string>& rvecPart = vecNaming.size() > 1 ? vecNaming : vecFirst;
        rvecPart.resize(std::min(rvecPart.size(), 1 + g_uMostInTitle));
        return Joined(rvecPart, " ");
    }

    const XmlElement& m_rElement;
    DiffRecord& m_rstRecord;
    bool m_bDropped = false;
};

} // namespace

DiffRecord RecordsOf(const Varnhelt::Document& _rstDocument, std::string_view _svBytes, const std::string& _rsName)
{
    using ZkCommon::Storage::XmlParser;
    const std::optional<std::string> sPlain = PlainContent(_rstDocument, _svBytes);
    if (!sPlain) {
        throw UsageError(Quoted(_rsName) + " is neither XML nor encrypted with the key of " +
                         ToUtf8(_rstDocument.svName));
    }
    XmlParser cParser;
    cParser.SetProperty(L"PathOfDll", ToolFolder().wstring());
    XmlElement cRoot;
    try {
        cParser.LoadText(*sPlain, XmlParser::KeepWhole);
        cRoot = cParser.Document().FirstChild();
    } catch (ZkCommon::Storage::XmlException* _pError) {
        const ZkCommon::Exception::Caught pCaught(_pError);
        if (_pError->XmlErrorCode() == 0) {
            throw UsageError("the parser library libexpat.dll cannot be loaded");
        }
        throw UsageError(Quoted(_rsName) + " is not well-formed in line " +
                         std::to_string(cParser.FailurePlace().ulLine) + ": " + cParser.FailureText());
    }
    const ElementShape stShape = ShapeOf(_rstDocument, cRoot);
    if (cRoot.Name() != stShape.svName) {
        throw UsageError(Quoted(_rsName) + " is not a document of the kind " + ToUtf8(_rstDocument.svName) +
                         ": its root is " + Cited(cRoot.Name()) + ", not " + Cited(stShape.svName));
    }
    DiffRecord stRecord{{}, {}};
    RecordReader(cRoot, stRecord).Read(stShape);
    return stRecord;
}

} // namespace Vrnt
