// vrnt sample: a small product to try the tool and a host on.

#include "Arguments.h"
#include "Commands/Commands.h"
#include "Output/Output.h"
#include "Sample/SampleProduct.h"
#include "SrvFrwk_ResultCode.h"

#include <filesystem>

namespace Vrnt {

namespace {

constexpr Argument g_stSampleFolder{
    .szName = "FOLDER", .szHelp = "Where the product is laid out: a new or empty folder", .bRequired = true};
constexpr Argument g_stRegister{.szName = "--register", .szHelp = "Register it as the installed product"};
constexpr Argument g_stSampleReplace{
    .szName = "--replace", .szHelp = "Register it although another product is registered, which --remove restores"};
constexpr Argument g_stRemove{.szName = "--remove", .szHelp = "Take all of it back"};
constexpr const Argument* g_apSampleArgument[] = {&g_stSampleFolder, &g_stRegister, &g_stSampleReplace, &g_stRemove};

void RunSample(Tool& _rTool, const Arguments& _rArguments)
{
    const std::filesystem::path tszFolder =
        std::filesystem::path(_rArguments.Path(g_stSampleFolder)).lexically_normal();
    const std::string sFolder = Quoted(_rArguments.Text(g_stSampleFolder));
    if (_rArguments.Has(g_stRemove)) {
        RemoveSample(tszFolder);
        const bool bOthers = std::filesystem::exists(tszFolder); // what was made there since
        PrintText(_rTool, "The sample product in " + sFolder + " is removed" +
                              (bOthers ? "; the folder stays, since other files are in it.\n" : ".\n"));
    } else {
        const bool bReplace = _rArguments.Has(g_stSampleReplace);
        const bool bRegister = _rArguments.Has(g_stRegister) || bReplace;
        if (bRegister && !bReplace) {
            RefuseOtherProduct();
        }
        LayOutSample(tszFolder);
        if (bRegister) {
            RegisterSample(tszFolder);
            PrintText(_rTool, "The sample product is in " + sFolder +
                                  " and is registered. Try:\n"
                                  "    vrnt query policy --controller eFirewall\n"
                                  "    vrnt query threat-name --engine elmap --id 1024\n"
                                  "    vrnt documents\n");
        } else {
            PrintText(_rTool, "The sample product is in " + sFolder +
                                  ". Try:\n"
                                  "    vrnt check --document policy " +
                                  Quoted(_rArguments.Text(g_stSampleFolder) + "\\FwPolicy.xen") +
                                  "\n"
                                  "    vrnt direct alias --dir " +
                                  sFolder +
                                  " --file DepAlias.xen\n"
                                  "    vrnt query competitor-actions --dir " +
                                  sFolder + "\n");
        }
        PrintText(_rTool, "This takes it back:\n    vrnt sample " + sFolder + " --remove\n");
    }
    PrintAnswer(_rTool, SrvFrwk::Result::g_ulSuccess, nullptr, {});
}

} // namespace

constinit const Command g_stSample{.szName = "sample",
                                   .szHelp = "Lay out a sample product to try things on, and register it",
                                   .szExample = "vrnt sample C:\\Sample --register\nvrnt sample C:\\Sample --remove",
                                   .aArgument = g_apSampleArgument,
                                   .pfnRun = &RunSample};

} // namespace Vrnt
