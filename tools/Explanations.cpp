#include "tools/Explanations.h"

#include <cstring>
#include <string_view>

namespace {

constexpr char kNothing[] = "Nothing.";

// The conversion that `format` begins with, 0 for none.
size_t ConversionLength(std::string_view format) {
    for (const std::string_view conversion : {"%@", "%ld", "%d"}) {
        if (format.substr(0, conversion.size()) == conversion) {
            return conversion.size();
        }
    }
    return 0;
}

// Whether some text in the place of each conversion makes `text`. Each takes as little as it can,
// the last one what is left: there is always fixed text between two of them.
bool Fits(std::string_view format, std::string_view text) {
    const size_t at = format.find('%');
    if (at == std::string_view::npos) {
        return format == text;
    }
    if (text.substr(0, at) != format.substr(0, at)) {
        return false;
    }
    text.remove_prefix(at);
    format.remove_prefix(at + ConversionLength(format.substr(at)));
    const std::string_view next = format.substr(0, format.find('%'));
    if (next.size() == format.size()) {  // the last one
        return text.size() >= next.size() && text.substr(text.size() - next.size()) == next;
    }
    const size_t found = text.find(next);
    return found != std::string_view::npos && Fits(format, text.substr(found));
}

}  // namespace

const std::vector<Explanation>& Explanations() {
    static const std::vector<Explanation> all = {
        // Whether a browser is there.
        {"The app's URL is: %@", "INFO", "ChromeInstall", "Chrome is installed at this address.",
         kNothing},
        {"App not found", "WARNING", "ChromeInstall",
         "Chrome is not installed. The next steps of Chrome's installation are left out.",
         "Nothing, unless Chrome is there: open it once, so that the system knows it."},
        {"Application URL is: %@", "INFO", "EdgeInstall, FFoxInstall",
         "The browser is installed at this address.", kNothing},
        {"Edge application not found!", "INFO", "EdgeInstall",
         "Edge is not installed; its installation is left out.",
         "Nothing, unless Edge is there: open it once, so that the system knows it."},
        {"Firefox application not found!", "INFO", "FFoxInstall",
         "Firefox is not installed; its installation is left out.",
         "Nothing, unless Firefox is there: open it once, so that the system knows it."},
        {"An error occurred: %ld", "WARNING, FAILURE", "ChromeInstall, EdgeInstall, FFoxInstall",
         "The system could not say whether the browser is installed. The number is its status, "
         "shown unsigned: take 4294967296 away from it. The browser counts as not installed.",
         "Look the number up as a status of Launch Services; 4294956486 (-10810) means that a "
         "folder of applications could not be read."},

        // Chrome.
        {"No copy: file not present: %@", "WARNING", "ChromeInstall",
         "The file is there already, and was not copied again. The words say the contrary.",
         kNothing},
        {"Error install for current user: (null)", "WARNING", "ChromeInstall",
         "The extension's package was copied without an error. The line stands after each copy.",
         kNothing},
        {"Error install for current user: %@", "WARNING", "ChromeInstall",
         "The host manifest or the package could not be copied. For the host manifest it is the "
         "first error: after it, its folder may have been opened and the copy have succeeded.",
         "See whether the file is there now. If not, the error tells whether the installed product "
         "lacks it or the folder is closed."},
        {"No copy, file not present: %@", "WARNING", "ChromeInstall",
         "The old button's package is there already, and was not copied again.", kNothing},
        {"Error removing file: %@", "WARNING", "ChromeInstall",
         "A file of the integration could not be removed; for the old button, not copied.",
         "Remove the file that the error names, with administrator rights if need be, and run the "
         "installer again."},
        {"No delete, file not present: %@", "WARNING", "ChromeInstall",
         "There was nothing to remove. A missing package is shown with the host manifest's path.",
         kNothing},
        {"ERROR deactivate password manager in chrome: %@. Error: %@", "WARNING", "ChromeInstall",
         "Chrome's preferences of the first profile could not be read, so that its password "
         "manager stays as it is.",
         "Nothing where Chrome was never opened. Else the error tells what is wrong with the "
         "file; it was not changed."},

        // Edge.
        {"Error creating Edge Native directory: %@", "FAILURE", "EdgeInstall",
         "The folder of Edge's host manifests could not be made. Edge's installation ended here.",
         "Look who owns the folder above; make the folder, or open it, and run the installer "
         "again."},
        {"Error copying Edge JSON: %@", "FAILURE", "EdgeInstall",
         "The host manifest could not be copied. Edge's installation ended here.",
         "Install the product again if its file is missing; remove what stands in the way if the "
         "target exists."},
        {"Error creating Edge External directory: %@", "FAILURE", "EdgeInstall",
         "The folder of Edge's descriptors could not be made. Edge's installation ended here.",
         "Look who owns the folder above; make the folder, or open it, and run the installer "
         "again."},
        {"Error copying Edge created JSON: %@", "FAILURE", "EdgeInstall",
         "The descriptor could not be copied. Edge's installation ended here.",
         "Look who owns Edge's folder \"External Extensions\", and run the installer again."},
        {"Edge extension installed!", "INFO", "EdgeInstall", "Edge's integration is in place.",
         kNothing},
        {"Edge extension uninstalled!", "INFO", "EdgeInstall",
         "The removal for Edge is done, whether or not there was something to remove.", kNothing},

        // Firefox.
        {"Error installing FFox: %@", "FAILURE", "FFoxInstall",
         "The folder of Firefox's extensions could not be made, or the host manifest not copied. "
         "Without the manifest the extension cannot reach the product.",
         "The error names the file. Install the product again if its file is missing; open the "
         "folder if it is closed."},
        {"File at: %@, not present", "INFO", "FFoxInstall",
         "No old toolbar button of the product is there.", kNothing},
        {"Can't delete. File not present %@", "INFO", "FFoxInstall",
         "No old extension of the product is there. The path may be the other extension's.",
         kNothing},
        {" Error uninstalling FFox extension: %@", "FAILURE", "FFoxInstall",
         "An old extension of the product could not be removed. An earlier error may show again "
         "after a removal that succeeded.",
         "See whether the folder that the error names is there still; remove it with administrator "
         "rights."},
        {"Error deleting FFox extension directory: %@", "INFO", "FFoxInstall",
         "The folder of Firefox's extensions is gone already, or could not be removed. The line "
         "stands in every log.",
         "Nothing where the error says that there is no such file."},

        // Safari.
        {"Safari uninstalled successfully.", "INFO", "SafariInstall",
         "The removal for Safari came to its end.", kNothing},
        {"Missing Extensions.plist.", "FAILURE", "SafariInstall",
         "Safari's registry of old extensions is not there or cannot be read. Today's Safari has "
         "none; the keychain was not looked at.",
         "Nothing with Safari 13 and later. On a Mac that hides the file, give the program Full "
         "Disk Access."},
        {"missing Extensions.plist", "FAILURE", "SafariInstall",
         "The same, found while the old toolbar button was removed.",
         "Nothing with Safari 13 and later. On a Mac that hides the file, give the program Full "
         "Disk Access."},
        {"Error %@ writting to file: %@", "FAILURE", "SafariInstall",
         "Safari's registry could not be written; it is as it was.",
         "Look who may write the file, give the program Full Disk Access, and run it again."},
        {"Fail to copy files: %@", "FAILURE", "SafariInstall",
         "Safari's registry could not be written without the old button; it is as it was.",
         "Look who may write the file, give the program Full Disk Access, and run it again."},
        {"Couldn't delete. File not present: %@", "WARNING", "SafariInstall",
         "An old web plug-in is not there.", kNothing},
        {"Error deleting file: %@", "WARNING", "SafariInstall",
         "An old web plug-in or the old button's archive could not be removed.",
         "Remove the file that the error names, and run the installer again."},
        {"Can't delete, file not present %@", "INFO", "SafariInstall",
         "The old button's archive is not there.", kNothing},
        {"Clear CacheError: %@", "WARNING", "SafariInstall",
         "Safari's cache of extensions is empty, is not there or cannot be listed.",
         "Nothing, unless the error says that the folder is closed."},
        {"Error clearing files cache: (null)", "INFO", "SafariInstall",
         "A file of Safari's cache was removed. The line stands after each success.", kNothing},
        {"Error clearing files cache: %@", "INFO", "SafariInstall",
         "A file of Safari's cache could not be removed.", "Remove the file that the error names."},
        {"Extension already removed!", "INFO", "SafariInstall",
         "The keychain has no list of Safari's extensions, or does not show it.", kNothing},
        {"Couldn't convert with error: %@!", "FAILURE", "SafariInstall",
         "The keychain's list of Safari's extensions could not be written again; it is as it was.",
         "Send the log to support."},
        {"Missing com.apple.Safari.plist", "WARNING, FAILURE", "SafariInstall",
         "Safari's preferences are not there or cannot be read. Today's Safari keeps them in its "
         "container, so that nothing has to be done there.",
         "Nothing with Safari 14 and later. On a Mac that hides the file, give the program Full "
         "Disk Access."},
        {"Error reading plist: %@", "FAILURE", "SafariInstall",
         "Safari's preferences are no property list, or hold something that fits none; they were "
         "not changed.",
         "Check the file with plutil -lint."},
        {"Error writing to file: %@", "FAILURE", "SafariInstall",
         "Safari's preferences could not be written; they are as they were.",
         "Look who may write the file, give the program Full Disk Access, and run it again."},

        // Applications of the product.
        {"Launchig Keystrel!", "INFO", "AppWorkspaceUtils", "The product was started.", kNothing},
        {"Launchig application: %@", "INFO", "AppWorkspaceUtils",
         "A program of the product is being started; whether it did, another line tells.",
         kNothing},
        {"Can't launch %@: %@. File Not Found", "FAILURE", "AppWorkspaceUtils",
         "A program of the product is not where it should be.", "Install the product again."},
        {"Can't launch %@: %@", "FAILURE", "AppWorkspaceUtils",
         "A program of the product could not be started.",
         "See whether it is executable; install the product again."},
        {"Can't launch %@", "FAILURE", "AppWorkspaceUtils",
         "The product's application could not be started.", "Install the product again."},

        // Administrator rights, settings, alerts.
        {"Can't save SH to file! Error: %@", "FAILURE", "ElevatedRights",
         "The script for the step with administrator rights could not be written to /var/tmp, so "
         "that the step was left out; what follows is done for the user alone.",
         "See what stands at /var/tmp/script.sh and to whom it belongs; remove it."},
        {"Can't delete saved script. Error: %@", "WARNING", "ElevatedRights",
         "The script was run, and stays in /var/tmp.", "Remove /var/tmp/script.sh."},
        {"Fail to set TMPFIR", "FAILURE", "ElevatedRights",
         "The variable TMPDIR could not be set before a privileged job was blessed.",
         "Send the log to support."},
        {"PATH ELEVL %@", "INFO", "ElevatedRights",
         "The system is asked to run this script as a privileged job.", kNothing},
        {"SMJOB FAILS FOR PATH ELEVL %@", "INFO", "ElevatedRights",
         "The system refused the privileged job.",
         "Look into the system's log for the reason of launchd."},
        {"Coudn't save local data with error: %@!", "FAILURE",
         "LocalSettings_Mac, AppWorkspaceUtils",
         "A setting or the marker of the generation could not be stored.",
         "Look who may write the product's folder and its bundle."},
        {"No display for the alert: %@", "WARNING", "QWIAlertUtils",
         "A question could not be shown, because the session has no screen. It counts as not "
         "answered.",
         "Run the program in the graphical session of the user who is logged in."},
        {"No interface file for the alert: %@", "FAILURE", "QWIAlertUtils",
         "A question could not be shown, because its interface file is not beside the program.",
         "Install the program again, with the files beside it."},

        // The machine, where a program asks for these lines.
        {"System Info - OS: OSX %@<br>", "INFO", "NSLogger", "The system's version.", kNothing},
        {"System Info - Process Name: %@<br>", "INFO", "NSLogger", "The program's name.", kNothing},
        {"System Info - Process ID: %d<br>", "INFO", "NSLogger", "The process.", kNothing},
        {"System Info - Environment: %@<br><br>", "INFO", "NSLogger",
         "The environment of the process. It may hold secrets.",
         "Take them out before you pass the log on."},
        {"System Info - Call arguments: %@<br>", "INFO", "NSLogger",
         "The arguments of the process.", kNothing},

        // Any text: last.
        {"Error Domain=%@", "INFO", "FFoxInstall, SafariInstall",
         "The description of an error: Firefox's old button could not be removed, or Safari's "
         "preferences could not be written.",
         "The error names the file: look who may write it, and run the installer again."},
    };
    return all;
}

const Explanation* Explain(const LogMessage& message) {
    for (const Explanation& each : Explanations()) {
        if (strstr(each.level, message.level.c_str()) != nullptr && !message.level.empty() &&
            Fits(each.text, message.text)) {
            return &each;
        }
    }
    return nullptr;
}
