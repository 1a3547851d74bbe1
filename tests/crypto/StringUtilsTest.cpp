#include "crypto/StringUtils.h"

#include <gtest/gtest.h>

#include <clocale>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "crypto/Utf8.h"

using namespace StringUtils;

namespace {

constexpr char kFromBytesError[] = "wstring_convert: from_bytes error";
constexpr char kToBytesError[] = "wstring_convert: to_bytes error";

template <typename Conversion>
std::string RangeErrorOf(Conversion conversion) {
    try {
        conversion();
    } catch (const std::range_error& error) {
        return error.what();
    }
    return "no range error";
}

std::u16string Units(std::initializer_list<unsigned> units) {
    return std::u16string(units.begin(), units.end());
}

std::wstring Wide(std::initializer_list<unsigned> characters) {
    return std::wstring(characters.begin(), characters.end());
}

std::string Bytes(std::initializer_list<unsigned> bytes) {
    return std::string(bytes.begin(), bytes.end());
}

}  // namespace

TEST(WideToBytes, KeepsAscii) {
    EXPECT_EQ(ConvertWStringToString(L""), "");
    EXPECT_EQ(ConvertWStringToString(L"//Users//Shared"), "//Users//Shared");
    EXPECT_EQ(ConvertWStringToString(std::wstring(100000, L'x')), std::string(100000, 'x'));
}

TEST(WideToBytes, StopsAtTheFirstNul) {
    EXPECT_EQ(ConvertWStringToString(Wide({'a', 0, 'b'})), "a");
    EXPECT_EQ(ConvertWStringToString(Wide({0, 'b'})), "");
}

TEST(WideToBytes, GivesNothingForACharacterThatTheLocaleLacks) {
    ASSERT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    EXPECT_EQ(ConvertWStringToString(L"ab\u0416"), "");
    EXPECT_EQ(ConvertWStringToString(L"ab\U0001F600"), "");
    EXPECT_EQ(ConvertWStringToString(Wide({'a', 0, 0x416})), "a") << "behind the end";
}

TEST(BytesToWide, KeepsAscii) {
    EXPECT_EQ(ConvertStringToWString(""), L"");
    EXPECT_EQ(ConvertStringToWString("//Users//Shared"), L"//Users//Shared");
    EXPECT_EQ(ConvertStringToWString(std::string(100000, 'x')), std::wstring(100000, L'x'));
}

TEST(BytesToWide, StopsAtTheFirstNul) {
    EXPECT_EQ(ConvertStringToWString(Bytes({'a', 0, 'b'})), L"a");
    EXPECT_EQ(ConvertStringToWString(Bytes({0, 'b'})), L"");
}

// As macOS's C locale has it: no byte means nothing, and none begins a longer character.
TEST(BytesToWide, TakesEveryByteForTheCharacterOfItsValue) {
    ASSERT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    EXPECT_EQ(ConvertStringToWString("caf\xC3\xA9"), Wide({'c', 'a', 'f', 0xC3, 0xA9}));
    EXPECT_EQ(ConvertStringToWString(Bytes({0x80, 0xFF})), Wide({0x80, 0xFF}));
}

TEST(Utf16ToWide, GivesOneCharacterACodePoint) {
    EXPECT_EQ(ConvertU16StringToWString(u""), L"");
    EXPECT_EQ(ConvertU16StringToWString(Units({'a', 0, 0xD7FF, 0xE000, 0xFFFF})),
              Wide({'a', 0, 0xD7FF, 0xE000, 0xFFFF}));
    EXPECT_EQ(ConvertU16StringToWString(Units({0xD800, 0xDC00, 'x', 0xD83D, 0xDE00})),
              Wide({0x10000, 'x', 0x1F600}));
    EXPECT_EQ(ConvertU16StringToWString(Units({0xDBFF, 0xDFFF})), Wide({0x10FFFF}));
}

TEST(Utf16ToWide, KeepsByteOrderMarksOfEitherOrder) {
    EXPECT_EQ(ConvertU16StringToWString(Units({0xFEFF, 'a'})), Wide({0xFEFF, 'a'}));
    EXPECT_EQ(ConvertU16StringToWString(Units({0xFFFE, 'a'})), Wide({0xFFFE, 'a'}));
}

