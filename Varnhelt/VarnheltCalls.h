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

/** @return the record or container of the value type, which has no request. @throws Failure */
template <std::uint32_t t_ulValueType>
requires std::is_void_v<typename SrvFrwk::CallsOf<t_ulValueType>::Request>
typename SrvFrwk::CallsOf<t_ulValueType>::Answer Query(SrvFrwk::Interface::IFunctionProvider& _rFunction)
{
    typename SrvFrwk::CallsOf<t_ulValueType>::Answer cAnswer{};
    Checked([&] { return _rFunction.QueryValue(0, t_ulValueType, 0, &cAnswer, 0, nullptr); });
    return cAnswer;
}

/**
 * @param _rRequest  the request record, which is only read; or the number that is looked up
 * @return the record or container of the value type
 * @throws Failure; what was read before it is lost: QueryValue itself leaves it in the container
 */
template <std::uint32_t t_ulValueType>
requires(!std::is_void_v<typename SrvFrwk::CallsOf<t_ulValueType>::Request>)
    typename SrvFrwk::CallsOf<t_ulValueType>::Answer
    Query(SrvFrwk::Interface::IFunctionProvider& _rFunction,
          const typename SrvFrwk::CallsOf<t_ulValueType>::Request& _rRequest)
{
    using Calls = SrvFrwk::CallsOf<t_ulValueType>;
    typename Calls::Answer cAnswer{};
    void* pOption = nullptr;
    if constexpr (requires { Calls::pulKey; }) {
        cAnswer.*Calls::pulKey = _rRequest;
    } else {
        pOption = const_cast<typename Calls::Request*>(&_rRequest); // NOLINT(*-const-cast): the interface has one type
    }
    Checked([&] { return _rFunction.QueryValue(0, t_ulValueType, 0, &cAnswer, 0, pOption); });
    return cAnswer;
}

/** Stores the record or container, which is only read. @throws Failure */
template <std::uint32_t t_ulValueType>
void Store(SrvFrwk::Interface::IFunctionProvider& _rFunction,
           const typename SrvFrwk::CallsOf<t_ulValueType>::Stored& _rStored)
{
    auto* const pStored =
        const_cast<typename SrvFrwk::CallsOf<t_ulValueType>::Stored*>(&_rStored); // NOLINT(*-const-cast)
    Checked([&] { return _rFunction.StoreValue(0, t_ulValueType, 0, pStored, 0, nullptr); });
}

/**
 * Carries out a local update.
 * @param _tszPath  the full path of its description, which is deleted unless it asks to stay
 * @return false when nothing was applied: the description is missing, or cannot be deleted
 * @throws Failure
 */
inline bool Update(SrvFrwk::Interface::IFunctionProvider& _rFunction, std::wstring _tszPath)
{
    return Checked([&] {
               return _rFunction.SendMessage(SrvFrwk::MessageType::g_ulLocalUpdate, 0, 0, &_tszPath, 0, 0, nullptr);
           }) == SrvFrwk::Result::g_ulSuccess;
}

} // namespace Varnhelt
