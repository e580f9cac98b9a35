#pragma once

#include "Request.h"

#include <cstdint>

/**
 * The worker of every function object: checks a request and hands it to the one reader or writer of its document.
 * One object serves one request on one thread and carries nothing to the next.
 */
class CFunctionXml
{
public:
    CFunctionXml() = default;
    CFunctionXml(const CFunctionXml&) = delete;
    CFunctionXml& operator=(const CFunctionXml&) = delete;
    virtual ~CFunctionXml() = default;

    /** @return g_ulSuccess for a known value type and a record that is there, else g_ulInvalidArgument */
    static std::uint32_t CheckParameters(const Varnhelt::Request& _rstRequest);
    std::uint32_t QueryValue(const Varnhelt::Request& _rstRequest);
    std::uint32_t StoreValue(const Varnhelt::Request& _rstRequest);
    std::uint32_t SendMessage(std::uint32_t _ulActionType, std::uint32_t _ulActionSubType,
                              std::uint32_t _ulMessageOption, void* _pMessageData, std::uintptr_t ulMessageDataReserved,
                              std::uint32_t _ulOption, void* _pMessageResult);

private:
    Varnhelt::Worker m_stWorker;
};
