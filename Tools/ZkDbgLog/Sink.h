#pragma once

#include "ZkComn_ZkDbgSink.h"

/** Whether the host has set a sink and wants no file to be written in this process. */
bool SinkIsAlone() noexcept;
