#pragma once

#include "ZkComn_XmlTree.h"

#include <string>
#include <string_view>

namespace ZkCommon::Storage {

/** Receives the events of a written document and compares them with the elements that it was written from. */
class XmlComparison
{
public:
    /** @param _rDocument  the node above the root */
    XmlComparison(const XmlTree& _rTree, const XmlNode& _rDocument, XmlParserSaxBase& _rSource) noexcept
        : m_rTree(_rTree), m_rSource(_rSource), m_rDocument(_rDocument), m_pAt(&_rDocument)
    {}

    XmlParserSaxBase::Handlers Handlers() noexcept;
    XmlParserSaxBase& Source() noexcept { return m_rSource; }

    /** After the last event: whether all were those of the elements, but for layout. */
    bool IsSame() const noexcept;

private:
    template <auto t_pMethod>
    friend struct XmlEvent;

    void Start(const char* _szName, const char** _pszAttributes);
    void End(const char* _szName);
    void Text(const char* _pText, int _iLength);
    void Comment(const char* _szText);

    /** The node that should come next in the open element; null when it should end. */
    const XmlNode* Next() const noexcept { return m_bOpen ? m_pAt->FirstChild() : m_pAt->Next(); }
    void EndText();
    bool IsText(std::string_view _svRead, std::wstring_view _svMeant);
    bool HasAttributes(const char** _pszAttributes, const XmlNode& _rNode);
    void Differ() noexcept;

    const XmlTree& m_rTree;
    XmlParserSaxBase& m_rSource;
    const XmlNode& m_rDocument;
    const XmlNode* m_pAt; // the node that was met last
    bool m_bOpen = true;  // its children come next, and not its siblings
    bool m_bSame = true;
    std::wstring m_tszText;  // since the last tag or comment
    std::wstring m_tszOther; // scratch
};

} // namespace ZkCommon::Storage
