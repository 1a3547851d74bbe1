// Stands in for the logger, which needs the product's folders: keeps the lines.
#include "tests/ui/NSLoggerLines.h"

#include <utility>

#include "logging/NSLogger.h"

namespace {

std::vector<std::string> lines;

void Keep(const char* level, NSString* format, va_list arguments) {
    NSString* text = [[[NSString alloc] initWithFormat:format arguments:arguments] autorelease];
    lines.push_back(level + std::string([text UTF8String]));
}

}  // namespace

std::vector<std::string> TakeLoggedLines() {
    return std::exchange(lines, {});
}

// The alert knows two levels; a line of another one would raise.
#pragma clang diagnostic ignored "-Wincomplete-implementation"
@implementation NSLogger

+ (void)LogWarning:(NSString*)format, ... {
    va_list arguments;
    va_start(arguments, format);
    Keep("warning: ", format, arguments);
    va_end(arguments);
}

+ (void)LogFailure:(NSString*)format, ... {
    va_list arguments;
    va_start(arguments, format);
    Keep("failure: ", format, arguments);
    va_end(arguments);
}

@end
