#include "ZkComn_XmlElement.h"

#include "ZkComn_Exception.h"
#include "ZkComn_XmlTree.h"

namespace ZkCommon::Storage {

namespace {

/** Turns a refused allocation into the library's own exception. */
template <class TBody>
auto WithMemory(TBody&& _fnBody)
{
    try {
        return _fnBody();
    } catch (const std::bad_alloc&) {
        throw new XmlException(ZkCommon::Exception::g_ulNoSystemError);
    }
}

XmlNode* FirstNamed(XmlNode* _pNode, std::uint32_t _ulName) noexcept
{
    while (_pNode != nullptr && _pNode->ulName != _ulName) {
        _pNode = _pNode->Next();
    }
    return _pNode;
}

const XmlAttributeNode* FindAttribute(const XmlNode* _pNode, XmlName _name) noexcept
{
    const XmlAttributeNode* pAttribute = _pNode != nullptr ? _pNode->FirstAttribute() : nullptr;
    while (pAttribute != nullptr && pAttribute->ulName != _name.Id()) {
        pAttribute = pAttribute->pNext;
    }
    return pAttribute;
}

/** Splits the first name off a path; the rest is empty after the last. */
std::wstring_view TakeName(std::wstring_view& _rsvPath) noexcept
{
    const std::size_t uEnd = _rsvPath.find(L'/');
    const std::wstring_view svName = _rsvPath.substr(0, uEnd);
    _rsvPath.remove_prefix(uEnd == std::wstring_view::npos ? _rsvPath.size() : uEnd + 1);
    return svName;
}

/** First node at a path below the parent of _pFirst. Calls itself once for each name of the path, whatever the tree. */
// NOLINTNEXTLINE(misc-no-recursion): as deep as the caller's path has names
XmlNode* FindPath(const XmlTree& _rTree, XmlNode* _pFirst, std::wstring_view _svPath) noexcept
{
    const std::uint32_t ulName = _rTree.Find(TakeName(_svPath)).Id();
    XmlNode* pNode = FirstNamed(_pFirst, ulName);
    while (pNode != nullptr && !_svPath.empty()) {
        if (XmlNode* pFound = FindPath(_rTree, pNode->FirstChild(), _svPath); pFound != nullptr) {
            return pFound;
        }
        pNode = FirstNamed(pNode->Next(), ulName);
    }
    return pNode;
}

} // namespace

XmlElement XmlElement::At(XmlNode* _pNode) const noexcept
{
    return _pNode != nullptr ? XmlElement(m_pTree, _pNode) : XmlElement();
}

std::wstring_view XmlElement::Name() const noexcept
{
    return m_pNode != nullptr ? m_pTree->NameOf(m_pNode->ulName) : L"";
}

std::wstring_view XmlElement::Text() const noexcept
{
    return m_pNode != nullptr ? m_pNode->Text() : L"";
}

bool XmlElement::IsComment() const noexcept
{
    return m_pNode != nullptr && m_pNode->ulName == XmlTree::g_ulNoName && m_pNode->TextRecord() != nullptr;
}

std::uint32_t XmlElement::Line() const noexcept
{
    return m_pNode != nullptr ? m_pTree->PlaceOf(m_pNode).ulLine : 0;
}

std::uint32_t XmlElement::Column() const noexcept
{
    return m_pNode != nullptr ? m_pTree->PlaceOf(m_pNode).ulColumn : 0;
}

std::uint32_t XmlElement::TextLine() const noexcept
{
    return m_pNode != nullptr ? m_pTree->PlaceOf(m_pNode).ulTextLine : 0;
}

std::uint32_t XmlElement::TextColumn() const noexcept
{
    return m_pNode != nullptr ? m_pTree->PlaceOf(m_pNode).ulTextColumn : 0;
}

XmlName XmlElement::FindName(std::wstring_view _svName) const
{
    if (m_pTree == nullptr || m_pTree->Source() == nullptr) {
        return KnownName(_svName);
    }
    return WithMemory([&] { return XmlName(m_pTree->Intern(_svName)); }); // the document may still use it
}

XmlName XmlElement::KnownName(std::wstring_view _svName) const noexcept
{
    return m_pTree != nullptr ? m_pTree->Find(_svName) : XmlName();
}

bool XmlElement::Is(XmlName _name) const noexcept
{
    return m_pNode != nullptr && m_pNode->ulName == _name.Id();
}

XmlElement XmlElement::FirstChild() const noexcept
{
    return m_pNode != nullptr ? At(XmlTree::FirstElement(m_pNode->FirstChild())) : XmlElement();
}

XmlElement XmlElement::FirstChild(std::wstring_view _svName) const noexcept
{
    return FirstChild(KnownName(_svName));
}

XmlElement XmlElement::FirstChild(XmlName _name) const noexcept
{
    return m_pNode != nullptr ? At(FirstNamed(m_pNode->FirstChild(), _name.Id())) : XmlElement();
}

XmlElement XmlElement::NextSibling() const noexcept
{
    return m_pNode != nullptr ? At(XmlTree::FirstElement(m_pNode->Next())) : XmlElement();
}

XmlElement XmlElement::NextSibling(std::wstring_view _svName) const noexcept
{
    return NextSibling(KnownName(_svName));
}

XmlElement XmlElement::NextSibling(XmlName _name) const noexcept
{
    return m_pNode != nullptr ? At(FirstNamed(m_pNode->Next(), _name.Id())) : XmlElement();
}

XmlElement XmlElement::NextNamesake() const noexcept
{
    return m_pNode != nullptr ? At(FirstNamed(m_pNode->Next(), m_pNode->ulName)) : XmlElement();
}

XmlElement XmlElement::NextChild(XmlElement _passed) const
{
    if (XmlChildSource* pSource = m_pNode != nullptr ? m_pTree->SourceOf(m_pNode) : nullptr; pSource != nullptr) {
        return At(pSource->NextChild(_passed.m_pNode));
    }
    return _passed ? _passed.NextSibling() : FirstChild();
}

XmlElement XmlElement::NextChild() const // no default argument: clang refuses one of a class within itself
{
    return NextChild({});
}

double XmlElement::Share() const noexcept
{
    const XmlChildSource* pSource = m_pNode != nullptr ? m_pTree->SourceOf(m_pNode) : nullptr;
    return pSource != nullptr ? pSource->Share() : 1;
}

void XmlElement::Charge(std::size_t _uBytes) const
{
    if (m_pTree != nullptr) {
        try {
            m_pTree->Arena().Charge(_uBytes);
        } catch (const XmlArena::AboveLimit&) {
            throw new XmlException(ZkCommon::Exception::g_ulNoSystemError, XML_ERROR_AMPLIFICATION_LIMIT_BREACH,
                                   Line());
        }
    }
}

XmlElement XmlElement::FirstNode() const noexcept
{
    return m_pNode != nullptr ? At(m_pNode->FirstChild()) : XmlElement();
}

XmlElement XmlElement::NextNode() const noexcept
{
    return m_pNode != nullptr ? At(m_pNode->Next()) : XmlElement();
}

XmlElement XmlElement::Parent() const noexcept
{
    const XmlNode* pLast = m_pNode;
    if (pLast == nullptr) {
        return {};
    }
    while (!pLast->IsLast()) {
        pLast = pLast->Next();
    }
    XmlNode* pParent = pLast->ParentOfLast();
    // The node above the root has no name: it is nobody's parent.
    return pParent != nullptr && pParent->ulName != XmlTree::g_ulNoName ? XmlElement(m_pTree, pParent) : XmlElement();
}

XmlElement XmlElement::Child(std::wstring_view _svPath) const noexcept
{
    if (_svPath == L".") {
        return *this;
    }
    if (_svPath.starts_with(L"./")) {
        _svPath.remove_prefix(2);
    }
    return m_pNode != nullptr && !_svPath.empty() ? At(FindPath(*m_pTree, m_pNode->FirstChild(), _svPath))
                                                  : XmlElement();
}

std::wstring_view XmlElement::ChildText(std::wstring_view _svPath, std::wstring_view _svDefault) const noexcept
{
    const XmlElement child = Child(_svPath);
    return child ? child.Text() : _svDefault;
}

std::wstring_view XmlElement::ChildText(XmlName _name, std::wstring_view _svDefault) const noexcept
{
    const XmlElement child = FirstChild(_name);
    return child ? child.Text() : _svDefault;
}

bool XmlElement::HasAttribute(std::wstring_view _svName) const noexcept
{
    return FindAttribute(m_pNode, KnownName(_svName)) != nullptr;
}

std::wstring_view XmlElement::Attribute(std::wstring_view _svName, std::wstring_view _svDefault) const noexcept
{
    return Attribute(KnownName(_svName), _svDefault);
}

std::wstring_view XmlElement::Attribute(XmlName _name, std::wstring_view _svDefault) const noexcept
{
    const XmlAttributeNode* pAttribute = FindAttribute(m_pNode, _name);
    return pAttribute != nullptr ? pAttribute->stValue.View() : _svDefault;
}

XmlElement::AttributeRange XmlElement::Attributes() const noexcept
{
    return {m_pTree, m_pNode != nullptr ? m_pNode->FirstAttribute() : nullptr};
}

XmlAttribute XmlElement::AttributeRange::Iterator::operator*() const noexcept
{
    const auto* pAttribute = static_cast<const XmlAttributeNode*>(m_pAt);
    return {m_pTree->NameOf(pAttribute->ulName), pAttribute->stValue.View()};
}

XmlName XmlElement::AttributeRange::Iterator::Name() const noexcept
{
    return XmlName(static_cast<const XmlAttributeNode*>(m_pAt)->ulName);
}

XmlElement::AttributeRange::Iterator& XmlElement::AttributeRange::Iterator::operator++() noexcept
{
    m_pAt = static_cast<const XmlAttributeNode*>(m_pAt)->pNext;
    return *this;
}

void XmlElement::SetAttribute(std::wstring_view _svName, std::wstring_view _svValue)
{
    if (m_pNode == nullptr || _svName.empty()) {
        return;
    }
    WithMemory([&] {
        const std::uint32_t ulName = m_pTree->Intern(_svName);
        XmlAttributeNode** ppLink = &m_pTree->ExtrasOf(m_pNode).pFirstAttribute;
        while (*ppLink != nullptr && (*ppLink)->ulName != ulName) {
            ppLink = &(*ppLink)->pNext;
        }
        if (*ppLink != nullptr && (*ppLink)->stValue.View() == _svValue) {
            return; // and views of it stay
        }
        XmlAttributeNode* pNew = m_pTree->NewAttribute(ulName, _svValue);
        pNew->pNext = *ppLink != nullptr ? (*ppLink)->pNext : nullptr;
        *ppLink = pNew;
    });
}

void XmlElement::SetText(std::wstring_view _svText)
{
    if (m_pNode != nullptr && m_pNode->Text() != _svText) {
        WithMemory([&] { m_pTree->SetText(m_pNode, _svText.empty() ? nullptr : m_pTree->NewText(_svText)); });
    }
}

XmlElement XmlElement::AddChild(std::wstring_view _svName)
{
    if (m_pNode == nullptr || IsComment() || _svName.empty()) {
        return {};
    }
    return WithMemory([&] {
        XmlNode* pNode = m_pTree->NewNode(m_pTree->Intern(_svName));
        m_pTree->Append(m_pNode, pNode);
        return XmlElement(m_pTree, pNode);
    });
}

XmlElement XmlElement::AddComment(std::wstring_view _svText)
{
    if (m_pNode == nullptr || IsComment() || _svText.empty()) {
        return {};
    }
    return WithMemory([&] {
        XmlNode* pNode = m_pTree->NewNode(XmlTree::g_ulNoName);
        m_pTree->SetText(pNode, m_pTree->NewText(_svText));
        m_pTree->Append(m_pNode, pNode);
        return XmlElement(m_pTree, pNode);
    });
}

} // namespace ZkCommon::Storage
