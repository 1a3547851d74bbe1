#include "tools/JsonFile.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr int kDeepest = 200;  // parsers go down by calling themselves

int DepthOf(std::string_view text) {
    int depth = 0;
    int deepest = 0;
    bool isQuoted = false;
    for (size_t i = 0; i < text.size(); ++i) {
        const char each = text[i];
        if (isQuoted && each == '\\') {
            ++i;
        } else if (each == '"') {
            isQuoted = !isQuoted;
        } else if (!isQuoted && (each == '[' || each == '{')) {
            deepest = std::max(deepest, ++depth);
        } else if (!isQuoted && (each == ']' || each == '}')) {
            --depth;
        }
    }
    return deepest;
}

}  // namespace

NSDictionary* ReadJsonObject(NSData* data) {
    const std::string_view text(static_cast<const char*>([data bytes]), [data length]);
    if (data == nil || DepthOf(text) > kDeepest) {
        return nil;
    }
    id root = nil;
    @try {
        root = [NSJSONSerialization JSONObjectWithData:data options:0 error:NULL];
    } @catch (NSException* exception) {
        return nil;
    }
    return [root isKindOfClass:[NSDictionary class]] ? root : nil;
}
