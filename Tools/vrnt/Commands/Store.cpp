// vrnt store: what a host gives a function object to keep.

#include "Commands/Commands.h"

namespace Vrnt {

namespace {

constexpr const Command* g_apStoreCommand[] = {&g_stStorePolicy, &g_stStorePreUpdateList};

} // namespace

constinit const Command g_stStore{.szName = "store",
                                  .szHelp = "Have a function object write a configuration document",
                                  .szExample = "vrnt store policy --input policy.json",
                                  .aCommand = g_apStoreCommand};

} // namespace Vrnt
