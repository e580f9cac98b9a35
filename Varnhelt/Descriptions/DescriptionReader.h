#pragma once

#include "Descriptions/Description.h"
#include "ZkComn_XmlParser.h"

#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

/** Fills records from the elements of a document, as their descriptions say. */
namespace Varnhelt::Documents {

/**
 * What a reader does beside the filling: derive from it and hide what is needed. OnElement comes before a record and may
 * pass its element over; OnField follows each field that is no list; OnRecord follows the last of them, before the lists,
 * and may change or drop the record; OnList comes before each list. Around is where one record of a list is read, and may
 * contain what that throws.
 */
struct ReadHook
{
    template <class TRecord>
    bool OnElement(const ZkCommon::Storage::XmlElement&, const TRecord&) const
    {
        return true;
    }
    template <class TField, class TRecord>
    void OnField(const ZkCommon::Storage::XmlElement&, const TField&, const TRecord&) const
    {}
    template <class TRecord>
    bool OnRecord(const ZkCommon::Storage::XmlElement&, const TRecord&) const
    {
        return true;
    }
    /** @return whether the record is kept */
    template <class TRecord, class TRead>
    bool Around(const TRead& _fnRead) const
    {
        return _fnRead();
    }
    template <class TField>
    void OnList(const ZkCommon::Storage::XmlElement&, const TField&) const
    {}
};

/** Memory for records that is reserved on the strength of a document's first ones, in bytes. */
inline constexpr std::size_t g_uReservedUnseen = 64U << 20;

/** How many records there will be when so many are in a share of the document: a guess, within bounds. */
template <class TRecord>
std::size_t Promised(std::size_t _uCount, double _dShare)
{
    const double dPromised = _dShare < 1 ? 1.05 * static_cast<double>(_uCount) / _dShare : 0;
    const std::size_t uBound = std::max(8 * _uCount, g_uReservedUnseen / sizeof(TRecord));
    return std::max(_uCount, static_cast<std::size_t>(std::min(dPromised, static_cast<double>(uBound))));
}

/** Makes room for one record more, and when there is none for those that the ones so far promise. */
template <class TRecord>
void MakeRoom(const ZkCommon::Storage::XmlElement& _rContainer, std::vector<TRecord>& _rvecRecord)
{
    if (const std::size_t uSize = _rvecRecord.size(); uSize == _rvecRecord.capacity()) {
        _rvecRecord.reserve(std::max(uSize + uSize / 2 + 1, Promised<TRecord>(uSize, _rContainer.Share())));
    }
}

/** A record at the container's end, which goes again unless it is kept. */
template <class TContainer>
class NewRecord
{
public:
    using Record = typename TContainer::value_type;

    /** @param _rstBegin  what it is before it is read; else empty */
    template <class... TBegin>
    explicit NewRecord(TContainer& _rRecords, const TBegin&... _rstBegin) : m_rRecords(_rRecords)
    {
        m_rRecords.emplace_back(_rstBegin...);
    }
    NewRecord(const NewRecord&) = delete;
    NewRecord& operator=(const NewRecord&) = delete;
    ~NewRecord()
    {
        if (!m_bKept) {
            m_rRecords.pop_back();
        }
    }
    Record& Get() noexcept { return m_rRecords.back(); }
    void Keep() noexcept { m_bKept = true; }

private:
    TContainer& m_rRecords;
    bool m_bKept = false;
};

// A description bound to a document: its names are looked up once, and then compared as numbers.

template <class TDescription>
class Bound;

template <class TField>
struct BoundField;

/** The text of a field that is not derived. Its names are given as texts, or as the document knows them. */
template <class TField, class TName>
std::wstring_view TextOf(const ZkCommon::Storage::XmlElement& _rElement, const TField& _rstField, TName _name,
                         TName _child)
{
    switch (_rstField.enSource) {
    case Source::Attribute:
        return _rElement.Attribute(_name, _rstField.svDefault);
    case Source::Child:
        return _rElement.ChildText(_name, _rstField.svDefault);
    case Source::ChildAttribute:
        return _rElement.FirstChild(_child).Attribute(_name, _rstField.svDefault);
    case Source::OwnText:
        return _rElement.Text();
    default:
        return {};
    }
}

/** As above, of a field whose names are not bound. */
template <class TField>
std::wstring_view TextOf(const ZkCommon::Storage::XmlElement& _rElement, const TField& _rstField)
{
    return TextOf(_rElement, _rstField, _rElement.FindName(_rstField.svName), _rElement.FindName(_rstField.svChild));
}

template <class TRecord, class TValue, class TConversion>
struct BoundField<Field<TRecord, TValue, TConversion>>
{
    BoundField(const ZkCommon::Storage::XmlElement& _rElement, const Field<TRecord, TValue, TConversion>& _rstField)
        : rstField(_rstField), name(_rElement.FindName(_rstField.svName)), child(_rElement.FindName(_rstField.svChild))
    {}

