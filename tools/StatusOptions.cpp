#include "tools/StatusOptions.h"

#include <getopt.h>

#include <array>

const char kStatusUsage[] =
    "usage: KSStatus [OPTION...]\n"
    "\n"
    "Tells how the browser extensions stand on this Mac, for the user who asks. Changes nothing.\n"
    "\n"
    "  --plan                what a run of the installer would change, path by path\n"
    "  --plan=allowed        the same, if administrator rights are given\n"
    "  --plan=refused        the same, if they are refused\n"
    "  --json                all of it as one JSON object (docs/ksstatus.md)\n"
    "  --help, --version\n"
    "\n"
    "Status: 0 all is well; 1 a run would change something, or an integration is dead; 2 wrong\n"
    "usage; 3 something could not be looked at.\n";

namespace {

enum Option : int { kPlan = 1, kJson, kHelp, kVersion };

const std::array<option, 5> kOptions = {{
    {"plan", optional_argument, nullptr, kPlan},
    {"json", no_argument, nullptr, kJson},
    {"help", no_argument, nullptr, kHelp},
    {"version", no_argument, nullptr, kVersion},
    {nullptr, 0, nullptr, 0},
}};

bool ReadPlan(const char* argument, StatusOptions* options) {
    const std::string which = argument != nullptr ? argument : "both";
    const bool isBoth = which == "both" && argument == nullptr;
    options->planAllowed = options->planAllowed || isBoth || which == "allowed";
    options->planRefused = options->planRefused || isBoth || which == "refused";
    return isBoth || which == "allowed" || which == "refused";
}

bool Take(int option, const char* argument, StatusOptions* options) {
    switch (option) {
        case kPlan:
            return ReadPlan(argument, options);
        case kJson:
            return options->json = true;
        case kHelp:
            options->task = StatusOptions::Task::kHelp;
            return true;
        case kVersion:
            options->task = StatusOptions::Task::kVersion;
            return true;
        default:
            return false;
    }
}

}  // namespace

StatusOptions ParseStatusOptions(int argc, char** argv) {
    StatusOptions options;
    const auto refuse = [&options](const std::string& complaint) {
        options.task = StatusOptions::Task::kWrongUsage;
        options.complaint = complaint;
    };
    opterr = 0;
    for (int option = 0; (option = getopt_long(argc, argv, "", kOptions.data(), nullptr)) != -1;) {
        if (option == '?') {
            refuse(std::string("no such option, or an argument too many: ") + argv[optind - 1]);
            return options;
        }
        if (!Take(option, optarg, &options)) {
            refuse(std::string("--plan does not take ") + optarg);
            return options;
        }
    }
    if (optind < argc) {
        refuse(std::string("there is nothing to name: ") + argv[optind]);
    }
    return options;
}
