#pragma once

#include "Descriptions/DescriptionReader.h"
#include "ZkComn_DebugLog.h"
#include "ZkComn_String.h"

#include <string>

/** Writes records to the trace log, field by field, as their descriptions say. */
namespace Varnhelt::Documents {

/** The texts around the values of a dump. */
struct DumpTexts
{
    const wchar_t* pszPrefix = L""; // before each label
    const wchar_t* pszSeparator = L":";
    const wchar_t* pszEnd = L".";
    ZkCommon::TraceLevel enLevel = ZkCommon::TraceNotice;
    const wchar_t* pszOpening = nullptr; // a separate line before an element's dump, and one after it
    const wchar_t* pszClosing = nullptr;
};

/** A value as its field's dump shows it. */
template <class TField, class TRecord>
std::wstring DumpValue(const TField& _rstField, const TRecord& _rstRecord)
{
    const auto& rValue = _rstRecord.*_rstField.pMember;
    if constexpr (std::is_integral_v<std::decay_t<decltype(rValue)>>) {
        if (_rstField.enShow != Show::Text) {
            std::wstring tszText;
            ZkCommon::String::Format(tszText, _rstField.enShow == Show::Decimal ? L"%u" : L"0x%08x",
                                     static_cast<std::uint32_t>(rValue));
            return tszText;
        }
    }
    return _rstField.stConversion.Write(rValue);
}

/**
 * Writes one field's line, when it has a label and the level passes.
 * @param _pElement  the element that the record was read from; null where a dump shows no text as it was read
 */
template <class TField, class TRecord>
void DumpField(const TField& _rstField, const TRecord& _rstRecord, const DumpTexts& _rstTexts,
               const ZkCommon::Storage::XmlElement* _pElement = nullptr,
               ZkCommon::SourcePlace _stPlace = ZkCommon::SourcePlace::Here())
{
    if constexpr (!TField::g_bList) {
        if (_rstField.pszLabel != nullptr && ZkCommon::TracePasses(_rstTexts.enLevel)) {
            const bool bAsRead = _rstField.enShow == Show::AsRead && _pElement != nullptr;
            const std::wstring tszValue =
                bAsRead ? std::wstring(TextOf(*_pElement, _rstField)) : DumpValue(_rstField, _rstRecord);
            ZkCommon::TraceAt(_stPlace, _rstTexts.enLevel, L"%s%s%s%s%s", _rstTexts.pszPrefix, _rstField.pszLabel,
                              _rstTexts.pszSeparator, tszValue.c_str(), _rstTexts.pszEnd);
        }
    }
}

/** Writes the lines of all fields that have a label. */
template <class TDescription>
void DumpRecord(const TDescription& _rstDescription, const typename TDescription::Record& _rstRecord,
                const DumpTexts& _rstTexts, const ZkCommon::Storage::XmlElement* _pElement = nullptr,
                ZkCommon::SourcePlace _stPlace = ZkCommon::SourcePlace::Here())
{
    if (ZkCommon::TracePasses(_rstTexts.enLevel)) {
        ForEachField(_rstDescription,
                     [&](const auto& _rstField) { DumpField(_rstField, _rstRecord, _rstTexts, _pElement, _stPlace); });
    }
}

/** Writes a record with what frames it: the opening line, the title of its element, the fields, the closing line. */
template <class TDescription>
void DumpElement(const TDescription& _rstDescription, const ZkCommon::Storage::XmlElement& _rElement,
                 const typename TDescription::Record& _rstRecord, const DumpTexts& _rstTexts,
                 ZkCommon::SourcePlace _stPlace = ZkCommon::SourcePlace::Here())
{
    if (!ZkCommon::TracePasses(_rstTexts.enLevel)) {
        return;
    }
    const auto WriteLine = [&](const wchar_t* _pszLine) {
        if (_pszLine != nullptr) {
            ZkCommon::TraceAt(_stPlace, _rstTexts.enLevel, L"%s", _pszLine);
        }
    };
    WriteLine(_rstTexts.pszOpening);
    if (_rstDescription.pszTitleLabel != nullptr) {
        ZkCommon::TraceAt(_stPlace, _rstTexts.enLevel, L"%s%s%s%s%s", _rstTexts.pszPrefix,
                          _rstDescription.pszTitleLabel, _rstTexts.pszSeparator,
                          std::wstring(_rElement.Attribute(_rstDescription.svTitle)).c_str(), _rstTexts.pszEnd);
    }
    DumpRecord(_rstDescription, _rstRecord, _rstTexts, &_rElement, _stPlace);
    WriteLine(_rstTexts.pszClosing);
}

} // namespace Varnhelt::Documents