    /** @return false when a required field does not accept the text */
    template <class THook, class TOwner>
    bool Read(const ZkCommon::Storage::XmlElement& _rElement, TOwner& _rstRecord, const THook& _rHook) const
    {
        if (rstField.enSource == Source::Derived || (rstField.pfnWhen != nullptr && !rstField.pfnWhen(_rstRecord))) {
            return true;
        }
        const std::wstring_view svText = TextOf(_rElement, rstField, name, child);
        if (rstField.bRequired && !rstField.stConversion.Accepts(svText)) {
            return false;
        }
        _rstRecord.*rstField.pMember = static_cast<TValue>(rstField.stConversion.Read(svText));
        _rHook.OnField(_rElement, rstField, _rstRecord);
        return true;
    }

    const Field<TRecord, TValue, TConversion>& rstField;
    ZkCommon::Storage::XmlName name;
    ZkCommon::Storage::XmlName child;
};

template <class TRecord, class TContainer>
struct BoundField<TextsField<TRecord, TContainer>>
{
    BoundField(const ZkCommon::Storage::XmlElement& _rElement, const TextsField<TRecord, TContainer>& _rstField)
        : rstField(_rstField),
          element(_rElement.FindName(_rstField.svElement)),
          name(_rElement.FindName(_rstField.svName))
    {}

    template <class THook, class TOwner>
    bool Read(const ZkCommon::Storage::XmlElement& _rElement, TOwner& _rstRecord, const THook&) const
    {
        for (auto cElement = _rElement.FirstChild(element); cElement; cElement = cElement.NextSibling(element)) {
            if (const std::wstring_view svText = cElement.Attribute(name); !svText.empty()) {
                (_rstRecord.*rstField.pMember).emplace_back(svText);
            }
        }
        return true;
    }

    const TextsField<TRecord, TContainer>& rstField;
    ZkCommon::Storage::XmlName element;
    ZkCommon::Storage::XmlName name;
};

template <class TRecord, class TContainer, class TDescription>
struct BoundField<ListField<TRecord, TContainer, TDescription>>
{
    BoundField(const ZkCommon::Storage::XmlElement& _rElement,
               const ListField<TRecord, TContainer, TDescription>& _rstField)
        : rstField(_rstField), cNested(_rElement, *_rstField.pDescription)
    {}

    template <class THook, class TOwner>
    bool Read(const ZkCommon::Storage::XmlElement& _rElement, TOwner& _rstRecord, const THook& _rHook) const
    {
        if (rstField.pfnWhen != nullptr && !rstField.pfnWhen(_rstRecord)) {
            return true;
        }
        _rHook.OnList(_rElement, rstField);
        cNested.ReadAll(rstField.svPath.empty() ? _rElement : _rElement.Child(rstField.svPath),
                        _rstRecord.*rstField.pMember, _rHook);
        return true;
    }

    const ListField<TRecord, TContainer, TDescription>& rstField;
    Bound<TDescription> cNested;
};

template <class TRecord, class... TFields>
class Bound<Description<TRecord, TFields...>>
{
public:
    Bound(const ZkCommon::Storage::XmlElement& _rElement, const Description<TRecord, TFields...>& _rstDescription)
        : m_bAnyName(_rstDescription.svElement.empty()),
          m_element(_rElement.FindName(_rstDescription.svElement)),
          m_tplFields(std::apply(
              [&](const TFields&... _stFields) {
                  return std::tuple<BoundField<TFields>...>(BoundField<TFields>(_rElement, _stFields)...);
              },
              _rstDescription.tplFields))
    {}

    /** One record of the element's children that the description is of, in document order, each read in its place. */
    template <class TContainer, class THook>
    void ReadAll(const ZkCommon::Storage::XmlElement& _rContainer, TContainer& _rRecords, const THook& _rHook) const
    {
        Reserve(_rContainer, _rRecords);
        for (auto cElement = _rContainer.FirstChild(); cElement; cElement = cElement.NextSibling()) {
            ReadInto(_rRecords, _rContainer, cElement, _rHook);
        }
    }

    /** The same of the document's own records, which may be parsed meanwhile. */
    template <class TContainer, class THook>
    void PassAll(const ZkCommon::Storage::XmlElement& _rContainer, TContainer& _rRecords, const THook& _rHook) const
    {
        auto cElement = _rContainer.NextChild();
        Reserve(_rContainer, _rRecords);
        for (; cElement; cElement = _rContainer.NextChild(cElement)) {
            ReadInto(_rRecords, _rContainer, cElement, _rHook);
        }
    }

