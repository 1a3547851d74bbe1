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

// Reads a text in AppleScript's quotes and with its escapes up to the closing quote, behind which
// `i` stands then.
std::optional<std::string> QuotedText(const std::string& source, size_t& i) {
    static const std::string letters = "nrt\"\\";
    static const std::string meanings = "\n\r\t\"\\";
    std::string text;
    while (i < source.size()) {
        char character = source[i++];
        if (character == '"') {
            return text;
        }
        if (character == '\\') {
            const size_t letter = i < source.size() ? letters.find(source[i++]) : std::string::npos;
            if (letter == std::string::npos) {
                return std::nullopt;
            }
            character = meanings[letter];
        }
        text += character;
    }
    return std::nullopt;
}

std::optional<ShellScript> Parsed(const std::string& source) {
    size_t i = sizeof kCommandStart - 1;
    if (source.compare(0, i, kCommandStart) != 0) {
        return std::nullopt;
    }
    const std::optional<std::string> command = QuotedText(source, i);
    const std::string rest = command ? source.substr(i) : "";
    if (!command || (!rest.empty() && rest != kWithRights)) {
        return std::nullopt;
    }
    return ShellScript{*command, !rest.empty()};
}

// Every line end becomes a return, and one at the end of the text goes.
NSString* ScriptText(const std::string& bytes) {
    NSString* text = [NSString stringWithUTF8String:bytes.c_str()];
    if (text == nil) {
        text = [NSString stringWithCString:bytes.c_str() encoding:NSMacOSRomanStringEncoding];
    }
    text = [text stringByReplacingOccurrencesOfString:@"\r\n" withString:@"\r"];
    text = [text stringByReplacingOccurrencesOfString:@"\n" withString:@"\r"];
    return [text hasSuffix:@"\r"] ? [text substringToIndex:[text length] - 1] : text;
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
    NSString* stringValue;
}
@property (nonatomic, copy) NSString* stringValue;
@end

@implementation MacTextDescriptor

@synthesize stringValue;

- (void)dealloc {
    [stringValue release];
    [super dealloc];
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
    MacTextDescriptor* said = [[[MacTextDescriptor alloc] init] autorelease];
    [said setStringValue:ScriptText(result.output)];
    return said;
}

@end
