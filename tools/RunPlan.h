#pragma once

#include <string>
#include <vector>

#include "tools/ShadowTree.h"

/// The browsers by the names that the changes of a plan bear.
extern const char kSafari[];
extern const char kChrome[];
extern const char kEdge[];
extern const char kFirefox[];
/// What no browser is behind: the product's own folders.
extern const char kProduct[];

/// What a run of the installer would do now.
struct RunPlan {
    std::vector<Change> changes;      ///< the log and the script file apart
    bool keychain = false;            ///< Safari's list of extensions is looked for and rewritten
    bool page = false;                ///< Firefox opens the privacy page
    int prompts = 0;                  ///< administrator rights are asked for, at most so often
    std::vector<std::string> hidden;  ///< folders where it would act and this user may not look
};

/// A dry run: nothing is changed.
/// @param allowed  whether administrator rights are given
RunPlan PlanRun(bool allowed);