TEST(Utf16ToUtf8, UsesTheShortestForm) {
    EXPECT_EQ(ConvertU16StringtoU8String(u""), "");
    EXPECT_EQ(ConvertU16StringtoU8String(Units({0, 0x7F, 0x80, 0x7FF, 0x800, 0xFFFF})),
              Bytes({0, 0x7F, 0xC2, 0x80, 0xDF, 0xBF, 0xE0, 0xA0, 0x80, 0xEF, 0xBF, 0xBF}));
    EXPECT_EQ(ConvertU16StringtoU8String(Units({0xD800, 0xDC00, 0xDBFF, 0xDFFF})),
              Bytes({0xF0, 0x90, 0x80, 0x80, 0xF4, 0x8F, 0xBF, 0xBF}));
    EXPECT_EQ(ConvertU16StringtoU8String(Units({0xFEFF, 'z'})), "\xEF\xBB\xBFz");
}

TEST(Utf16, ThrowsForUnpairedSurrogates) {
    const std::u16string broken[] = {
        // nothing follows
        Units({0xD800}),
        Units({0xDBFF}),
        // cut in the middle of a pair
        Units({'a', 0xD83D}),
        Units({0xD83D, 0xDE00, 0xD83D}),
        // no low surrogate follows
        Units({0xD800, 'a'}),
        Units({0xD800, 0xDBFF}),
        Units({0xD800, 0xE000}),
        Units({0xD800, 0xD800, 0xDC00}),
        // no high surrogate before
        Units({0xDC00}),
        Units({0xDFFF, 'a'}),
        Units({0xDC00, 0xD800}),
        Units({0xDC00, 0xDC00}),
        Units({0xD83D, 0xDE00, 0xDE00, 'a'}),
    };
    for (const std::u16string& text : broken) {
        EXPECT_EQ(RangeErrorOf([&] { ConvertU16StringToWString(text); }), kFromBytesError);
        EXPECT_EQ(RangeErrorOf([&] { ConvertU16StringtoU8String(text); }), kToBytesError);
    }
}

TEST(Utf8ToUtf16, ReadsEveryLength) {
    EXPECT_EQ(ConvertU8StringtoU16String(""), u"");
    EXPECT_EQ(ConvertU8StringtoU16String(
                  Bytes({0, 0x7F, 0xC2, 0x80, 0xDF, 0xBF, 0xE0, 0xA0, 0x80, 0xEF, 0xBF, 0xBF})),
              Units({0, 0x7F, 0x80, 0x7FF, 0x800, 0xFFFF}));
    EXPECT_EQ(ConvertU8StringtoU16String("\xED\x9F\xBF\xEE\x80\x80"), Units({0xD7FF, 0xE000}));
    EXPECT_EQ(ConvertU8StringtoU16String("\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"),
              Units({0xD800, 0xDC00, 0xDBFF, 0xDFFF}));
    EXPECT_EQ(ConvertU8StringtoU16String("\xEF\xBB\xBFz"), Units({0xFEFF, 'z'}));
}

TEST(Utf8ToUtf16, ThrowsForAnythingThatIsNotUtf8) {
    const std::string broken[] = {
        // continuation without a lead
        "\x80",
        "a\xBF",
        "\x82\x80",
        "\xC3\xA9\xA9",
        // cut at the end
        "\xC3",
        "a\xE2\x82",
        "\xF0\x9F\x98",
        // lead without its continuations
        "\xC3z",
        "\xE2\x82z",
        "\xE2\x82\xC3\xA9",
        "\xF0\x9F\x98\xF0",
        // overlong
        "\xC0\x80",
        "\xC1\xBF",
        "\xE0\x9F\xBF",
        "\xF0\x8F\xBF\xBF",
        // surrogates
        "\xED\xA0\x80",
        "\xED\xBF\xBF",
        // above U+10FFFF
        "\xF4\x90\x80\x80",
        "\xF5\x80\x80\x80",
        // no leads at all
        "\xF8\x88\x80\x80\x80",
        "\xF8\x90\x80\x80",
        "\xF9\x80\x80\x80",
        "\xFE",
        "\xFF",
    };
    for (const std::string& text : broken) {
        EXPECT_EQ(RangeErrorOf([&] { ConvertU8StringtoU16String(text); }), kFromBytesError);
    }
}

