// The process-wide objects, in the order in which they are built before main; destroyed in reverse.
// Nothing else may stand here, and this file's object must be linked last: the constructors send
// messages, and a class is known to the runtime only once its own file has been initialised.
#include "logging/CLogger.h"
#include "platform/SafeStart.h"
#include "settings/KSEnvironement.h"
#include "settings/KSGlobals.h"

SafeStart SafeStart::instance;  // first: the others open files

const std::string KSEnvironement::DEFAULT_APP_VERSION_NUMBER = "20200101";
std::string KSEnvironement::defaultDumpFolder;
std::string KSEnvironement::crashDumpPath;
std::string KSEnvironement::logPath;
std::mutex KSEnvironement::sharedMutex;
std::shared_ptr<KSEnvironement> KSEnvironement::shared;

CLogger CLogger::m_Logger;

KSGlobals KSGlobals::instance;
