#include "browsers/ChromeScripts.h"

// One line of source a line of script, so that they can be read side by side with the shell's.
// clang-format off
#define NEXT " \n "

// Meant: the blank in "External Extensions" is not escaped in the lines that begin "rm -rf ~/". So the shell
// splits each path in two; the removing script escapes it.
NSString* const kChromeInstallScript =
    @"echo \"remove extension\"" NEXT
    "rm -rf \"/Library/Application Support/Google/Chrome/External Extensions/Keystrel.crx\"" NEXT
    "rm -rf \"/Library/Application Support/Google/Chrome/External Extensions/KeystrelButton.crx\"" NEXT
    "rm -rf \"/Library/Application Support/Google/Chrome/External Extensions/kmcoedhplnbajgfiehkcpamdobnlgjie.json\"" NEXT
    "rm -rf \"/Library/Application Support/Google/Chrome/External Extensions/pbjaclkhgedmfonipcabhlmgkdjeoifn.json\"" NEXT
    "rm -rf \"/Library/Internet Plug-Ins/npKSPlugin.bundle\"" NEXT
    "rm -rf ~/Library/Application\\ Support/Google/Chrome/External Extensions/Keystrel.crx" NEXT
    "rm -rf ~/Library/Application\\ Support/Google/Chrome/External Extensions/KeystrelButton.crx" NEXT
    "rm -rf ~/Library/Application\\ Support/Google/Chrome/External Extensions/kmcoedhplnbajgfiehkcpamdobnlgjie.json" NEXT
    "rm -rf ~/Library/Application\\ Support/Google/Chrome/External Extensions/pbjaclkhgedmfonipcabhlmgkdjeoifn.json" NEXT
    "rm -rf ~/Library/Internet\\ Plug-Ins/npKSPlugin.bundle" NEXT
    "rm -rf /Applications/Google\\ Chrome.app/Contents/Extensions/Keystrel.crx" NEXT
    "rm -rf /Applications/Google\\ Chrome.app/Contents/Extensions/KeystrelButton.crx" NEXT
    "rm -rf /Library/Google/Chrome/NativeMessagingHosts/com.corvendale.kschromena.json" NEXT
    "" NEXT
    "sleep 1" NEXT
    "" NEXT
    "echo \"making directory\"" NEXT
    "/bin/mkdir -m 755 \"/Library/Application Support/Google\"" NEXT
    "/bin/mkdir -m 755 \"/Library/Application Support/Google/Chrome\"" NEXT
    "/bin/mkdir -m 755 \"/Library/Application Support/Google/Chrome/External Extensions\"" NEXT
    "" NEXT
    "/bin/mkdir -m 755 \"/Library/Google\"" NEXT
    "/bin/mkdir -m 755 \"/Library/Google/Chrome\"" NEXT
    "/bin/mkdir -m 755 \"/Library/Google/Chrome/NativeMessagingHosts\"" NEXT
    "" NEXT
    "/bin/mkdir -m 755 \"/Library/Application Support/Mozilla\"" NEXT
    "/bin/mkdir -m 755 \"/Library/Application Support/Mozilla/NativeMessagingHosts\"" NEXT
    "" NEXT
    "sleep 1" NEXT
    "" NEXT
    "echo \"copy extension\"" NEXT
    "/bin/cp -f -R \"/Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions/chrome/Keystrel.crx\" \"/Library/Application Support/Google/Chrome/External Extensions\"" NEXT
    "/bin/cp -f -R \"/Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions/chrome/kmcoedhplnbajgfiehkcpamdobnlgjie.json\" \"/Library/Application Support/Google/Chrome/External Extensions\"" NEXT
    "/bin/cp -f -R \"/Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions/chrome/com.corvendale.kschromena.json\" \"/Library/Google/Chrome/NativeMessagingHosts\"" NEXT
    "" NEXT
    "echo \"remove temp files\"" NEXT
    "rm -rf \"/Library/Application Support/Keystrel/Tools/BExtensions/chrome/kmcoedhplnbajgfiehkcpamdobnlgjie.json\"" NEXT
    "rm -rf \"/Library/Application Support/Keystrel/Tools/BExtensions/chrome/pbjaclkhgedmfonipcabhlmgkdjeoifn.json\"" NEXT
    "rm -rf \"/Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions/chrome/kmcoedhplnbajgfiehkcpamdobnlgjie.json\"" NEXT
    "rm -rf \"/Applications/Keystrel.app/Contents/Keystrel/Tools/BExtensions/chrome/pbjaclkhgedmfonipcabhlmgkdjeoifn.json\"" NEXT
    "" NEXT
    "exit 0";

