#include "platform/AppWorkspaceBridges.h"

bool IsAppRunningCPP(const std::string& name) {
    return IsAppRunningBridge(name);
}
long StartKeystrelCPP() {
    return StartKeystrelBridge();
}
void StartApplicationCPP(const std::string& name) {
    StartApplicationBridge(name);
}
bool StartKSWizardOldWithArgumentsCPP(const std::string& mail, const std::string& pass) {
    return StartKSWizardOldWithArgumentsBridge(mail, pass);
}
bool StartKSUpdaterWithArgumentsCPP(const std::string& path, const std::string& desc,
                                    bool mandatory, bool console) {
    return StartKSUpdaterWithArgumentsBridge(path, desc, mandatory, console);
}
