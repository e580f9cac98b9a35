#include "Check/DocumentSchema.h"

#include "Check/DocumentPage.h"
#include "Check/DocumentShape.h"
#include "Documents/EnforceData.h"
#include "Output/Html.h"
#include "Resource.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <cwctype>
#include <map>
#include <utility>

namespace Vrnt {

namespace {

using Kind = TextShape::Kind;

/** An element of the schema. */
struct Node
{
    std::wstring tszName;
    std::vector<std::pair<std::wstring_view, std::wstring>> vecAttribute{};
    std::wstring tszText{};
    std::vector<Node> vecChild{};

    Node& With(std::wstring_view _svName, std::wstring_view _svValue)
    {
        vecAttribute.emplace_back(_svName, _svValue);
        return *this;
    }
    Node& Add(Node _stChild) { return vecChild.emplace_back(std::move(_stChild)); }
};

Node Xs(const wchar_t* _pszName)
{
    return {.tszName = std::wstring(L"xs:") + _pszName};
}

std::string XmlEscaped(std::wstring_view _svText)
{
    return Html::Markup(ZkCommon::String::ToUtf8(_svText)).Source(); // the two languages escape alike
}

void AppendNode(std::string& _rsTo, const Node& _rstNode, std::size_t _uDepth)
{
    const std::string sIndent(2 * _uDepth, ' ');
    const std::string sName = ZkCommon::String::ToUtf8(_rstNode.tszName);
    _rsTo += sIndent + "<" + sName;
    for (const auto& [svName, tszValue] : _rstNode.vecAttribute) {
        _rsTo += " " + ZkCommon::String::ToUtf8(svName) + "=\"" + XmlEscaped(tszValue) + "\"";
    }
    if (_rstNode.vecChild.empty() && _rstNode.tszText.empty()) {
        _rsTo += "/>\n";
        return;
    }
    _rsTo += ">" + XmlEscaped(_rstNode.tszText);
    if (!_rstNode.vecChild.empty()) {
        _rsTo += "\n";
        for (const Node& stChild : _rstNode.vecChild) {
            AppendNode(_rsTo, stChild, _uDepth + 1);
        }
        _rsTo += sIndent;
    }
    _rsTo += "</" + sName + ">\n";
}

std::string Printed(const Node& _rstRoot)
{
    std::string sText = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    AppendNode(sText, _rstRoot, 0);
    return sText;
}

Node Documentation(std::wstring _tszText)
{
    Node stNode = Xs(L"annotation");
    stNode.Add(Xs(L"documentation")).tszText = std::move(_tszText);
    return stNode;
}

/** What an author is to know of a text: what becomes of it when it is missing or is not accepted. */
std::wstring Explain(const TextShape& _rstText)
{
    using ZkCommon::String::FromUtf8;
    std::wstring tszText = FromUtf8(_rstText.sWhen);
    if (_rstText.fnStrange) {
        tszText += L"Used where the other texts ask for it.";
    }
    tszText += tszText.empty() ? L"" : L" ";
    const std::wstring tszMust = _rstText.pWords == nullptr ? FromUtf8(_rstText.sForm) : std::wstring();
    const bool bRefuse = _rstText.enStrange == Strange::Refuse;
    if (bRefuse || _rstText.enStrange == Strange::Drop) {
        tszText += _rstText.bOptional ? L"" : L"Needed. ";
        tszText += tszMust.empty() ? L"With anything else " : L"If it is no " + tszMust + L", ";
        return tszText + (bRefuse ? L"the reader refuses the document." : L"the element is passed over.");
    }
    if (!_rstText.sElse.empty()) {
        return tszText + L"Else " + FromUtf8(_rstText.sElse) + L".";
    }
    const std::wstring tszDefault = _rstText.ReadAs(_rstText.svAbsent);
    return tszText + (tszDefault.empty() ? L"Default: empty." : L"Default: " + tszDefault + L".");
}

/** A pattern that is the word in any case. */
std::wstring AnyCase(std::wstring_view _svWord)
{
    std::wstring tszPattern;
    for (const wchar_t c : _svWord) {
        if (std::iswalpha(static_cast<wint_t>(c)) == 0) {
            tszPattern += c;
        } else {
            tszPattern += {L'[', static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c))),
                           static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c))), L']'};
        }
    }
    return tszPattern;
}

