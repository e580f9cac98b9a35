#pragma once

#include "ZkComn_Exception.h"

/** The exception of that kind with which an operation fails; null when it succeeds. */
template <class TException, class TOperation>
std::unique_ptr<TException> FailureOf(TOperation&& _fnOperation)
{
    try {
        _fnOperation();
        return nullptr;
    } catch (TException* _pError) {
        return std::unique_ptr<TException>(_pError);
    }
}

/** The code of that exception; 0 when the operation succeeds. */
template <class TException = ZkCommon::Storage::Exception, class TOperation>
std::uint32_t CodeOf(TOperation&& _fnOperation)
{
    const std::unique_ptr<TException> pError = FailureOf<TException>(_fnOperation);
    return pError != nullptr ? pError->ErrorCode() : 0;
}
