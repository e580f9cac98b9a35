#pragma once

#include "SrvFrwk_Interface.h"
#include "SrvFrwk_ReferenceCount.h"

#include <cstdint>

/**
 * The module's one manager: counts its users and makes and frees function objects, of which it keeps no track. All
 * operations are thread-safe.
 */
class CFunctionManager
{
public:
    CFunctionManager() = default;
    CFunctionManager(const CFunctionManager&) = delete;
    CFunctionManager& operator=(const CFunctionManager&) = delete;
    virtual ~CFunctionManager() = default;

    std::uint32_t Initialize();
    std::uint32_t Uninitialize();
    std::uint32_t CreateFunction(SrvFrwk::Interface::IFunctionProvider** _ppFunctionContext);
    std::uint32_t FreeFunction(SrvFrwk::Interface::IFunctionProvider* _pFunctionContext);

private:
    SrvFrwk::Utility::ReferenceCount m_cReferenceCount;
};
