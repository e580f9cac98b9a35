#pragma once

#include <filesystem>

/** A small product to try the tool and a host on. */
namespace Vrnt {

/** Lays out the product's documents in a folder, which is made. @throws UsageError when it is not empty */
void LayOutSample(const std::filesystem::path& _rtszFolder);

/** @throws UsageError when a product is registered */
void RefuseOtherProduct();

/** Registers the folder as the installed product, and keeps in it what was registered before. */
void RegisterSample(const std::filesystem::path& _rtszFolder);

/**
 * Takes back the registration and the files; what others put into the folder stays.
 * @throws UsageError when there is no sample product in it
 */
void RemoveSample(const std::filesystem::path& _rtszFolder);

} // namespace Vrnt
