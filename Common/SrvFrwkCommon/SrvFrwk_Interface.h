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
     * Reads a configuration document. The document is opened, read and closed within the call.
     * @param ulReserved        not consulted
     * @param _ulValueType      what is asked for: one of ValueType
     * @param _ulValueSubType   logged; the deployment components' section
     * @param _pValueData       the caller's container or record for that value type, of exactly the type that ValueType
     *                          names: it cannot be checked. A container is emptied first and then has a record for each
     *                          element of the document, in its order; what was appended before a failure stays
     * @param _ulValueOption    the run mode of the deployment components, else not consulted
     * @param _pOptionData      the caller's request record, for the value types that take one; only read. Not consulted
     *                          for the others
     * @return Result::g_ulSuccess, also for a well-formed document without the expected root, which has no records;
     *         g_ulRefused for a value type that function objects do not serve, with nothing touched;
     *         g_ulInvalidArgument for a null _pValueData or a reserved value type; g_ulMissingObject for a missing
     *         request or an empty directory in it; g_ulFailed for a document that is missing, unreadable or not
     *         well-formed, or that has no such number; g_ulUndetermined for a policy when memory runs out
     */
    virtual std::uint32_t QueryValue([[maybe_unused]] std::uint32_t ulReserved,
                                     [[maybe_unused]] std::uint32_t _ulValueType,
                                     [[maybe_unused]] std::uint32_t _ulValueSubType, [[maybe_unused]] void* _pValueData,
                                     [[maybe_unused]] std::uint32_t _ulValueOption, [[maybe_unused]] void* _pOptionData)
    {
        return Result::g_ulNotImplemented;
    }

    /**
     * Writes a configuration document. It is replaced as a whole: readers see the old one or the new one. Of two stores
     * at the same time the one that reads first may be undone by the other, so callers serialise them.
     * @param _pValueData  the caller's container or record, as for QueryValue; only read
     * @return as QueryValue; g_ulFailed also when the document has no element to write to or cannot be replaced. It is
     *         then as before; of a pre-update list the platform may be stored and the list not
     */
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
     * @param _pMessageData          the message's input, the caller's; only read
     * @param ulMessageDataReserved  not consulted
     * @param _pMessageResult        the caller's result record, where the message has one
     * @return the action's result, for a local update: Result::g_ulSuccess; g_ulPartialSuccess when it was not applied;
     *         g_ulMissingObject without a path; g_ulUndetermined when it is not known whether the description exists
     *         or which release is installed; g_ulRefused for an unknown item, or a system before Windows XP;
     *         g_ulFailed when it is not well-formed. And Result::g_ulFailed for an unknown message type
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
