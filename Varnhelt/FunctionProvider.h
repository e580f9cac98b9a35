#pragma once

#include "SrvFrwk_Interface.h"

#include <cstdint>

/**
 * The function object that hosts receive: screens each request by its type, has a CFunctionXml of its own carry it out,
 * and hands the result through. It has no state.
 */
class CFunctionProvider final : public SrvFrwk::Interface::IFunctionProvider
{
public:
    std::uint32_t Initialize() override;
    std::uint32_t Uninitialize() override;
    std::uint32_t QueryValue(std::uint32_t ulReserved, std::uint32_t _ulValueType, std::uint32_t _ulValueSubType,
                             void* _pValueData, std::uint32_t _ulValueOption, void* _pOptionData) override;
    std::uint32_t StoreValue(std::uint32_t ulReserved, std::uint32_t _ulValueType, std::uint32_t _ulValueSubType,
                             void* _pValueData, std::uint32_t _ulValueOption, void* _pOptionData) override;
    std::uint32_t SendMessage(std::uint32_t _ulMessageType, std::uint32_t _ulMessageSubType,
                              std::uint32_t _ulMessageOption, void* _pMessageData, std::uintptr_t ulMessageDataReserved,
                              std::uint32_t _ulOption, void* _pMessageResult) override;
};
