#include "Peers.h"

#include "Documents/ServiceUnits.h"
#include "ZkComn_Owner.h"
#include "ZkComn_String.h"
#include "ZkComn_XmlTree.h"

#include <cstring>
#include <pugixml.hpp>
#include <tinyxml2.h>
#include <windows.h>

namespace Bench {

namespace {

using namespace ZkCommon;
using Varnhelt::Documents::ForEachField;
using Varnhelt::Documents::g_stServiceUnit;
using Varnhelt::Documents::Source;

/** The file's bytes, with a null after them. */
std::vector<char> BytesOf(const std::wstring& _rtszFile)
{
    const FileHandle hFile(::CreateFileW(_rtszFile.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                         FILE_ATTRIBUTE_NORMAL, nullptr));
    const DWORD ulSize = ::GetFileSize(hFile.Get(), nullptr);
    std::vector<char> vecBytes(ulSize + 1);
    DWORD ulRead = 0;
    ::ReadFile(hFile.Get(), vecBytes.data(), ulSize, &ulRead, nullptr);
    return vecBytes;
}

/** Names as the peers want them. */
const std::vector<std::string>& Names()
{
    static const std::vector<std::string> vecName = [] {
        std::vector<std::string> vecNames;
        ForEachField(g_stServiceUnit,
                     [&](const auto& _rstField) { vecNames.push_back(String::ToUtf8(_rstField.svName)); });
        return vecNames;
    }();
    return vecName;
}

/** Fills one record; _fnTextOf gives the text of an attribute or child, null where it is missing. */
template <class TTextOf>
SrvFrwk::ServiceUnit UnitOf(std::wstring& _rtszBuffer, const TTextOf& _fnTextOf)
{
    SrvFrwk::ServiceUnit stUnit;
    const std::string* psName = Names().data();
    ForEachField(g_stServiceUnit, [&]<class TField>(const TField& _rstField) {
        const char* szText = _fnTextOf(_rstField.enSource == Source::Attribute, psName++->c_str());
        std::wstring_view svText = _rstField.svDefault;
        if (szText != nullptr) {
            const std::size_t uLength = std::strlen(szText);
            _rtszBuffer.resize(std::max(_rtszBuffer.size(), uLength));
            svText = {
                _rtszBuffer.data(),
                static_cast<std::size_t>(Storage::WidenUtf8(_rtszBuffer.data(), szText, uLength) - _rtszBuffer.data())};
        }
        auto& rMember = stUnit.*_rstField.pMember;
        rMember = static_cast<std::remove_reference_t<decltype(rMember)>>(_rstField.stConversion.Read(svText));
    });
    return stUnit;
}

} // namespace

Units ReadByPugixml(const std::wstring& _rtszFile)
{
    std::vector<char> vecBytes = BytesOf(_rtszFile);
    pugi::xml_document document;
    Units vecUnit;
    std::wstring tszBuffer;
    if (document.load_buffer_inplace(vecBytes.data(), vecBytes.size() - 1)) {
        for (const pugi::xml_node unit : document.document_element().children("FrameworkService")) {
            vecUnit.push_back(UnitOf(tszBuffer, [&](bool _bAttribute, const char* _szName) -> const char* {
                const pugi::xml_attribute attribute = _bAttribute ? unit.attribute(_szName) : pugi::xml_attribute();
                const pugi::xml_node child = _bAttribute ? pugi::xml_node() : unit.child(_szName);
                return attribute ? attribute.value() : child ? child.child_value() : nullptr;
            }));
        }
    }
    return vecUnit;
}

Units ReadByTinyxml2(const std::wstring& _rtszFile)
{
    const std::vector<char> vecBytes = BytesOf(_rtszFile);
    tinyxml2::XMLDocument document;
    Units vecUnit;
    std::wstring tszBuffer;
    if (document.Parse(vecBytes.data(), vecBytes.size() - 1) == tinyxml2::XML_SUCCESS) {
        for (const auto* pUnit = document.RootElement()->FirstChildElement("FrameworkService"); pUnit != nullptr;
             pUnit = pUnit->NextSiblingElement("FrameworkService")) {
            vecUnit.push_back(UnitOf(tszBuffer, [&](bool _bAttribute, const char* _szName) -> const char* {
                const auto* pChild = _bAttribute ? nullptr : pUnit->FirstChildElement(_szName);
                return _bAttribute ? pUnit->Attribute(_szName) : pChild != nullptr ? pChild->GetText() : nullptr;
            }));
        }
    }
    return vecUnit;
}

bool SameUnits(const Units& _rvecLeft, const Units& _rvecRight)
{
    bool bSame = _rvecLeft.size() == _rvecRight.size() && !_rvecLeft.empty();
    for (std::size_t u = 0; bSame && u < _rvecLeft.size(); ++u) {
        ForEachField(g_stServiceUnit, [&](const auto& _rstField) {
            bSame = bSame && _rvecLeft[u].*_rstField.pMember == _rvecRight[u].*_rstField.pMember;
        });
    }
    return bSame;
}

} // namespace Bench
