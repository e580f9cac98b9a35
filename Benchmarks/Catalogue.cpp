#include "Catalogue.h"

namespace Bench {

std::string MakeCatalogue(std::size_t _uSize)
{
    std::string sText = R"(<?xml version="1.0" encoding="UTF-8"?>)"
                        "\r\n<BaseFramework>\r\n";
    for (unsigned i = 0; sText.size() < _uSize; ++i) {
        const std::string sNumber = std::to_string(i);
        sText += R"(  <FrameworkService Layer="eServiceLayer" Service="eEventManager" version="17.0.)" + sNumber +
                 "\">\r\n"
                 "    <Module>eDynamicLinkLibrary</Module>\r\n"
                 "    <Startup>eAutomatic</Startup>\r\n"
                 "    <Load>eDelayLoad</Load>\r\n"
                 "    <OrderOfLoading>" +
                 sNumber +
                 "</OrderOfLoading>\r\n"
                 "    <OrderOfUnloading>0x10</OrderOfUnloading>\r\n"
                 "    <ConcurrentUnLoading>true</ConcurrentUnLoading>\r\n"
                 "    <Shared>eSharedProvider</Shared>\r\n"
                 "    <Controller>eAntiVirus</Controller>\r\n"
                 "    <Provider>eRealTimeScan</Provider>\r\n"
                 "    <ModuleName>SrvUnit" +
                 sNumber +
                 ".dll</ModuleName>\r\n"
                 "    <AllowToLoadSetupMode>false</AllowToLoadSetupMode>\r\n"
                 "  </FrameworkService>\r\n";
    }
    return sText + "</BaseFramework>\r\n";
}

} // namespace Bench
