#include "linux/corrections/propertylist/Encoding.h"

#include <iconv.h>
#include <strings.h>

#include <cerrno>

namespace {

struct Signature {
    std::string_view start;
    std::size_t markLength;
    const char* encoding;
};

using namespace std::string_view_literals;

// The marks first; UTF-32's before UTF-16's, which they begin with.
constexpr Signature kSignatures[] = {
    {"\xEF\xBB\xBF"sv, 3, "UTF-8"},
    {"\x00\x00\xFE\xFF"sv, 4, "UTF-32BE"},
    {"\xFF\xFE\x00\x00"sv, 4, "UTF-32LE"},
    {"\xFE\xFF"sv, 2, "UTF-16BE"},
    {"\xFF\xFE"sv, 2, "UTF-16LE"},
    {"\x00\x00\x00<"sv, 0, "UTF-32BE"},
    {"<\x00\x00\x00"sv, 0, "UTF-32LE"},
    {"\x00<"sv, 0, "UTF-16BE"},
    {"<\x00"sv, 0, "UTF-16LE"},
};

bool StartsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

/// The encoding that an XML declaration names; empty without one.
std::string DeclaredEncoding(std::string_view bytes) {
    constexpr std::string_view kName = "encoding";
    if (!StartsWith(bytes, "<?xml")) {
        return {};
    }
    const std::string_view declaration = bytes.substr(0, bytes.find("?>"));
    const std::size_t name = declaration.find(kName);
    if (name == std::string_view::npos) {
        return {};
    }
    const std::size_t open = declaration.find_first_of("\"'", name);
    if (open == std::string_view::npos) {
        return {};
    }
    const std::size_t close = declaration.find(declaration[open], open + 1);
    return std::string(declaration.substr(open + 1, close - open - 1));
}

/// A name that XML allows: iconv takes more than names.
bool IsEncodingName(const std::string& name) {
    constexpr const char* kAllowed =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-";
    return !name.empty() && name.find_first_not_of(kAllowed) == std::string::npos;
}

class Converter {
  public:
    explicit Converter(const char* encoding) : handle_(iconv_open("UTF-8", encoding)) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter() {
        if (IsOpen()) {
            iconv_close(handle_);
        }
    }

    bool IsOpen() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

    bool Convert(std::string_view bytes, std::string& text) {
        char* in = const_cast<char*>(bytes.data());
        std::size_t inLeft = bytes.size();
        text.reserve(bytes.size());
        while (inLeft > 0) {
            char buffer[1 << 14];
            char* out = buffer;
            std::size_t outLeft = sizeof buffer;
            const std::size_t result = iconv(handle_, &in, &inLeft, &out, &outLeft);
            text.append(buffer, sizeof buffer - outLeft);
            if (result == static_cast<std::size_t>(-1) && errno != E2BIG) {
                return false;
            }
        }
        return true;
    }

  private:
    iconv_t handle_;
};

}  // namespace

std::string_view TextAsUtf8(std::string_view bytes, std::string& converted) {
    std::string encoding;
    for (const Signature& signature : kSignatures) {
        if (StartsWith(bytes, signature.start)) {
            bytes.remove_prefix(signature.markLength);
            encoding = signature.encoding;
            break;
        }
    }
    if (encoding.empty()) {
        encoding = DeclaredEncoding(bytes);
    }
    if (encoding.empty() || strcasecmp(encoding.c_str(), "UTF-8") == 0) {
        return bytes;
    }
    converted.clear();
    if (!IsEncodingName(encoding)) {
        return {};
    }
    Converter converter(encoding.c_str());
    if (!converter.IsOpen() || !converter.Convert(bytes, converted)) {
        return {};
    }
    return converted;
}
