#pragma once

#include "Description.h"
#include "ZkComn_XmlParser.h"

/** Fills records from the elements of a document, as their descriptions say. */
namespace Varnhelt::Documents {

template <class TDescription>
void ReadRecord(const ZkCommon::Storage::XmlElement& _rElement, const TDescription& _rstDescription,
                typename TDescription::Record& _rstRecord);

/**
 * Appends one record for each child of the container that the description is of, in document order. What was appended
 * before an exception stays.
 */
template <class TDescription, class TContainer>
void ReadRecords(const ZkCommon::Storage::XmlElement& _rContainer, const TDescription& _rstDescription,
                 TContainer& _rContainerOfRecords)
{
    ZkCommon::Storage::XmlElement cElement = _rContainer.FirstChild(_rstDescription.svElement);
    while (cElement) {
        typename TDescription::Record stRecord;
        ReadRecord(cElement, _rstDescription, stRecord);
        _rContainerOfRecords.push_back(std::move(stRecord));
        cElement = cElement.NextSibling(_rstDescription.svElement);
    }
}

template <class TRecord, class TField>
void ReadField(const ZkCommon::Storage::XmlElement& _rElement, const TField& _rstField, TRecord& _rstRecord)
{
    if constexpr (TField::g_bList) {
        const auto cContainer = _rstField.svPath.empty() ? _rElement : _rElement.Child(_rstField.svPath);
        ReadRecords(cContainer, *_rstField.pDescription, _rstRecord.*_rstField.pMember);
    } else {
        std::wstring_view svText;
        switch (_rstField.enSource) {
        case Source::Attribute:
            svText = _rElement.Attribute(_rstField.svName, _rstField.svDefault);
            break;
        case Source::Child:
            svText = _rElement.ChildText(_rstField.svName, _rstField.svDefault);
            break;
        case Source::OwnText:
            svText = _rElement.Text();
            break;
        }
        using Value = std::remove_reference_t<decltype(_rstRecord.*_rstField.pMember)>;
        _rstRecord.*_rstField.pMember = static_cast<Value>(_rstField.stConversion.Read(svText));
    }
}

/** Fills one record from its element, field by field. */
template <class TDescription>
void ReadRecord(const ZkCommon::Storage::XmlElement& _rElement, const TDescription& _rstDescription,
                typename TDescription::Record& _rstRecord)
{
    ForEachField(_rstDescription, [&](const auto& _rstField) { ReadField(_rElement, _rstField, _rstRecord); });
}

} // namespace Varnhelt::Documents