    /** Hands them over one by one. */
    template <class TVisit, class THook>
    void ForEach(const ZkCommon::Storage::XmlElement& _rContainer, const TVisit& _fnVisit, const THook& _rHook) const
    {
        for (auto cElement = _rContainer.NextChild(); cElement; cElement = _rContainer.NextChild(cElement)) {
            TRecord stRecord;
            if (IsOf(cElement) &&
                _rHook.template Around<TRecord>([&] { return ReadOne(cElement, stRecord, _rHook); })) {
                _fnVisit(std::move(stRecord));
            }
        }
    }

    /** @return false when the hook or a required field dropped the record, whose lists are then not read */
    template <class THook>
    bool ReadOne(const ZkCommon::Storage::XmlElement& _rElement, TRecord& _rstRecord, const THook& _rHook) const
    {
        return _rHook.OnElement(_rElement, std::as_const(_rstRecord)) &&
               ReadFields<false>(_rElement, _rstRecord, _rHook) && _rHook.OnRecord(_rElement, _rstRecord) &&
               ReadFields<true>(_rElement, _rstRecord, _rHook);
    }

private:
    bool IsOf(const ZkCommon::Storage::XmlElement& _rElement) const noexcept
    {
        return m_bAnyName || _rElement.Is(m_element);
    }

    /** Makes room for those that are there, and for those that they promise of a document that is parsed meanwhile. */
    template <class TContainer>
    void Reserve(const ZkCommon::Storage::XmlElement& _rContainer, TContainer& _rRecords) const
    {
        if constexpr (requires { _rRecords.reserve(0); }) {
            std::size_t uCount = 0;
            for (auto cElement = _rContainer.FirstChild(); cElement; cElement = cElement.NextSibling()) {
                uCount += IsOf(cElement) ? 1U : 0U;
            }
            _rRecords.reserve(_rRecords.size() + Promised<TRecord>(uCount, _rContainer.Share()));
        }
    }

    template <class TContainer, class THook>
    void ReadInto(TContainer& _rRecords, const ZkCommon::Storage::XmlElement& _rContainer,
                  const ZkCommon::Storage::XmlElement& _rElement, const THook& _rHook) const
    {
        if (!IsOf(_rElement)) {
            return;
        }
        if constexpr (requires { _rRecords.capacity(); }) {
            MakeRoom(_rContainer, _rRecords);
        }
        NewRecord cRecord(_rRecords);
        if (_rHook.template Around<TRecord>([&] { return ReadOne(_rElement, cRecord.Get(), _rHook); })) {
            cRecord.Keep();
        }
    }

    template <bool t_bLists, class THook>
    bool ReadFields(const ZkCommon::Storage::XmlElement& _rElement, TRecord& _rstRecord, const THook& _rHook) const
    {
        const auto ReadField = [&]<class TField>(const BoundField<TField>& _rField) {
            if constexpr (TField::g_bList == t_bLists) {
                return _rField.Read(_rElement, _rstRecord, _rHook);
            } else {
                return true;
            }
        };
        return std::apply([&](const auto&... _rFields) { return (ReadField(_rFields) && ...); }, m_tplFields);
    }

    bool m_bAnyName;
    ZkCommon::Storage::XmlName m_element;
    std::tuple<BoundField<TFields>...> m_tplFields;
};

/**
 * Appends one record for each child of the container that the description is of, in document order. What was appended
 * before an exception stays. A document that is loaded with XmlParser::OneByOne is parsed meanwhile, and may turn out not
 * to be well-formed.
 */
template <class TDescription, class TContainer, class THook = ReadHook>
void ReadRecords(const ZkCommon::Storage::XmlElement& _rContainer, const TDescription& _rstDescription,
                 TContainer& _rRecords, const THook& _rHook = {})
{
    Bound<TDescription>(_rContainer, _rstDescription).PassAll(_rContainer, _rRecords, _rHook);
}

/** Reads the same records, and hands each to _fnVisit before it reads the next. */
template <class TDescription, class TVisit, class THook = ReadHook>
void ForEachRecord(const ZkCommon::Storage::XmlElement& _rContainer, const TDescription& _rstDescription,
                   const TVisit& _fnVisit, const THook& _rHook = {})
{
    Bound<TDescription>(_rContainer, _rstDescription).ForEach(_rContainer, _fnVisit, _rHook);
}

/** Fills one record from its element. @return false when the hook dropped it */
template <class TDescription, class THook = ReadHook>
bool ReadRecord(const ZkCommon::Storage::XmlElement& _rElement, const TDescription& _rstDescription,
                typename TDescription::Record& _rstRecord, const THook& _rHook = {})
{
    return Bound<TDescription>(_rElement, _rstDescription).ReadOne(_rElement, _rstRecord, _rHook);
}

} // namespace Varnhelt::Documents
