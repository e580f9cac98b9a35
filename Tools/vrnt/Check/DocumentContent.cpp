#include "Check/DocumentContent.h"

#include "Check/MarkupScan.h"
#include "Documents/LocalUpdate.h"
#include "Documents/RegistryData.h"
#include "ZkComn_Rijndael.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <vector>

namespace Vrnt {

namespace {

using Varnhelt::Document;
using Varnhelt::DocumentId;
using ZkCommon::String::FromUtf8;

std::optional<std::string> Decrypted(const Document& _rstDocument, std::string_view _svBytes)
{
    using ZkCommon::Cryptograph::Rijndael;
    constexpr std::size_t uKeySize = 16;
    const auto Bytes = [](const char* _p, std::size_t _u) {
        return std::span(reinterpret_cast<const std::uint8_t*>(_p), _u);
    };
    std::string sPlain(_svBytes.size(), '\0');
    const std::span<std::uint8_t> spanPlain(reinterpret_cast<std::uint8_t*>(sPlain.data()), sPlain.size());
    Rijndael cCipher;
    std::uint32_t ulError = 0;
    std::size_t uConverted = 0;
    std::size_t uFinished = 0;
    if (!cCipher.SetUp(Rijndael::Direction::Decrypt, Bytes(_rstDocument.szKey, uKeySize), Rijndael::Mode::Cbc, {},
                       ulError) ||
        !cCipher.Convert(Bytes(_svBytes.data(), _svBytes.size()), spanPlain, uConverted, ulError) ||
        !cCipher.Finish(spanPlain.subspan(uConverted), uFinished, ulError)) {
        return std::nullopt;
    }
    sPlain.resize(uConverted + uFinished);
    return sPlain;
}

std::wstring_view RootName(const Document& _rstDocument)
{
    const std::wstring_view svPath = std::wstring_view(_rstDocument.pszRoot).substr(1);
    return svPath.substr(0, svPath.find(L'/'));
}

/** Of kinds that share a root: the one that has an element of that name in it. */
bool HasItem(const Document& _rstDocument, std::wstring_view _svName)
{
    using namespace Varnhelt;
    switch (_rstDocument.enId) {
    case DocumentId::RegistryData:
        return _svName == Documents::g_svRegistryComponent;
    case DocumentId::ThreatsOrkap:
    case DocumentId::ThreatsElmap:
        return _svName == L"Threats" || _svName == L"Scanners";
    default:
        return IsOfKind(_svName, g_szRegistryKind) || IsOfKind(_svName, g_szIniFileKind) ||
               IsOfKind(_svName, g_szDirectoryKind);
    }
}

const Document* KindOfPlain(std::string_view _svPlain, std::wstring_view _svFileName)
{
    const std::string sText = ToUtf8Document(_svPlain);
    std::vector<std::wstring> vecName; // of the first elements: the root, and the first in it
    MarkupScan cScan(sText);
    for (auto stMarkup = cScan.Next(); stMarkup && vecName.size() < 2; stMarkup = cScan.Next()) {
        if (stMarkup->enKind == MarkupScan::Kind::Start) {
            vecName.push_back(FromUtf8(stMarkup->svName));
        }
    }
    vecName.resize(2);
    std::vector<const Document*> vecKind;
    for (const Document& stDocument : Varnhelt::DocumentTable()) {
        if (RootName(stDocument) == vecName[0]) {
            vecKind.push_back(&stDocument);
        }
    }
    if (vecKind.size() <= 1) {
        return vecKind.empty() ? nullptr : vecKind.front();
    }
    const auto Find = [&](const auto& _fnIs) {
        const auto itKind = std::ranges::find_if(vecKind, [&](const Document* _p) { return _fnIs(*_p); });
        return itKind == vecKind.end() ? nullptr : *itKind;
    };
    const auto HasName = [&](const Document& _rst) {
        return _rst.pszFile != nullptr && ZkCommon::String::EqualsNoCase(_svFileName, _rst.pszFile);
    };
    const Document* pKind = Find([&](const Document& _rst) { return HasItem(_rst, vecName[1]); });
    return pKind != nullptr ? pKind : Find(HasName);
}

} // namespace

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
    for (const Document& stDocument : Varnhelt::DocumentTable()) {
        if (stDocument.szKey != nullptr) {
            const std::optional<std::string> sPlain = Decrypted(stDocument, _svBytes.substr(0, uEnough));
            if (sPlain && IsPlain(*sPlain) && KindOfPlain(*sPlain, _svFileName) == &stDocument) {
                return &stDocument;
            }
        }
    }
    return nullptr;
}

std::string ToUtf8Document(std::string_view _svPlain)
{
    const bool bLittle = _svPlain.starts_with("\xFF\xFE");
    if (!bLittle && !_svPlain.starts_with("\xFE\xFF")) {
        return std::string(_svPlain);
    }
    std::wstring tszText;
    for (std::size_t i = 2; i + 1 < _svPlain.size(); i += 2) {
        const auto ucFirst = static_cast<unsigned char>(_svPlain[i]);
        const auto ucSecond = static_cast<unsigned char>(_svPlain[i + 1]);
        tszText += static_cast<wchar_t>(bLittle ? ucFirst | ucSecond << 8 : ucFirst << 8 | ucSecond);
    }
    return ZkCommon::String::ToUtf8(tszText);
}

} // namespace Vrnt
