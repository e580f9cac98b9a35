#include "Check/DocumentContent.h"

#include "ZkComn_FileCrypt.h"

#include <new>
#include <span>

namespace Vrnt {

namespace {

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

std::optional<std::string> Decrypted(const Varnhelt::Document& _rstDocument, std::string_view _svBytes)
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

} // namespace

std::optional<std::string> PlainContent(const Varnhelt::Document& _rstDocument, std::string_view _svBytes)
{
    if (IsPlain(_svBytes) || _rstDocument.szKey == nullptr) {
        return std::string(_svBytes);
    }
    std::optional<std::string> sPlain = Decrypted(_rstDocument, _svBytes);
    return sPlain && IsPlain(*sPlain) ? sPlain : std::nullopt;
}

} // namespace Vrnt
