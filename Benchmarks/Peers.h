#pragma once

#include "SrvFrwk_Records.h"

#include <string>
#include <vector>

/** Other parsers that read a catalogue into the same records, with the same conversions. */
namespace Bench {

using Units = std::vector<SrvFrwk::ServiceUnit>;

/** pugixml, which parses in place. */
Units ReadByPugixml(const std::wstring& _rtszFile);
Units ReadByTinyxml2(const std::wstring& _rtszFile);

bool SameUnits(const Units& _rvecLeft, const Units& _rvecRight);

} // namespace Bench