TEST(Utf8, ACharacterIsAsLongAsItsFirstByteSaysAndTheOthersAllow) {
    const std::pair<const char*, size_t> lengths[] = {
        {"", 0},
        {"a\xC3\xA9", 1},
        {"\x7F", 1},
        {"\x80", 0},
        {"\xC1\xBF", 0},
        {"\xC2", 0},
        {"\xC2\x80", 2},
        {"\xC2\xC0", 0},
        {"\xDF\xBF", 2},
        {"\xE0\x9F\xBF", 0},
        {"\xE0\xA0\x80", 3},
        {"\xE2\x82", 0},
        {"\xE2\x82z", 0},
        {"\xED\x9F\xBF", 3},
        {"\xED\xA0\x80", 0},
        {"\xEF\xBF\xBF", 3},
        {"\xF0\x8F\xBF\xBF", 0},
        {"\xF0\x90\x80\x80", 4},
        {"\xF0\x9F\x98", 0},
        {"\xF4\x8F\xBF\xBF", 4},
        {"\xF4\x90\x80\x80", 0},
        {"\xF5\x80\x80\x80", 0},
    };
    for (const auto& [bytes, length] : lengths) {
        EXPECT_EQ(Utf8CharacterLength(bytes), length) << testing::PrintToString(bytes);
        EXPECT_EQ(IsUtf8(bytes), length == std::string_view(bytes).size() || length == 1);
    }
}

TEST(Unicode, EveryCodePointSurvivesTheWayThroughUtf16AndUtf8) {
    std::wstring all;
    for (unsigned c = 0; c <= 0x10FFFF; ++c) {
        if (c < 0xD800 || c > 0xDFFF) {
            all += static_cast<wchar_t>(c);
        }
    }
    const std::u16string units = ConvertWStringToU16String(all);
    EXPECT_EQ(units.size(), 0x10000u - 0x800u + 2u * 0x100000u);
    EXPECT_TRUE(ConvertU16StringToWString(units) == all);
    EXPECT_TRUE(ConvertU8StringtoU16String(ConvertU16StringtoU8String(units)) == units);
}

TEST(WideToUtf16, MakesPairsAboveTheBasicPlane) {
    EXPECT_EQ(ConvertWStringToU16String(L""), u"");
    EXPECT_EQ(ConvertWStringToU16String(Wide({0, 'a', 0xD7FF, 0xE000, 0xFFFF})),
              Units({0, 'a', 0xD7FF, 0xE000, 0xFFFF}));
    EXPECT_EQ(ConvertWStringToU16String(Wide({0x10000})), Units({0xD800, 0xDC00}));
    EXPECT_EQ(ConvertWStringToU16String(Wide({0x1F600})), Units({0xD83D, 0xDE00}));
    EXPECT_EQ(ConvertWStringToU16String(Wide({0x10FFFF})), Units({0xDBFF, 0xDFFF}));
}

TEST(WideToUtf16, ReplacesSurrogates) {
    EXPECT_EQ(ConvertWStringToU16String(Wide({0xD800})), Units({0xFFFD}));
    EXPECT_EQ(ConvertWStringToU16String(Wide({0xD83D, 0xDE00, 0xDFFF})),
              Units({0xFFFD, 0xFFFD, 0xFFFD}));
}

TEST(WideToUtf16, LeavesOutWhatIsNoCodePoint) {
    EXPECT_EQ(ConvertWStringToU16String(Wide({0x110000})), u"");
    EXPECT_EQ(ConvertWStringToU16String(Wide({'a', 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 'b'})),
              u"ab");
}

