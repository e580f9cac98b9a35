#pragma once

/** What our DLLs need of their run time beyond what it does by itself; see the source. */
namespace ModuleRunTime {

/**
 * To be called at process attach, before anything that may throw.
 * @return false when nothing can be thrown in this process: the library must refuse to be loaded then
 */
bool Attach() noexcept;

} // namespace ModuleRunTime