/** Texts of which each value satisfies the facet. */
Node Restriction(std::vector<Node> _vecFacet)
{
    Node stType = Xs(L"simpleType");
    stType.Add(Xs(L"restriction")).With(L"base", L"xs:string").vecChild = std::move(_vecFacet);
    return stType;
}

Node Facet(const wchar_t* _pszName, std::wstring_view _svValue)
{
    return Xs(_pszName).With(L"value", _svValue);
}

/** Builds a schema; sets of words and forms of numbers become types with a name, as often as they are used. */
class SchemaBuilder
{
public:
    explicit SchemaBuilder(const DocumentPage& _rPage) : m_rPage(_rPage) {}

    Node Build(const ElementShape& _rstRoot)
    {
        Node stRoot = Element(_rstRoot, {});
        if (!m_rPage.Purpose().empty()) {
            stRoot.vecChild.insert(stRoot.vecChild.begin(),
                                   Documentation(ZkCommon::String::FromUtf8(m_rPage.Purpose())));
        }
        Node stSchema = Xs(L"schema").With(L"xmlns:xs", L"http://www.w3.org/2001/XMLSchema");
        stSchema.Add(std::move(stRoot));
        for (Node& rstGlobal : m_vecGlobal) {
            stSchema.Add(std::move(rstGlobal));
        }
        return stSchema;
    }

private:
    /** What a name is to its owner, then what becomes of its text. */
    Node Documented(std::wstring_view _svOwner, std::wstring_view _svName, const TextShape& _rstText) const
    {
        using namespace ZkCommon::String;
        const std::wstring tszMeaning = FromUtf8(m_rPage.Meaning(ToUtf8(_svOwner), ToUtf8(_svName)));
        return Documentation(tszMeaning + (tszMeaning.empty() ? L"" : L". ") + Explain(_rstText));
    }

    Node Element(const ElementShape& _rstShape, std::wstring_view _svOwner)
    {
        Node stElement = Xs(L"element").With(L"name", _rstShape.svName);
        const bool bLeaf = _rstShape.vecChild.empty() && _rstShape.vecAttribute.empty();
        if (!_rstShape.vecText.empty()) {
            stElement.Add(Documented(_svOwner, _rstShape.svName, _rstShape.vecText.front()));
        }
        if (_rstShape.bUnread) {
            Node stType = Xs(L"complexType").With(L"mixed", L"true");
            AddForeign(stType, true);
            stElement.Add(std::move(stType));
        } else if (bLeaf && !_rstShape.vecText.empty()) {
            stElement.With(L"type", TypeOf(_svOwner, _rstShape.svName, _rstShape.vecText.front()));
        } else {
            stElement.Add(ComplexType(_rstShape, _svOwner));
        }
        return stElement;
    }

    Node ComplexType(const ElementShape& _rstShape, std::wstring_view _svOwner)
    {
        Node stType = Xs(L"complexType");
        if (!_rstShape.vecText.empty()) { // no document has an element with both a text and elements
            Node stExtension =
                Xs(L"extension").With(L"base", TypeOf(_svOwner, _rstShape.svName, _rstShape.vecText.front()));
            AddAttributes(stExtension, _rstShape);
            stType.Add(Xs(L"simpleContent")).Add(std::move(stExtension));
            return stType;
        }
        AddChildren(stType, _rstShape);
        AddAttributes(stType, _rstShape);
        return stType;
    }

