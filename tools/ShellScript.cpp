#include "tools/ShellScript.h"

#include <cstdlib>
#include <sstream>
#include <vector>

namespace {

constexpr char kFolder[] = "/";  // where scripts with administrator rights are run

// The words of one line; quotes and backslashes are taken away.
std::vector<std::string> WordsOf(const std::string& line, const std::string& home) {
    std::vector<std::string> words;
    std::string word;
    bool isWord = false;
    bool isQuoted = false;
    for (size_t i = 0; i < line.size(); ++i) {
        const char each = line[i];
        if (each == '"') {
            isQuoted = !isQuoted;
            isWord = true;
        } else if (each == '\\' && !isQuoted && i + 1 < line.size()) {
            word += line[++i];
            isWord = true;
        } else if (each == ' ' && !isQuoted) {
            if (isWord) {
                words.push_back(word);
            }
            word.clear();
            isWord = false;
        } else {
            const bool isHome = each == '~' && !isWord;
            word += isHome ? home : std::string(1, each);
            isWord = true;
        }
    }
    if (isWord) {
        words.push_back(word);
    }
    return words;
}

std::string Absolute(const std::string& path) {
    return path[0] == '/' ? path : kFolder + path;
}

void RunLine(const std::vector<std::string>& words, ShadowTree* tree) {
    using User = ShadowTree::User;
    const std::string& command = words[0];
    if (command == "rm") {
        const bool isTrees = words.size() > 1 && words[1] == "-rf";
        for (size_t i = isTrees ? 2 : 1; i < words.size(); ++i) {
            const std::string path = Absolute(words[i]);
            if (isTrees || !tree->IsFolder(path)) {
                tree->Remove(path, User::kRoot);
            }
        }
    } else if (command == "/bin/mkdir" && words.size() == 4) {
        const auto mode = static_cast<mode_t>(strtoul(words[2].c_str(), nullptr, 8));
        tree->MakeFolder(Absolute(words[3]), mode, User::kRoot);
    } else if (command == "/bin/cp" && words.size() == 5) {
        tree->CopyByShell(Absolute(words[3]), Absolute(words[4]));
    }
}

}  // namespace

void RunScript(const std::string& script, const std::string& home, ShadowTree* tree) {
    std::istringstream lines(script);
    for (std::string line; std::getline(lines, line);) {
        const std::vector<std::string> words = WordsOf(line, home);
        if (!words.empty()) {
            RunLine(words, tree);
        }
    }
}
