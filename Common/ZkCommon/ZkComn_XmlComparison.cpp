#include "ZkComn_XmlComparison.h"

#include <algorithm>

namespace ZkCommon::Storage {

namespace {

void AppendWide(std::wstring& _rtszText, std::string_view _svUtf8)
{
    const std::size_t uBefore = _rtszText.size();
    _rtszText.resize(uBefore + _svUtf8.size());
    const wchar_t* pEnd = WidenUtf8(_rtszText.data() + uBefore, _svUtf8.data(), _svUtf8.size());
    _rtszText.resize(static_cast<std::size_t>(pEnd - _rtszText.data()));
}

} // namespace

XmlParserSaxBase::Handlers XmlComparison::Handlers() noexcept
{
    return {this, &XmlEvent<&XmlComparison::Start>::Handle, &XmlEvent<&XmlComparison::End>::Handle,
            &XmlEvent<&XmlComparison::Text>::Handle, &XmlEvent<&XmlComparison::Comment>::Handle};
}

bool XmlComparison::IsSame() const noexcept
{
    return m_bSame && !m_bOpen && m_pAt->IsLast() && m_pAt->ParentOfLast() == &m_rDocument;
}

void XmlComparison::Start(const char* _szName, const char** _pszAttributes)
{
    EndText();
    const XmlNode* pNode = Next();
    if (pNode == nullptr || !IsText(_szName, m_rTree.NameOf(pNode->ulName)) || !HasAttributes(_pszAttributes, *pNode)) {
        Differ();
        return;
    }
    m_pAt = pNode;
    m_bOpen = true;
}

void XmlComparison::End(const char*)
{
    EndText();
    if (Next() != nullptr) {
        Differ();
    } else if (m_bOpen) {
        m_bOpen = false;
    } else {
        m_pAt = m_pAt->ParentOfLast();
    }
}

void XmlComparison::Text(const char* _pText, int _iLength)
{
    AppendWide(m_tszText, {_pText, static_cast<std::size_t>(_iLength)});
}

void XmlComparison::Comment(const char* _szText)
{
    EndText();
    const XmlNode* pNode = Next();
    if (pNode == nullptr || pNode->ulName != XmlTree::g_ulNoName || !IsText(_szText, pNode->Text())) {
        Differ();
        return;
    }
    m_pAt = pNode;
    m_bOpen = false;
}

/** The writer puts an element's text before its children: what follows a child is layout, as are the blanks around a text. */
void XmlComparison::EndText()
{
    const std::wstring_view svMeant = m_bOpen ? m_pAt->Text() : std::wstring_view();
    const bool bLayout = !m_bOpen || m_pAt->FirstChild() != nullptr;
    if (bLayout ? TrimXmlBlanks(m_tszText) != TrimXmlBlanks(svMeant) : m_tszText != svMeant) {
        Differ();
    }
    m_tszText.clear();
}

bool XmlComparison::IsText(std::string_view _svRead, std::wstring_view _svMeant)
{
    const auto IsSame = [](char _cRead, wchar_t _cMeant) {
        return static_cast<unsigned char>(_cRead) < 0x80 && static_cast<unsigned char>(_cRead) == _cMeant;
    };
    if (std::ranges::equal(_svRead, _svMeant, IsSame)) {
        return true;
    }
    m_tszOther.clear();
    AppendWide(m_tszOther, _svRead);
    return m_tszOther == _svMeant;
}

bool XmlComparison::HasAttributes(const char** _pszAttributes, const XmlNode& _rNode)
{
    const XmlAttributeNode* pAttribute = _rNode.FirstAttribute();
    for (; *_pszAttributes != nullptr && pAttribute != nullptr; _pszAttributes += 2, pAttribute = pAttribute->pNext) {
        if (!IsText(_pszAttributes[0], m_rTree.NameOf(pAttribute->ulName)) ||
            !IsText(_pszAttributes[1], pAttribute->stValue.View())) {
            return false;
        }
    }
    return *_pszAttributes == nullptr && pAttribute == nullptr;
}

/** The rest is only checked. */
void XmlComparison::Differ() noexcept
{
    m_bSame = false;
    m_rSource.SetHandlers({});
}

} // namespace ZkCommon::Storage
