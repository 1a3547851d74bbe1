#include <Foundation/Foundation.h>

#include <optional>
#include <string>

#include "Security/Administrator.h"

NSString* const NSAppleScriptErrorMessage = @"NSAppleScriptErrorMessage";
NSString* const NSAppleScriptErrorNumber = @"NSAppleScriptErrorNumber";

namespace {

constexpr char kCommandStart[] = "do shell script \"";
constexpr char kWithRights[] = " with administrator privileges";

constexpr int kSyntaxError = -2741;
constexpr int kUserCancelled = -128;
constexpr int kRightsRefused = -60007;

struct ShellScript {
    std::string command;
    bool asAdministrator;
};

// What an escape stands for; AppleScript knows no others.
std::optional<char> Unescaped(char letter) {
    switch (letter) {
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        case '"':
        case '\\':
            return letter;
        default:
            return std::nullopt;
    }
}

// Reads the text up to its closing quote, which is where `i` stands then.
std::optional<std::string> QuotedText(const std::string& source, size_t& i) {
    std::string text;
    for (; i < source.size(); ++i) {
        if (source[i] == '"') {
            return text;
        }
        if (source[i] != '\\') {
            text += source[i];
            continue;
        }
        if (++i == source.size()) {
            break;
        }
        const std::optional<char> letter = Unescaped(source[i]);
        if (!letter) {
            return std::nullopt;
        }
        text += *letter;
    }
    return std::nullopt;
}

std::optional<ShellScript> Parsed(const std::string& source) {
    size_t i = sizeof kCommandStart - 1;
    if (source.compare(0, i, kCommandStart) != 0) {
        return std::nullopt;
    }
    const std::optional<std::string> command = QuotedText(source, i);
    if (!command) {
        return std::nullopt;
    }
    const std::string rest = source.substr(i + 1);
    if (!rest.empty() && rest != kWithRights) {
        return std::nullopt;
    }
    return ShellScript{*command, !rest.empty()};
}

// Every line end becomes a return, and one at the end of the text goes.
NSString* ScriptText(const std::string& bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\n' && i > 0 && bytes[i - 1] == '\r') {
            continue;
        }
        text += bytes[i] == '\n' ? '\r' : bytes[i];
    }
    if (!text.empty() && text.back() == '\r') {
        text.pop_back();
    }
    NSString* string = [[NSString alloc] initWithBytes:text.data()
                                                length:text.size()
                                              encoding:NSUTF8StringEncoding];
    if (string == nil) {
        string = [[NSString alloc] initWithBytes:text.data()
                                          length:text.size()
                                        encoding:NSMacOSRomanStringEncoding];
    }
    return [string autorelease];
}

NSString* MessageOf(const CommandResult& failure) {
    const std::string& said = failure.errors.empty() ? failure.output : failure.errors;
    return said.empty() ? @"The command exited with a non-zero status." : ScriptText(said);
}

void SetError(NSDictionary** errorInfo, int number, NSString* message) {
    if (errorInfo != NULL) {
        *errorInfo = [NSDictionary dictionaryWithObjectsAndKeys:[NSNumber numberWithInt:number],
                                                                NSAppleScriptErrorNumber, message,
                                                                NSAppleScriptErrorMessage, nil];
    }
}

}  // namespace

@interface MacTextDescriptor : NSAppleEventDescriptor {
    NSString* text;
}
- (id)initWithText:(NSString*)aText;
@end

@implementation MacTextDescriptor

- (id)initWithText:(NSString*)aText {
    self = [super init];
    if (self != nil) {
        text = [aText copy];
    }
    return self;
}

- (void)dealloc {
    [text release];
    [super dealloc];
}

- (NSString*)stringValue {
    return text;
}

@end

@interface MacShellScript : NSAppleScript {
    NSString* source;
}
@end

@implementation NSAppleScript (Understanding)

+ (id)allocWithZone:(NSZone*)zone {
    return NSAllocateObject([MacShellScript class], 0, zone);
}

@end

@implementation MacShellScript

- (id)initWithSource:(NSString*)aSource {
    self = [super init];
    if (self != nil) {
        source = [aSource copy];
    }
    return self;
}

- (void)dealloc {
    [source release];
    [super dealloc];
}

- (NSAppleEventDescriptor*)executeAndReturnError:(NSDictionary**)errorInfo {
    NSData* bytes = [source dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
    const std::optional<ShellScript> script =
        Parsed(std::string(static_cast<const char*>([bytes bytes]), [bytes length]));
    if (!script) {
        SetError(errorInfo, kSyntaxError, @"Only do shell script is understood here.");
        return nil;
    }
    const CommandResult result =
        script->asAdministrator ? RunAsAdministrator(script->command) : RunAsUser(script->command);
    if (result.verdict == Verdict::Cancelled) {
        SetError(errorInfo, kUserCancelled, @"User canceled.");
        return nil;
    }
    if (result.verdict == Verdict::Refused) {
        SetError(errorInfo, kRightsRefused,
                 @"The administrator user name or password was incorrect.");
        return nil;
    }
    if (result.status != 0) {
        SetError(errorInfo, result.status, MessageOf(result));
        return nil;
    }
    return [[[MacTextDescriptor alloc] initWithText:ScriptText(result.output)] autorelease];
}

@end
