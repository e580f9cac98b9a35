#pragma once

#include <iosfwd>
#include <type_traits>
#include <typeinfo>

/** A record as the tool prints it; its type's name where it has no description. */
void PrintRecord(const std::type_info& _rType, const void* _pRecord, std::ostream& _rOut);

namespace SrvFrwk {

/** For failures of tests. */
template <class TRecord>
requires std::is_aggregate_v<TRecord>
void PrintTo(const TRecord& _rstRecord, std::ostream* _pOut)
{
    PrintRecord(typeid(TRecord), &_rstRecord, *_pOut);
}

} // namespace SrvFrwk
