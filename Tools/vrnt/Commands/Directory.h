#pragma once

#include "SrvFrwk_Records.h"
#include "Tool.h"

#include <memory>
#include <string>

/** The option of the commands whose documents lie in a directory of the caller's. */
namespace Vrnt {

inline std::shared_ptr<std::string> AddDirectory(CLI::App* _pCommand)
{
    auto pDirectory = std::make_shared<std::string>();
    _pCommand->add_option("--dir", *pDirectory, "The directory of the document")->type_name("DIR")->required();
    return pDirectory;
}

/** @throws UsageError when the directory is empty */
inline SrvFrwk::XmlDirectoryConfig ToDirectoryConfig(const std::string& _rsDirectory)
{
    return {{}, ToFullPath(_rsDirectory)};
}

} // namespace Vrnt