TEST(Base64, EncodesTheExamplesOfTheStandard) {
    EXPECT_EQ(Base64Encode(""), "");
    EXPECT_EQ(Base64Encode("f"), "Zg==");
    EXPECT_EQ(Base64Encode("fo"), "Zm8=");
    EXPECT_EQ(Base64Encode("foo"), "Zm9v");
    EXPECT_EQ(Base64Encode("foob"), "Zm9vYg==");
    EXPECT_EQ(Base64Encode("fooba"), "Zm9vYmE=");
    EXPECT_EQ(Base64Encode("foobar"), "Zm9vYmFy");
    EXPECT_EQ(Base64Encode("M"), "TQ==");
    EXPECT_EQ(Base64Encode("Ma"), "TWE=");
    EXPECT_EQ(Base64Encode("Man"), "TWFu");
}

TEST(Base64, DecodesTheExamplesOfTheStandard) {
    EXPECT_EQ(Base64Decode(""), "");
    EXPECT_EQ(Base64Decode("Zg=="), "f");
    EXPECT_EQ(Base64Decode("Zm8="), "fo");
    EXPECT_EQ(Base64Decode("Zm9v"), "foo");
    EXPECT_EQ(Base64Decode("Zm9vYg=="), "foob");
    EXPECT_EQ(Base64Decode("Zm9vYmE="), "fooba");
    EXPECT_EQ(Base64Decode("Zm9vYmFy"), "foobar");
}

TEST(Base64, DecodingEndsAtTheFirstPadding) {
    EXPECT_EQ(Base64Decode("TWE=xyz"), "Ma");
    EXPECT_EQ(Base64Decode("=TWFu"), "");
    EXPECT_EQ(Base64Decode("TWFu=TWFu"), "Man");
}

TEST(Base64, DecodingNeedsNoPadding) {
    EXPECT_EQ(Base64Decode("TWFuT"), "Man") << "a single character holds no whole byte";
    EXPECT_EQ(Base64Decode("TWFuTQ"), "ManM");
    EXPECT_EQ(Base64Decode("TWFuTWE"), "ManMa");
}

TEST(Base64, DecodingTakesForeignCharactersAs255) {
    // T = 19, W = 22, the blank = 255, E = 4
    EXPECT_EQ(Base64Decode("TW E="), Bytes({19 << 2 | 1, (22 << 4 & 0xFF) | 15, 0xC0 | 4}));
    EXPECT_EQ(Base64Decode("\nWFu"), Bytes({0xFC | 1, 0x61, 0x6E}));
    EXPECT_EQ(Base64Decode("A\rFu"), Bytes({3, 0xF1, 0x6E}));
    EXPECT_EQ(Base64Decode("TWF\t"), Bytes({0x4D, 0x61, 0xFF}));
    EXPECT_EQ(Base64Decode("-_-_"), Bytes({0xFF, 0xFF, 0xFF})) << "the URL alphabet is foreign";
    EXPECT_EQ(Base64Decode(Bytes({0, 0x80, 0xFF, 0xC3})), Bytes({0xFF, 0xFF, 0xFF}));
}

TEST(LineBreaks, BecomeBlanksOneForOne) {
    std::string text = "a\r\nb\n\r\tc";
    text += std::string("\0\n", 2);
    ReplaceCRAndLFWithSpaces(text);
    EXPECT_EQ(text, std::string("a  b  \tc\0 ", 10));

    std::string empty;
    ReplaceCRAndLFWithSpaces(empty);
    EXPECT_EQ(empty, "");
}

TEST(LowerCase, FollowsUnicode) {
    EXPECT_EQ(LowerCase(""), "");
    EXPECT_EQ(LowerCase("HKEY Keystrel 123"), "hkey keystrel 123");
}

// The bytes are taken for Mac Roman, as a Western user's Mac takes them, and come back as UTF-8.
TEST(LowerCase, TakesBytesForMacRoman) {
    EXPECT_EQ(LowerCase("\x80\x84\xAE"), "\u00E4\u00F1\u00E6");
    EXPECT_EQ(LowerCase("\u00C4"), "\u221A\u00F1") << "UTF-8 is something else there";
}

TEST(LowerCase, StopsAtTheFirstNul) {
    EXPECT_EQ(LowerCase(Bytes({'A', 0, 'B'})), "a");
}

TEST(LowerCase, KnowsEveryByte) {
    for (int byte = 1; byte < 256; ++byte) {
        EXPECT_NE(LowerCase(std::string(1, static_cast<char>(byte))), "") << byte;
    }
}
