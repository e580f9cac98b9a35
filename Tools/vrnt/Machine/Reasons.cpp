#include "Machine/Reasons.h"

#include "Output/Output.h"
#include "ValueTypeTable.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace Vrnt {

namespace {

using ZkCommon::String::ToUtf8;

/**
 * A form of error lines, and what it says. A '*' of the form is any text; "$1" is that text and "%1" the system's words
 * for the error number that it is; "$0" is the document of the call. No words: the line is no reason for a failure.
 */
struct Form
{
    const wchar_t* pszForm;
    const char* szWords;
};

constexpr Form g_aForm[] = {
    {L"*Not support * was specified. [*]", nullptr},
    {L"No <Threat>: *", "$0 has no threat $1"},
    {L"No <Scanner>: *", "$0 has no scanner $1"},
    {L"*::DecryptFile() - Failed to open file(*), error: *", "cannot open $2: %3"},
    {L"*::DecryptFile() - Failed to read file (*)", "cannot read $2"},
    {L"*::DecryptFile() - Empty file (*)", "$2 is empty"},
    {L"*::DecryptFile() - Failed to Rijndael::Convert(), error: 13",
     "$0 is not encrypted, or cut off: its size is not a multiple of 16 bytes"},
    {L"*::GetInstalledFolder() - *Exception(). [0x00000002]", "the product is not registered: it has no ProductPath"},
    {L"*::GetInstalledFolder() - *Exception(). [*]", "cannot read the product's ProductPath from the registry: %3"},
    {L"* - Xml Error [*] line [*] file [*]", "$4 is not well-formed: line $3"},
    // Of a parser's exception most readers write the code, some also the line, some a second line with the file.
    {L"* - Got ZkCommon::Storage::XmlException() failed. [0x00000006] [*]", "$0 is not well-formed: line $2"},
    {L"* - Got ZkCommon::Storage::XmlException() failed. [*] [*] [*]", nullptr},
    {L"* - Got ZkCommon::Storage::XmlException() failed. *, FileName:[*]", nullptr},
    {L"* - Got ZkCommon::Storage::XmlException()*[0x00000006]*", "$0 is not well-formed"},
    {L"* - Got ZkCommon::Storage::XmlException()*[0x0000000d]*", "$0 would not read as what is written to it"},
    {L"* - Got ZkCommon::Storage::XmlException()*[0x00000022]*", "the folder's path is longer than 259 characters"},
    {L"* - Got ZkCommon::Storage::XmlException()*[0x0000007e]*", "libexpat.dll cannot be loaded"},
    {L"* - Got ZkCommon::Storage::XmlException()*[0x0000007f]*", "libexpat.dll is not the parser library"},
    {L"* - Got ZkCommon::Storage::XmlException()*[*]*", "cannot read $0: %3"},
    {L"*<PolicyController> was not found.", "the policy does not have this controller"},
    {L"*::QueryValueAsLocalUpdate() - File [*] was not found.", "there is no file $2"},
    {L"*::MoveFileEx() failed: *", "cannot replace $0: %2"},
    {L"*::GetTempFileName() failed: *", "cannot create a file: %2"},
    {L"*OsType is invalid. [*]", "\"$2\" is not the name of a system"},
    {L"*unsupported root key: *", "\"$2\" is not a root key of the registry"},
    {L"*Invalid Value Type was specified. *", "function objects do not serve this value type"},
};

/** The texts in place of a form's stars, the leftmost as short as possible; std::nullopt when the text has another form. */
std::optional<std::vector<std::wstring_view>> Match(std::wstring_view _svForm, std::wstring_view _svText)
{
    std::vector<std::wstring_view> vecText;
    std::size_t uStar = _svForm.find(L'*');
    if (!_svText.starts_with(_svForm.substr(0, uStar))) {
        return std::nullopt;
    }
    while (uStar != std::wstring_view::npos) {
        _svText.remove_prefix(std::min(uStar, _svForm.size()));
        _svForm.remove_prefix(uStar + 1);
        uStar = _svForm.find(L'*');
        const std::wstring_view svNext = _svForm.substr(0, uStar);
        const bool bLast = uStar == std::wstring_view::npos;
        const std::size_t uEnd = !bLast                      ? _svText.find(svNext)
                                 : _svText.ends_with(svNext) ? _svText.size() - svNext.size()
                                                             : std::wstring_view::npos;
        if (uEnd == std::wstring_view::npos) {
            return std::nullopt;
        }
        vecText.push_back(_svText.substr(0, uEnd));
        _svText.remove_prefix(uEnd);
    }
    return vecText;
}

/** What a form's words become for its texts. */
std::string FillIn(std::string_view _svWords, const std::vector<std::wstring_view>& _rvecText,
                   const std::string& _rsDocument)
{
    std::string sText;
    for (std::size_t i = 0; i < _svWords.size(); ++i) {
        if (_svWords[i] != '$' && _svWords[i] != '%') {
            sText += _svWords[i];
            continue;
        }
        const bool bError = _svWords[i] == '%';
        const auto uText = static_cast<std::size_t>(_svWords[++i] - '0');
        sText += uText == 0 ? _rsDocument
                 : bError   ? SystemErrorText(ZkCommon::String::ToNumber(_rvecText.at(uText - 1)))
                            : ToUtf8(_rvecText.at(uText - 1));
    }
    return sText;
}

/** The name of the document that a value type reaches; empty for a number that is not one, or is reserved. */
std::string DocumentNameOf(std::uint32_t _ulValueType, bool _bFile)
{
    const Varnhelt::ValueTypeRow* const pRow = Varnhelt::FindValueType(_ulValueType);
    if (pRow == nullptr || pRow->enDocument == Varnhelt::DocumentId::None) {
        return {};
    }
    const Varnhelt::Document& rDocument = Varnhelt::DocumentOf(pRow->enDocument);
    return _bFile ? ToUtf8(rDocument.pszFile != nullptr ? rDocument.pszFile : L"") : ToUtf8(rDocument.svName);
}

/** The file of the document that a call was about, by the value type that its last line names. */
std::string DocumentOfCall(const std::vector<std::wstring>& _rvecMessage)
{
    constexpr std::wstring_view svMark = L"VT[";
    for (const std::wstring& rtszMessage : _rvecMessage) {
        if (const std::size_t uAt = rtszMessage.find(svMark); uAt != std::wstring::npos) {
            std::string sFile =
                DocumentNameOf(ZkCommon::String::ToNumber(rtszMessage.substr(uAt + svMark.size())), true);
            if (!sFile.empty()) {
                return sFile;
            }
        }
    }
    return "the document";
}

/** " (the operation failed)", without what it may be due to; empty for a number that is not a result code. */
std::string ShortResult(std::uint32_t _ulResult)
{
    const std::string sWords = ResultText(_ulResult).substr(Hexadecimal(_ulResult).size());
    const std::size_t uCause = sWords.find(':');
    return uCause == std::string::npos ? sWords : sWords.substr(0, uCause) + ")";
}

const std::string& WithoutStars(std::string& _rsText)
{
    if (_rsText.starts_with("*** ")) {
        _rsText.erase(0, 4);
    }
    return _rsText;
}

} // namespace

