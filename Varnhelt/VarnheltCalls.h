#pragma once

#include "SrvFrwk_Calls.h"
#include "SrvFrwk_Interface.h"
#include "VarnheltReasons.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

/** The operations of a function object, typed: what does not belong to the value type does not compile. */
namespace Varnhelt {

/** A call that failed: what() has the code, and the reason or else the code in words, in UTF-8. */
class Failure : public std::runtime_error
{
public:
    explicit Failure(std::uint32_t _ulResult, std::wstring _tszReason = {})
        : std::runtime_error(Explain(_ulResult, _tszReason)), m_ulResult(_ulResult), m_tszReason(std::move(_tszReason))
    {}

    /** One of SrvFrwk::Result. */
    std::uint32_t Code() const noexcept { return m_ulResult; }

    /** The first error line that the call traced, as a rule the deepest cause; empty without an object of Reasons. */
    const std::wstring& Reason() const noexcept { return m_tszReason; }

private:
    static std::string Explain(std::uint32_t _ulResult, const std::wstring& _rtszReason)
    {
        std::array<char, 16> aCode{};
        static_cast<void>(std::snprintf(aCode.data(), aCode.size(), "0x%08x", static_cast<unsigned>(_ulResult)));
        return std::string(aCode.data()) + ": " +
               (_rtszReason.empty() ? std::string(SrvFrwk::Result::ToText(_ulResult)) : ToUtf8(_rtszReason));
    }
    static std::string ToUtf8(const std::wstring& _rtszText)
    {
        const int iLength = static_cast<int>(_rtszText.size());
        std::string sUtf8(_rtszText.size() * 3, '\0');
        const int iUtf8 = ::WideCharToMultiByte(CP_UTF8, 0, _rtszText.data(), iLength, sUtf8.data(),
                                                static_cast<int>(sUtf8.size()), nullptr, nullptr);
        sUtf8.resize(static_cast<std::size_t>(iUtf8));
        return sUtf8;
    }

    std::uint32_t m_ulResult;
    std::wstring m_tszReason;
};

/** The call's result. @throws Failure when it is one */
template <class TCall>
std::uint32_t Checked(const TCall& _fnCall)
{
    std::wstring tszReason;
    const ReasonOfCall cReason(tszReason);
    const std::uint32_t ulResult = _fnCall();
    if (SrvFrwk::Result::IsFailure(ulResult)) {
        throw Failure(ulResult, tszReason);
    }
    return ulResult;
}

/** What a query gave: its result code, and the record or container as it is then; what was read before a failure stays. */
template <std::uint32_t t_ulValueType>
struct Answer
{
    std::uint32_t ulResult = SrvFrwk::Result::g_ulMissingObject; // one of SrvFrwk::Result
    typename SrvFrwk::CallsOf<t_ulValueType>::Answer cValue{};
};

/** Queries the value type, which has no request. A failure is a result code, not an exception. */
template <std::uint32_t t_ulValueType>
requires std::is_void_v<typename SrvFrwk::CallsOf<t_ulValueType>::Request> Answer<t_ulValueType>
TryQuery(SrvFrwk::Interface::IFunctionProvider& _rFunction)
{
    Answer<t_ulValueType> stAnswer;
    stAnswer.ulResult = _rFunction.QueryValue(0, t_ulValueType, 0, &stAnswer.cValue, 0, nullptr);
    return stAnswer;
}

/** The same with a request record, which is only read; or with the number that is looked up. */
template <std::uint32_t t_ulValueType>
requires(!std::is_void_v<typename SrvFrwk::CallsOf<t_ulValueType>::Request>) Answer<t_ulValueType> TryQuery(
    SrvFrwk::Interface::IFunctionProvider& _rFunction,
    const typename SrvFrwk::CallsOf<t_ulValueType>::Request& _rRequest)
{
    using Calls = SrvFrwk::CallsOf<t_ulValueType>;
    Answer<t_ulValueType> stAnswer;
    void* pOption = nullptr;
    if constexpr (requires { Calls::pulKey; }) {
        stAnswer.cValue.*Calls::pulKey = _rRequest;
    } else {
        pOption = const_cast<typename Calls::Request*>(&_rRequest); // NOLINT(*-const-cast): the interface has one type
    }
    stAnswer.ulResult = _rFunction.QueryValue(0, t_ulValueType, 0, &stAnswer.cValue, 0, pOption);
    return stAnswer;
}

/** Stores the record or container, which is only read. @return one of SrvFrwk::Result */
template <std::uint32_t t_ulValueType>
std::uint32_t TryStore(SrvFrwk::Interface::IFunctionProvider& _rFunction,
                       const typename SrvFrwk::CallsOf<t_ulValueType>::Stored& _rStored)
{
    auto* const pStored =
        const_cast<typename SrvFrwk::CallsOf<t_ulValueType>::Stored*>(&_rStored); // NOLINT(*-const-cast)
    return _rFunction.StoreValue(0, t_ulValueType, 0, pStored, 0, nullptr);
}

/**
 * Carries out a local update.
 * @param _tszPath  the full path of its description, which is deleted unless it asks to stay
 * @return one of SrvFrwk::Result; g_ulPartialSuccess when nothing was applied: the description is missing, or cannot be
 *         deleted
 */
inline std::uint32_t TryUpdate(SrvFrwk::Interface::IFunctionProvider& _rFunction, std::wstring _tszPath)
{
    return _rFunction.SendMessage(SrvFrwk::MessageType::g_ulLocalUpdate, 0, 0, &_tszPath, 0, 0, nullptr);
}

/** The value of the answer that a call gives. @throws Failure when there is none; what was read before it is lost */
template <class TAsk>
auto ValueOf(const TAsk& _fnAsk)
{
    std::invoke_result_t<TAsk> stAnswer;
    Checked([&] {
        stAnswer = _fnAsk();
        return stAnswer.ulResult;
    });
    return std::move(stAnswer.cValue);
}

/** As TryQuery. @return the record or container of the value type @throws Failure */
template <std::uint32_t t_ulValueType>
requires std::is_void_v<typename SrvFrwk::CallsOf<t_ulValueType>::Request>
auto Query(SrvFrwk::Interface::IFunctionProvider& _rFunction)
{
    return ValueOf([&] { return TryQuery<t_ulValueType>(_rFunction); });
}
template <std::uint32_t t_ulValueType>
requires(!std::is_void_v<typename SrvFrwk::CallsOf<t_ulValueType>::Request>) auto Query(
    SrvFrwk::Interface::IFunctionProvider& _rFunction,
    const typename SrvFrwk::CallsOf<t_ulValueType>::Request& _rRequest)
{
    return ValueOf([&] { return TryQuery<t_ulValueType>(_rFunction, _rRequest); });
}

/** As TryStore. @throws Failure */
template <std::uint32_t t_ulValueType>
void Store(SrvFrwk::Interface::IFunctionProvider& _rFunction,
           const typename SrvFrwk::CallsOf<t_ulValueType>::Stored& _rStored)
{
    Checked([&] { return TryStore<t_ulValueType>(_rFunction, _rStored); });
}

/** As TryUpdate. @return false when nothing was applied @throws Failure */
inline bool Update(SrvFrwk::Interface::IFunctionProvider& _rFunction, std::wstring _tszPath)
{
    return Checked([&] { return TryUpdate(_rFunction, std::move(_tszPath)); }) == SrvFrwk::Result::g_ulSuccess;
}

} // namespace Varnhelt