// Meant: nobody makes the file that the script removes from /private/tmp. The same goes for the next one.
NSString* const kChromeUninstallScript =
    @"echo \"remove extension\"" NEXT
    "rm -rf \"/Library/Application Support/Google/Chrome/External Extensions/Keystrel.crx\"" NEXT
    "rm -rf \"/Library/Application Support/Google/Chrome/External Extensions/KeystrelButton.crx\"" NEXT
    "rm -rf \"/Library/Application Support/Google/Chrome/External Extensions/kmcoedhplnbajgfiehkcpamdobnlgjie.json\"" NEXT
    "rm -rf \"/Library/Application Support/Google/Chrome/External Extensions/pbjaclkhgedmfonipcabhlmgkdjeoifn.json\"" NEXT
    "rm -rf \"/Library/Internet Plug-Ins/npKSPlugin.bundle\"" NEXT
    "" NEXT
    "rm -rf ~/Library/Application\\ Support/Google/Chrome/External\\ Extensions/Keystrel.crx" NEXT
    "rm -rf ~/Library/Application\\ Support/Google/Chrome/External\\ Extensions/KeystrelButton.crx" NEXT
    "rm -rf ~/Library/Application\\ Support/Google/Chrome/External\\ Extensions/kmcoedhplnbajgfiehkcpamdobnlgjie.json" NEXT
    "rm -rf ~/Library/Application\\ Support/Google/Chrome/External\\ Extensions/pbjaclkhgedmfonipcabhlmgkdjeoifn.json" NEXT
    "rm -rf ~/Library/Internet\\ Plug-Ins/npKSPlugin.bundle" NEXT
    "rm -rf /Library/Google/Chrome/NativeMessagingHosts/com.corvendale.kschromena.json" NEXT
    "" NEXT
    "rm -rf /Applications/Google\\ Chrome.app/Contents/Extensions/Keystrel.crx" NEXT
    "rm -rf /Applications/Google\\ Chrome.app/Contents/Extensions/KeystrelButton.crx" NEXT
    "" NEXT
    "rm -rf \"/Library/Application Support/Mozilla/NativeMessagingHosts/com.corvendale.ksnative.manifest.json\"" NEXT
    "rm -rf ~/Library/Application\\ Support/Mozilla/NativeMessagingHosts/com.corvendale.ksnative.manifest.json" NEXT
    "" NEXT
    "rm /private/tmp/createDirUninstall.sh" NEXT
    "" NEXT
    "exit 0";

NSString* const kChromeFolderMakingScript =
    @"echo \"making directory\"" NEXT
    "/bin/mkdir -m 777 \"/Library/Google\"" NEXT
    "/bin/mkdir -m 777 \"/Library/Google/Chrome\"" NEXT
    "/bin/mkdir -m 777 \"/Library/Google/Chrome/NativeMessagingHosts\"" NEXT
    "" NEXT
    "/bin/mkdir -m 755 \"/Library/Application Support/Mozilla\"" NEXT
    "/bin/mkdir -m 755 \"/Library/Application Support/Mozilla/NativeMessagingHosts\"" NEXT
    "" NEXT
    "sleep 1" NEXT
    "" NEXT
    "rm /private/tmp/createDirChrome.sh" NEXT
    "" NEXT
    "exit 0";

#undef NEXT
// clang-format on
