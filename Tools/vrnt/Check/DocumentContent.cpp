#include "Check/DocumentContent.h"

#include "Check/MarkupScan.h"
#include "Documents/LocalUpdate.h"
#include "Documents/RegistryData.h"
#include "Documents/Threats.h"
#include "ZkComn_FileCrypt.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <new>
#include <span>
#include <vector>

namespace Vrnt {

namespace {

using Varnhelt::Document;
using Varnhelt::DocumentId;

/** Whether bytes begin as an XML document does, in any of the encodings that one may have. */
bool IsPlain(std::string_view _svBytes)
{
    if (_svBytes.starts_with("\xFF\xFE") || _svBytes.starts_with("\xFE\xFF")) {
        return true;
    }
    if (_svBytes.starts_with("\xEF\xBB\xBF")) {
        _svBytes.remove_prefix(3);
    }
    const std::size_t uFirst = _svBytes.find_first_not_of(std::string_view(" \t\r\n\0", 5));
    return uFirst != std::string_view::npos && _svBytes[uFirst] == '<';
}

std::optional<std::string> Decrypted(const Document& _rstDocument, std::string_view _svBytes)
{
    namespace File = ZkCommon::Storage::File;
    ZkCommon::ByteArray stBytes;
    if (!stBytes.Assign(std::as_bytes(std::span(_svBytes)))) {
        throw std::bad_alloc();
    }
    const auto* pKey = reinterpret_cast<const std::uint8_t*>(_rstDocument.szKey);
    File::Conversion cConversion(File::Conversion::Direction::Decrypt);
    if (!cConversion.Run(std::move(stBytes), File::KeySpan(pKey, File::g_uKeySize))) {
        return std::nullopt;
    }
    const auto spanPlain = cConversion.Output();
    return std::string(spanPlain.begin(), spanPlain.end());
}

std::wstring_view RootName(const Document& _rstDocument)
{
    const std::wstring_view svPath = std::wstring_view(_rstDocument.pszRoot).substr(1);
    return svPath.substr(0, svPath.find(L'/'));
}

/** Of kinds that share a root: whether an element of that name is in it. */
bool HasItem(const Document& _rstDocument, std::wstring_view _svName)
{
    using namespace Varnhelt;
    switch (_rstDocument.enId) {
    case DocumentId::RegistryData:
        return _svName == Documents::g_svRegistryComponent;
    case DocumentId::ThreatsOrkap:
    case DocumentId::ThreatsElmap:
        return std::ranges::any_of(Documents::g_aTextLookup, [&](const Documents::TextLookup& _rstLookup) {
            const std::wstring_view svPath = _rstLookup.pszRoot;
            return svPath.substr(svPath.rfind(L'/') + 1) == _svName;
        });
    default:
        return !_svName.empty() && (IsOfKind(_svName, g_szRegistryKind) || IsOfKind(_svName, g_szIniFileKind) ||
                                    IsOfKind(_svName, g_szDirectoryKind));
    }
}

/** The names of the root and of the first element in it; empty where there is none. */
std::pair<std::wstring, std::wstring> FirstNames(std::string_view _svPlain)
{
    const std::string sText = ZkCommon::String::FileTextToUtf8(_svPlain);
    std::vector<std::wstring> vecName;
    MarkupScan cScan(sText);
    for (auto stMarkup = cScan.Next(); stMarkup && vecName.size() < 2; stMarkup = cScan.Next()) {
        if (stMarkup->enKind == MarkupScan::Kind::Start) {
            vecName.push_back(ZkCommon::String::FromUtf8(stMarkup->svName));
        }
    }
    vecName.resize(2);
    return {vecName[0], vecName[1]};
}

const Document* KindOfPlain(std::string_view _svPlain, std::wstring_view _svFileName)
{
    const auto [tszRoot, tszFirst] = FirstNames(_svPlain);
    std::vector<const Document*> vecKind;
    for (const Document& stDocument : Varnhelt::DocumentTable()) {
        if (RootName(stDocument) == tszRoot) {
            vecKind.push_back(&stDocument);
        }
    }
    if (vecKind.size() == 1) {
        return vecKind.front();
    }
    std::vector<const Document*> vecLike = vecKind;
    std::erase_if(vecLike, [&, &rtszItem = tszFirst](const Document* _p) { return !HasItem(*_p, rtszItem); });
    const std::vector<const Document*>& rvecLeft = vecLike.empty() ? vecKind : vecLike;
    const auto itNamed = std::ranges::find_if(rvecLeft, [&](const Document* _p) {
        return _p->pszFile != nullptr && ZkCommon::String::EqualsNoCase(_svFileName, _p->pszFile);
    });
    if (itNamed != rvecLeft.end()) {
        return *itNamed;
    }
    return vecLike.empty() ? nullptr : vecLike.front();
}

} // namespace

std::optional<std::string> PlainContent(const Document& _rstDocument, std::string_view _svBytes)
{
    if (IsPlain(_svBytes) || _rstDocument.szKey == nullptr) {
        return std::string(_svBytes);
    }
    std::optional<std::string> sPlain = Decrypted(_rstDocument, _svBytes);
    return sPlain && IsPlain(*sPlain) ? sPlain : std::nullopt;
}

const Document* KindOf(std::string_view _svBytes, std::wstring_view _svFileName)
{
    if (IsPlain(_svBytes)) {
        return KindOfPlain(_svBytes, _svFileName);
    }
    constexpr std::size_t uEnough = 4096; // whole blocks, to see the root
    std::string_view svBegin = _svBytes.substr(0, uEnough);
    svBegin.remove_suffix(svBegin.size() % ZkCommon::Storage::File::g_uKeySize); // of a file that is cut off
    for (const Document& stDocument : Varnhelt::DocumentTable()) {
        if (stDocument.szKey != nullptr && !svBegin.empty()) {
            const std::optional<std::string> sPlain = Decrypted(stDocument, svBegin);
            if (sPlain && IsPlain(*sPlain) && KindOfPlain(*sPlain, _svFileName) == &stDocument) {
                return &stDocument;
            }
        }
    }
    return nullptr;
}

} // namespace Vrnt
