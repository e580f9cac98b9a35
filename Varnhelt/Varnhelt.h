#pragma once

#include "SrvFrwk_Interface.h"

#include <cstdint>

/**
 * The exports of Varnhelt.dll. All of them may be called from any thread, return a result code of SrvFrwk::Result, and
 * let no exception out. Result::g_ulMissingObject means that the module could not set itself up when it was loaded.
 */
extern "C" {

/**
 * Count the module's users up and down. Function objects work without it. Both ignore their arguments and return
 * Result::g_ulSuccess; one call too many of either is only logged.
 */
std::uint32_t Vrnt_Initialize(std::uint32_t _ulReserved, void* _pReserved);
std::uint32_t Vrnt_Uninitialize(std::uint32_t _ulReserved, void* _pReserved);

/**
 * Hands out a new function object, which the caller gives back with Vrnt_FreeFunction before it unloads the module.
 * @param _ppFunctionContext  receives the object; untouched on failure. The other arguments are ignored
 * @return Result::g_ulSuccess; g_ulInvalidArgument for a null slot; g_ulNoMemory
 */
std::uint32_t Vrnt_CreateFunction(SrvFrwk::Interface::IFunctionProvider** _ppFunctionContext, std::uint32_t _ulReserved,
                                  void* _pReserved);

/**
 * Destroys a function object, which no thread may use any more.
 * @param _pFunctionContext  of this module's Vrnt_CreateFunction, and given back once
 * @return Result::g_ulSuccess; g_ulInvalidArgument for null
 */
std::uint32_t Vrnt_FreeFunction(SrvFrwk::Interface::IFunctionProvider* _pFunctionContext);
}