    void AddChildren(Node& _rstType, const ElementShape& _rstShape)
    {
        if (_rstShape.bForeign) {
            // Others' elements may be anywhere: those that are known are looked into wherever they are.
            for (const ElementShape& stChild : _rstShape.vecChild) {
                AddGlobal(Element(stChild, _rstShape.svName));
            }
            AddForeign(_rstType, false);
            return;
        }
        if (_rstShape.vecChild.empty()) {
            return;
        }
        const bool bAll =
            std::ranges::none_of(_rstShape.vecChild, [](const ElementShape& _rstChild) { return _rstChild.bMany; });
        Node stGroup = bAll ? Xs(L"all") : Xs(L"choice").With(L"minOccurs", L"0").With(L"maxOccurs", L"unbounded");
        for (const ElementShape& stChild : _rstShape.vecChild) {
            if (stChild.bAnyName) {
                ElementShape stUsual = stChild;
                stUsual.svName = Varnhelt::Documents::g_svDataProvider;
                AddGlobal(Element(stUsual, _rstShape.svName));
                stGroup.Add(Xs(L"any")).With(L"namespace", L"##any").With(L"processContents", L"lax");
                continue;
            }
            Node stElement = Element(stChild, _rstShape.svName);
            if (bAll && !stChild.bIndispensable) {
                stElement.With(L"minOccurs", L"0");
            }
            stGroup.Add(std::move(stElement));
        }
        _rstType.Add(std::move(stGroup));
    }

    void AddAttributes(Node& _rstType, const ElementShape& _rstShape)
    {
        for (const AttributeShape& stAttribute : _rstShape.vecAttribute) {
            Node& rstAttribute = _rstType.Add(Xs(L"attribute"))
                                     .With(L"name", stAttribute.svName)
                                     .With(L"type", TypeOf(_rstShape.svName, stAttribute.svName, stAttribute.stText));
            if (IsNeeded(stAttribute.stText)) {
                rstAttribute.With(L"use", L"required");
            }
            rstAttribute.Add(Documented(_rstShape.svName, stAttribute.svName, stAttribute.stText));
        }
        if (_rstShape.bForeign) {
            _rstType.Add(Xs(L"anyAttribute")).With(L"processContents", L"skip");
        }
    }

    static bool IsNeeded(const TextShape& _rstText)
    {
        return (_rstText.enStrange == Strange::Drop || _rstText.enStrange == Strange::Refuse) && !_rstText.bOptional;
    }

    static void AddForeign(Node& _rstType, bool _bWithAttributes)
    {
        _rstType.Add(Xs(L"sequence"))
            .Add(Xs(L"any"))
            .With(L"minOccurs", L"0")
            .With(L"maxOccurs", L"unbounded")
            .With(L"processContents", _bWithAttributes ? L"skip" : L"lax");
        if (_bWithAttributes) {
            _rstType.Add(Xs(L"anyAttribute")).With(L"processContents", L"skip");
        }
    }

    void AddGlobal(Node _stNode)
    {
        const std::wstring tszName = _stNode.vecAttribute.front().second;
        if (std::ranges::none_of(m_vecGlobal, [&](const Node& _rstGlobal) {
                return _rstGlobal.tszName == _stNode.tszName && _rstGlobal.vecAttribute.front().second == tszName;
            })) {
            m_vecGlobal.push_back(std::move(_stNode));
        }
    }

    /** The name of the type of the text that an owner has under a name. */
    std::wstring TypeOf(std::wstring_view _svOwner, std::wstring_view _svName, const TextShape& _rstText)
    {
        switch (_rstText.enKind) {
        case Kind::Word:
            return WordType(_svOwner, _svName, _rstText);
        case Kind::Number:
            return NumberType(L"number", {L"0[xX]0*[0-9A-Fa-f]{1,8}", L"0[0-7]*", L"[1-9][0-9]{0,8}", L"[1-3][0-9]{9}",
                                          L"4[01][0-9]{8}", L"42[0-8][0-9]{7}", L"429[0-3][0-9]{6}",
                                          L"4294[0-8][0-9]{5}", L"42949[0-5][0-9]{4}", L"429496[0-6][0-9]{3}",
                                          L"4294967[01][0-9]{2}", L"42949672[0-8][0-9]", L"429496729[0-5]"});
        case Kind::Decimal:
            return NumberType(L"decimal", {L"[-+]?[0-9]+"});
        default:
            return L"xs:string";
        }
    }

