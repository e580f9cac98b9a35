#pragma once

#include "ZkComn_Exception.h"

/** The code with which an operation fails with an exception of that kind; 0 when it succeeds. */
template <class TException = ZkCommon::Storage::Exception, class TOperation>
std::uint32_t CodeOf(TOperation&& _fnOperation)
{
    try {
        _fnOperation();
        return 0;
    } catch (TException* _pError) {
        return ZkCommon::Exception::Caught(_pError)->ErrorCode();
    }
}
