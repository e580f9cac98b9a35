#pragma once

#include "Documents/Compatibility.h"
#include "Request.h"

#include <cstdint>
#include <string_view>

/** The update request that is sent before an installation: a document of the caller's, of which two places are set. */
namespace Varnhelt::Documents {

inline constexpr std::wstring_view g_svRequestProduct = L"product";
inline constexpr std::wstring_view g_svRequestPlatform = L"plat";
inline constexpr std::wstring_view g_svRequestComponents = L"components";
/** An element of the list; its attributes are those of a compatibility component. */
inline constexpr std::wstring_view g_svRequestComponent = L"component";

/** Puts a PreUpdateList into the document that it names; contract as Handler. */
std::uint32_t StorePreUpdateList(Worker& _rWorker, const Request& _rstRequest);
/** The steps of StorePreUpdateList, each of which stores the document. */
std::uint32_t ImpChangePlatform(Worker& _rWorker, const SrvFrwk::PreUpdateList* _pCompatibilityCheckPrePUInfo);
std::uint32_t ImpStoreValueAsCompatibilityCheckPUList(Worker& _rWorker,
                                                      const SrvFrwk::PreUpdateList* _pCompatibilityCheckPrePUInfo,
                                                      bool _bCreate);

} // namespace Varnhelt::Documents