    std::wstring NumberType(const wchar_t* _pszName, const std::vector<std::wstring>& _vecPattern)
    {
        std::vector<Node> vecPattern;
        vecPattern.reserve(_vecPattern.size());
        for (const std::wstring& tszPattern : _vecPattern) {
            vecPattern.push_back(Facet(L"pattern", tszPattern));
        }
        Node stType = Restriction(std::move(vecPattern));
        stType.vecAttribute = {{L"name", _pszName}};
        AddGlobal(std::move(stType));
        return _pszName;
    }

    /** A set of words, with what each means to a name of an owner. One that may be empty has the empty text besides. */
    Node WordSet(std::wstring_view _svOwner, std::wstring_view _svName, const TextShape& _rstText) const
    {
        using namespace ZkCommon::String;
        const Frwk::WordTable& rstTable = *_rstText.pWords;
        std::vector<Node> vecWord;
        std::vector<Node> vecAnyCase;
        for (const Frwk::Word& stWord : rstTable.aWord) {
            Node& rstWord = vecWord.emplace_back(Facet(L"enumeration", stWord.svText));
            if (const std::string sMeaning =
                    m_rPage.WordMeaning(ToUtf8(_svOwner), ToUtf8(_svName), ToUtf8(stWord.svText));
                !sMeaning.empty()) {
                rstWord.Add(Documentation(FromUtf8(sMeaning)));
            }
            vecAnyCase.push_back(Facet(L"pattern", AnyCase(stWord.svText)));
        }
        if (_rstText.bOptional && Frwk::Utility::FindWord(rstTable, {}) == nullptr) {
            vecWord.push_back(Facet(L"enumeration", {}));
        }
        Node stType = Restriction(std::move(vecWord));
        if (rstTable.bAnyCase) { // editors complete by the first, and validate by either
            Node stUnion = Xs(L"simpleType");
            Node& rstUnion = stUnion.Add(Xs(L"union"));
            rstUnion.Add(std::move(stType));
            rstUnion.Add(Restriction(std::move(vecAnyCase)));
            stType = std::move(stUnion);
        }
        return stType;
    }

    /** Sets that are equal are one type, which is named after what uses it first. */
    std::wstring WordType(std::wstring_view _svOwner, std::wstring_view _svName, const TextShape& _rstText)
    {
        Node stType = WordSet(_svOwner, _svName, _rstText);
        const auto [itName, bNew] = m_mapWords.try_emplace(Printed(stType));
        if (bNew) {
            std::wstring tszName = std::wstring(_svName) + L"Word";
            while (std::ranges::any_of(m_mapWords, [&](const auto& _rPair) { return _rPair.second == tszName; })) {
                tszName += L's';
            }
            itName->second = std::move(tszName);
            stType.vecAttribute = {{L"name", itName->second}};
            AddGlobal(std::move(stType));
        }
        return itName->second;
    }

    const DocumentPage& m_rPage;
    std::vector<Node> m_vecGlobal;
    std::map<std::string, std::wstring> m_mapWords; // the names of sets of words, by the type without its name
};

} // namespace

std::string SchemaOf(const Varnhelt::Document& _rstDocument)
{
    const DocumentPage cPage(FindProgramResource("documents.md", L"DOCS"),
                             ZkCommon::String::ToUtf8(_rstDocument.svName));
    return Printed(SchemaBuilder(cPage).Build(ShapeOf(_rstDocument)));
}

std::string SchemaCatalog()
{
    Node stCatalog{.tszName = L"catalog"};
    stCatalog.With(L"xmlns", L"urn:oasis:names:tc:entity:xmlns:xml:catalog");
    std::wstring_view svLast;
    for (const Varnhelt::Document& stDocument : Varnhelt::DocumentTable()) {
        if (stDocument.svName == svLast) {
            continue; // both tables of threats have one schema
        }
        svLast = stDocument.svName;
        const std::wstring tszName = L"urn:varnhelt:" + std::wstring(svLast);
        const std::wstring tszFile = std::wstring(svLast) + L".xsd";
        stCatalog.Add({.tszName = L"system"}).With(L"systemId", tszName).With(L"uri", tszFile);
        stCatalog.Add({.tszName = L"uri"}).With(L"name", tszName).With(L"uri", tszFile);
    }
    return Printed(stCatalog);
}

} // namespace Vrnt
