#include "tests/fuzz/Lists.h"

namespace {

id MemberOf(id list, NSString* key, Class type) {
    if (![list isKindOfClass:[NSDictionary class]]) {
        return nil;
    }
    id member = [list objectForKey:key];
    return [member isKindOfClass:type] ? member : nil;
}

}  // namespace

id ListOf(const std::string& bytes) {
    return [NSPropertyListSerialization propertyListWithData:[NSData dataWithBytes:bytes.data()
                                                                            length:bytes.size()]
                                                     options:NSPropertyListImmutable
                                                      format:nullptr
                                                       error:nullptr];
}

std::string BytesOf(id list, NSPropertyListFormat format) {
    NSData* data = list == nil ? nil
                               : [NSPropertyListSerialization dataWithPropertyList:list
                                                                            format:format
                                                                           options:0
                                                                             error:nullptr];
    return std::string(static_cast<const char*>([data bytes]), [data length]);
}

id DictionaryIn(id list, NSString* key) {
    return MemberOf(list, key, [NSDictionary class]);
}

id ArrayIn(id list, NSString* key) {
    return MemberOf(list, key, [NSArray class]);
}
