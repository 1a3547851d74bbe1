#include "installer/InstallerRun.h"

int main() {
    RunInstaller();
    return 0;
}
