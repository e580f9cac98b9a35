#pragma once

#include <string>

/** Where and as whom the tool runs. */
namespace Vrnt {

struct MachineFacts
{
    std::string sComputer;
    std::string sUser;
    bool bElevated = false; // with an administrator's rights
    std::string sTime;      // local, with what it is ahead of UTC: "2026-11-24 23:20:06 +01:00"
};

MachineFacts FindMachine();

} // namespace Vrnt
