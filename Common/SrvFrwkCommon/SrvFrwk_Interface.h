#pragma once

#include "SrvFrwk_ResultCode.h"

#include <cstdint>
#include <windows.h> // its macro renames SendMessage: so that it does wherever the interface is seen

namespace SrvFrwk::Interface {

/**
 * A function object, as Vrnt_CreateFunction hands it out and Vrnt_FreeFunction takes it back. It keeps no state: any
 * number of threads may use one object, or several, at the same time. No exception leaves an operation.
 *
 * The records and containers that a request points to stay the caller's. They cross the module's boundary by value, so
 * a host is built with the compiler and standard library of the module, sharing its heap (SrvFrwk_Records.h).
 */
class IFunctionProvider
{
public:
    virtual ~IFunctionProvider() = default;

    /** Both may be called in any order, any number of times, or not at all. They return Result::g_ulSuccess. */
    virtual std::uint32_t Initialize() = 0;
    virtual std::uint32_t Uninitialize() = 0;

    /**
     * Reads a configuration document.
     * @param ulReserved        not consulted
     * @param _ulValueType      what is asked for: one of ValueType
     * @param _ulValueSubType   logged; the deployment components' section
     * @param _pValueData       the caller's container or record for that value type. A container is emptied first; what
     *                          was appended before a failure stays
     * @param _ulValueOption    the run mode of the deployment components, else not consulted
     * @param _pOptionData      the caller's request record, for the value types that take one, else null
     * @return Result::g_ulSuccess; g_ulRefused for a value type that function objects do not serve, with nothing
     *         touched; g_ulInvalidArgument for a null _pValueData; g_ulMissingObject for a missing request; g_ulFailed for
     *         a document that is missing, unreadable or not well-formed
     */
    virtual std::uint32_t QueryValue([[maybe_unused]] std::uint32_t ulReserved,
                                     [[maybe_unused]] std::uint32_t _ulValueType,
                                     [[maybe_unused]] std::uint32_t _ulValueSubType, [[maybe_unused]] void* _pValueData,
                                     [[maybe_unused]] std::uint32_t _ulValueOption, [[maybe_unused]] void* _pOptionData)
    {
        return Result::g_ulNotImplemented;
    }

    /** Writes a configuration document; arguments and results as QueryValue. After a failure the document is as before. */
    virtual std::uint32_t StoreValue([[maybe_unused]] std::uint32_t ulReserved,
                                     [[maybe_unused]] std::uint32_t _ulValueType,
                                     [[maybe_unused]] std::uint32_t _ulValueSubType, [[maybe_unused]] void* _pValueData,
                                     [[maybe_unused]] std::uint32_t _ulValueOption, [[maybe_unused]] void* _pOptionData)
    {
        return Result::g_ulNotImplemented;
    }

    /**
     * Has an action carried out.
     * @param _ulMessageType         one of MessageType
     * @param _ulMessageSubType      logged only, as are _ulMessageOption and _ulOption
     * @param _pMessageData          the message's input
     * @param ulMessageDataReserved  not consulted
     * @param _pMessageResult        the caller's result record, where the message has one
     * @return the action's result; Result::g_ulFailed for an unknown message type
     */
    virtual std::uint32_t SendMessage([[maybe_unused]] std::uint32_t _ulMessageType,
                                      [[maybe_unused]] std::uint32_t _ulMessageSubType,
                                      [[maybe_unused]] std::uint32_t _ulMessageOption,
                                      [[maybe_unused]] void* _pMessageData,
                                      [[maybe_unused]] std::uintptr_t ulMessageDataReserved,
                                      [[maybe_unused]] std::uint32_t _ulOption, [[maybe_unused]] void* _pMessageResult)
    {
        return Result::g_ulNotImplemented;
    }

    /** Reserved for later use. @return Result::g_ulNotImplemented */
    virtual std::uint32_t ReservedOperation() { return Result::g_ulNotImplemented; }
};

} // namespace SrvFrwk::Interface