std::vector<std::string> ReasonsOf(const std::vector<std::wstring>& _rvecMessage)
{
    const std::string sDocument = DocumentOfCall(_rvecMessage);
    std::vector<std::string> vecInWords;
    std::vector<std::string> vecOther;
    for (const std::wstring& rtszMessage : _rvecMessage) {
        std::string sText = ToUtf8(rtszMessage);
        bool bInWords = false;
        for (const Form& stForm : g_aForm) {
            if (const auto vecText = Match(stForm.pszForm, rtszMessage)) {
                sText = stForm.szWords != nullptr ? FillIn(stForm.szWords, *vecText, sDocument) : std::string();
                bInWords = true;
                break;
            }
        }
        if (!sText.empty()) {
            (bInWords ? vecInWords : vecOther).push_back(WithoutStars(sText));
        }
    }
    // Lines in words name causes; the others mostly say how the failure went up.
    vecInWords.insert(vecInWords.end(), vecOther.begin(), vecOther.end());
    return vecInWords;
}

std::string WithMeanings(std::string_view _svText)
{
    constexpr std::string_view svMark = "[0x";
    constexpr std::size_t uDigits = 8;
    std::string sText;
    for (std::size_t uAt = _svText.find(svMark); uAt != std::string_view::npos; uAt = _svText.find(svMark)) {
        const std::string_view svBefore = _svText.substr(0, uAt);
        const std::string_view svDigits = _svText.substr(uAt + svMark.size(), uDigits);
        std::uint32_t ulValue = 0;
        const auto [pStop, enError] = std::from_chars(svDigits.data(), svDigits.data() + svDigits.size(), ulValue, 16);
        const std::size_t uTaken = uAt + svMark.size() + static_cast<std::size_t>(pStop - svDigits.data());
        sText.append(_svText.substr(0, uTaken));
        if (enError == std::errc() && pStop == svDigits.data() + uDigits && _svText.substr(uTaken).starts_with(']')) {
            const std::string sName = DocumentNameOf(ulValue, false);
            sText += !svBefore.ends_with('T')                     ? ShortResult(ulValue)
                     : svBefore.ends_with("VT") && !sName.empty() ? " (" + sName + ")"
                                                                  : "";
        }
        _svText.remove_prefix(uTaken);
    }
    return sText.append(_svText);
}

} // namespace Vrnt
